#pragma once

#include <QVariantMap>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tolvane {

struct Notification {
    std::string name;
    const void *object = nullptr;  // the poster, compared by address only
    QVariantMap userInfo;
};

// The process-wide notification centre. Delivery is synchronous, on the
// posting thread, in the order observers were added: an observer of a
// notification that a worker thread posts must hand its work to the main
// thread itself.
// Thread-safety: every method may be called from any thread, also from inside
// an observer (observers are copied out before they are called).
class NotificationCenter {
public:
    using Observer = std::function<void(const Notification &)>;
    using Token = std::uint64_t;

    static NotificationCenter &defaultCenter();

    // `object` null observes the name from every poster.
    Token addObserver(std::string name, Observer observer, const void *object = nullptr);
    void removeObserver(Token token);
    void post(std::string name, const void *object = nullptr, QVariantMap userInfo = {});

private:
    struct Entry {
        Token token;
        std::string name;
        const void *object;
        Observer observer;
    };
    std::mutex mutex_;
    std::vector<Entry> entries_;  // guarded by mutex_
    Token nextToken_ = 1;         // guarded by mutex_
};

// Removes its observer when it goes out of scope.
class ScopedObserver {
public:
    ScopedObserver() = default;
    ScopedObserver(std::string name, NotificationCenter::Observer observer,
                   const void *object = nullptr);
    ~ScopedObserver();
    ScopedObserver(ScopedObserver &&other) noexcept;
    ScopedObserver &operator=(ScopedObserver &&other) noexcept;
    ScopedObserver(const ScopedObserver &) = delete;
    ScopedObserver &operator=(const ScopedObserver &) = delete;

private:
    NotificationCenter::Token token_ = 0;
};

}  // namespace tolvane
