#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace tolvane {

// An allocator whose value-less construct leaves the bytes uninitialised, so
// that sizing a bitmap does not write it once before the conversion does.
template <typename T>
struct UninitialisedAllocator : std::allocator<T> {
    template <typename U>
    struct rebind {
        using other = UninitialisedAllocator<U>;
    };
    UninitialisedAllocator() = default;
    template <typename U>
    UninitialisedAllocator(const UninitialisedAllocator<U> &) noexcept {}

    template <typename U>
    void construct(U *pointer) noexcept {
        ::new (static_cast<void *>(pointer)) U;
    }
    template <typename U, typename... Args>
    void construct(U *pointer, Args &&...args) {
        ::new (static_cast<void *>(pointer)) U(std::forward<Args>(args)...);
    }
};

// The bytes of one converted picture, in one of the layouts of
// bitmap_conversion.h. Its storage is aligned for the 16-bit layouts.
using BitmapBytes = std::vector<std::uint8_t, UninitialisedAllocator<std::uint8_t>>;

// A timed picture in the bitmap list. `width` and `height` are the decoded
// frame's, also for the first-field layout whose bitmap has half the rows.
struct BitmapData {
    BitmapBytes data;
    double ptsSec = 0.0;
    int width = 0;
    int height = 0;
};

// An entry of the holding bitmap list, kept in time order by its insert.
struct HoldingBitmapData {
    BitmapBytes data;
    double hPTS = 0.0;
};

}  // namespace tolvane
