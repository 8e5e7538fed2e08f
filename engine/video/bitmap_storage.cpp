#include <deque>
#include <mutex>
#include <new>

#include "engine/video/bitmap_data.h"

namespace tolvane {

namespace {

// Below this a block comes from the ordinary heap without page faults of its own.
constexpr std::size_t kSmallestPooledBlockBytes = 64 * 1024;
// Enough for the pictures in flight between the pixel thread and the drawing
// at full HD; more sizes than one only while a file changes its picture size.
// The bytes stay within what the bitmap list may hold, so that a seek or a
// run of late pictures, which free many at once, does not double the memory
// of 16-bit or 4K pictures.
constexpr std::size_t kMaxPooledBlocks = 8;
constexpr std::size_t kMaxPooledBytes = std::size_t(32) << 20;

struct PooledBlock {
    void *block;
    std::size_t bytes;
};

// Process-wide; bitmaps must not outlive static destruction.
class BitmapStoragePool {
public:
    ~BitmapStoragePool() { releaseAll(); }

    void *take(std::size_t bytes) {
        std::lock_guard lock(mutex_);
        for (auto entry = blocks_.begin(); entry != blocks_.end(); ++entry) {
            if (entry->bytes == bytes) {
                void *block = entry->block;
                pooledBytes_ -= bytes;
                blocks_.erase(entry);
                return block;
            }
        }
        return nullptr;
    }

    // Keeps `block`, evicting the oldest blocks to stay within the limits.
    void keep(void *block, std::size_t bytes) {
        std::deque<PooledBlock> evicted;
        {
            std::lock_guard lock(mutex_);
            while (!blocks_.empty() &&
                   (blocks_.size() >= kMaxPooledBlocks || pooledBytes_ + bytes > kMaxPooledBytes)) {
                evicted.push_back(blocks_.front());
                pooledBytes_ -= blocks_.front().bytes;
                blocks_.pop_front();
            }
            if (bytes <= kMaxPooledBytes) {
                blocks_.push_back({block, bytes});
                pooledBytes_ += bytes;
                block = nullptr;
            }
        }
        for (const PooledBlock &old : evicted) {
            ::operator delete(old.block);
        }
        ::operator delete(block);
    }

    void releaseAll() noexcept {
        std::deque<PooledBlock> released;
        {
            std::lock_guard lock(mutex_);
            released.swap(blocks_);
            pooledBytes_ = 0;
        }
        for (const PooledBlock &old : released) {
            ::operator delete(old.block);
        }
    }

private:
    std::mutex mutex_;
    std::deque<PooledBlock> blocks_;  // guarded by mutex_; oldest first
    std::size_t pooledBytes_ = 0;     // guarded by mutex_
};

BitmapStoragePool &bitmapStoragePool() {
    static BitmapStoragePool pool;
    return pool;
}

}  // namespace

void *allocateBitmapStorage(std::size_t bytes) {
    if (bytes >= kSmallestPooledBlockBytes) {
        if (void *block = bitmapStoragePool().take(bytes)) {
            return block;
        }
    }
    return ::operator new(bytes);
}

void releaseBitmapStorage(void *block, std::size_t bytes) noexcept {
    if (block == nullptr) {
        return;
    }
    if (bytes < kSmallestPooledBlockBytes) {
        ::operator delete(block);
        return;
    }
    try {
        bitmapStoragePool().keep(block, bytes);
    } catch (...) {
        ::operator delete(block);
    }
}

void releasePooledBitmapStorage() noexcept { bitmapStoragePool().releaseAll(); }

}  // namespace tolvane
