#pragma once

#include <atomic>
#include <list>
#include <mutex>
#include <vector>

#include "base/named_mutex.h"

namespace tolvane {

// The engine's queue design, shared by the packet, picture and sample lists:
// items are appended at the end; reading hands out the item after the read
// cursor and moves the cursor onto it without removing anything; removing
// frees every item from the front through the cursor, or everything when
// nothing has been read since the last trim. A consumer that needs several
// items before it can use them (a decoder filling its delay) reads on and
// frees them all at once.
//
// Pointers handed out by read() stay valid until the item is removed.
// Thread-safety: every operation takes the queue's lock for its whole run;
// count() is an atomic read for pacing decisions made without the lock.
template <typename T>
class CursorQueue {
public:
    explicit CursorQueue(NamedRecursiveMutex &mutex) : mutex_(mutex) {}
    CursorQueue(const CursorQueue &) = delete;
    CursorQueue &operator=(const CursorQueue &) = delete;

    NamedRecursiveMutex &mutex() const { return mutex_; }

    int count() const { return count_.load(std::memory_order_relaxed); }

    void add(T item) {
        NamedLockGuard lock(mutex_);
        items_.push_back(std::move(item));
        count_.store(int(items_.size()), std::memory_order_relaxed);
    }

    // The next unread item, or null when the queue is empty or all of it has
    // been read (the cursor then stays where it was).
    T *read() {
        NamedLockGuard lock(mutex_);
        auto next = hasCursor_ ? std::next(cursor_) : items_.begin();
        if (next == items_.end()) {
            return nullptr;
        }
        cursor_ = next;
        hasCursor_ = true;
        return &*cursor_;
    }

    // Forgets what was read without freeing it: the next read starts again
    // at the first item.
    void resetCursor() {
        NamedLockGuard lock(mutex_);
        hasCursor_ = false;
    }

    // Frees the items read so far; with no cursor, frees every item.
    void removeThroughCursor() {
        NamedLockGuard lock(mutex_);
        if (items_.empty()) {
            return;
        }
        if (hasCursor_) {
            items_.erase(items_.begin(), std::next(cursor_));
        } else {
            items_.clear();
        }
        hasCursor_ = false;
        count_.store(int(items_.size()), std::memory_order_relaxed);
    }

    // As removeThroughCursor(), handing the removed items to the caller in
    // queue order instead of freeing them.
    std::vector<T> takeThroughCursor() {
        NamedLockGuard lock(mutex_);
        std::vector<T> taken;
        const auto end = hasCursor_ ? std::next(cursor_) : items_.end();
        for (auto item = items_.begin(); item != end; ++item) {
            taken.push_back(std::move(*item));
        }
        items_.erase(items_.begin(), end);
        hasCursor_ = false;
        count_.store(int(items_.size()), std::memory_order_relaxed);
        return taken;
    }

    void removeAll() {
        NamedLockGuard lock(mutex_);
        items_.clear();
        hasCursor_ = false;
        count_.store(0, std::memory_order_relaxed);
    }

    // Number of items handed out and not yet removed.
    int readCount() const {
        NamedLockGuard lock(mutex_);
        if (!hasCursor_) {
            return 0;
        }
        return int(std::distance(items_.cbegin(), typename std::list<T>::const_iterator(cursor_))) +
               1;
    }

    // Calls `visit` on every item in order, under the lock.
    template <typename Visit>
    void forEach(Visit visit) const {
        NamedLockGuard lock(mutex_);
        for (const T &item : items_) {
            visit(item);
        }
    }

private:
    NamedRecursiveMutex &mutex_;
    std::list<T> items_;                      // guarded by mutex_
    typename std::list<T>::iterator cursor_;  // guarded by mutex_; valid while hasCursor_
    bool hasCursor_ = false;                  // guarded by mutex_
    std::atomic<int> count_{0};               // written under mutex_, read anywhere
};

}  // namespace tolvane
