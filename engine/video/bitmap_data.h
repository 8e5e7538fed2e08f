#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/video/bitmap_conversion.h"

namespace tolvane {

// Storage for bitmaps. Every picture of a file has the same size, and a fresh
// block of several megabytes costs a page fault for every 4 KiB of it, so
// large blocks are kept in a small pool when freed and handed out again for
// the next request of the same size. Any thread.
void *allocateBitmapStorage(std::size_t bytes);
void releaseBitmapStorage(void *block, std::size_t bytes) noexcept;
// Frees the pooled blocks (the reset calls it between files).
void releasePooledBitmapStorage() noexcept;

// An allocator over the bitmap storage whose value-less construct leaves the
// bytes uninitialised, so that sizing a bitmap does not write it once before
// the conversion does.
template <typename T>
struct BitmapAllocator {
    using value_type = T;
    BitmapAllocator() = default;
    template <typename U>
    BitmapAllocator(const BitmapAllocator<U> &) noexcept {}

    T *allocate(std::size_t count) {
        return static_cast<T *>(allocateBitmapStorage(count * sizeof(T)));
    }
    void deallocate(T *pointer, std::size_t count) noexcept {
        releaseBitmapStorage(pointer, count * sizeof(T));
    }
    template <typename U>
    void construct(U *pointer) noexcept {
        ::new (static_cast<void *>(pointer)) U;
    }
    template <typename U, typename... Args>
    void construct(U *pointer, Args &&...args) {
        ::new (static_cast<void *>(pointer)) U(std::forward<Args>(args)...);
    }
    friend bool operator==(const BitmapAllocator &, const BitmapAllocator &) { return true; }
};

// The bytes of one converted picture, in one of the layouts of
// bitmap_conversion.h. Its storage is aligned for the 16-bit layouts.
using BitmapBytes = std::vector<std::uint8_t, BitmapAllocator<std::uint8_t>>;

// A timed picture in the bitmap list, with the layout it was converted into.
// `width` and `height` are the decoded frame's, also for the first-field
// layout whose bitmap has half the rows.
struct BitmapData {
    BitmapBytes data;
    double ptsSec = 0.0;
    int width = 0;
    int height = 0;
    BitmapLayout layout = BitmapLayout::Packed422From420p8;
};

}  // namespace tolvane
