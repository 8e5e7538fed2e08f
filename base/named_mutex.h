#pragma once

#include <mutex>
#include <string>

namespace tolvane {

// A recursive lock that carries the name it was created with, so that a
// deadlock report or a debugger shows which structure it guards.
// Thread-safety: lock/unlock from any thread; the name is immutable.
class NamedRecursiveMutex {
public:
    explicit NamedRecursiveMutex(std::string name) : name_(std::move(name)) {}
    NamedRecursiveMutex(const NamedRecursiveMutex &) = delete;
    NamedRecursiveMutex &operator=(const NamedRecursiveMutex &) = delete;

    void lock() { mutex_.lock(); }
    bool try_lock() { return mutex_.try_lock(); }
    void unlock() { mutex_.unlock(); }

    const std::string &name() const { return name_; }

private:
    std::recursive_mutex mutex_;
    const std::string name_;
};

using NamedLockGuard = std::lock_guard<NamedRecursiveMutex>;

}  // namespace tolvane
