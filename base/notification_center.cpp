#include "notification_center.h"

#include <algorithm>

namespace tolvane {

NotificationCenter &NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

NotificationCenter::Token NotificationCenter::addObserver(std::string name, Observer observer,
                                                          const void *object) {
    std::lock_guard lock(mutex_);
    const Token token = nextToken_++;
    entries_.push_back({token, std::move(name), object, std::move(observer)});
    return token;
}

void NotificationCenter::removeObserver(Token token) {
    std::lock_guard lock(mutex_);
    std::erase_if(entries_, [token](const Entry &entry) { return entry.token == token; });
}

void NotificationCenter::post(std::string name, const void *object, QVariantMap userInfo) {
    std::vector<Observer> matching;
    {
        std::lock_guard lock(mutex_);
        for (const Entry &entry : entries_) {
            if (entry.name == name && (entry.object == nullptr || entry.object == object)) {
                matching.push_back(entry.observer);
            }
        }
    }
    const Notification notification{std::move(name), object, std::move(userInfo)};
    for (const Observer &observer : matching) {
        observer(notification);
    }
}

ScopedObserver::ScopedObserver(std::string name, NotificationCenter::Observer observer,
                               const void *object)
    : token_(NotificationCenter::defaultCenter().addObserver(std::move(name), std::move(observer),
                                                             object)) {}

ScopedObserver::~ScopedObserver() {
    if (token_ != 0) {
        NotificationCenter::defaultCenter().removeObserver(token_);
    }
}

ScopedObserver::ScopedObserver(ScopedObserver &&other) noexcept
    : token_(std::exchange(other.token_, 0)) {}

ScopedObserver &ScopedObserver::operator=(ScopedObserver &&other) noexcept {
    if (this != &other) {
        if (token_ != 0) {
            NotificationCenter::defaultCenter().removeObserver(token_);
        }
        token_ = std::exchange(other.token_, 0);
    }
    return *this;
}

}  // namespace tolvane
