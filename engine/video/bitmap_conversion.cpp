// Picture-to-bitmap conversions. They are plain loops over the planes, kept
// simple enough for the compiler to vectorise: the inner loops have no
// branches, no calls and no aliasing between input and output.

#include "engine/video/bitmap_conversion.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "engine/video/hardware/nv12_bitmap.h"

// Each row loop is also compiled for AVX2 and the variant the processor can
// run is picked when the program loads. Not in sanitizer builds: the
// resolvers run before the sanitizer runtime is set up.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__)
#define TOLVANE_ROW_LOOP __attribute__((target_clones("avx2", "default")))
#else
#define TOLVANE_ROW_LOOP
#endif

namespace tolvane {

namespace {

constexpr int kTenBitMask = 0x3FF;
constexpr int kLumaBlack = 64;
constexpr int kChromaZero = 512;
constexpr std::uint16_t kOpaque16 = 65535;
constexpr std::uint8_t kOpaque8 = 255;

// The colour terms divide by 10000 truncating towards zero. Done in single
// precision the quotient is exact: every numerator stays below 2^24, a true
// quotient that is not whole lies at least 1/10000 from the next whole number,
// and the rounding error of one correctly rounded division is below
// 2^-24 × 1024 < 1/10000. A float division vectorises where a 32-bit integer
// division by a constant does not.
inline int truncatedTenThousandths(int numerator) {
    return static_cast<int>(static_cast<float>(numerator) / 10000.0f);
}
inline int redOffset(int v) { return truncatedTenThousandths((v - kChromaZero) * 14020); }
inline int greenOffset(int u, int v) {
    return truncatedTenThousandths((v - kChromaZero) * 7143 + (u - kChromaZero) * 3437);
}
inline int blueOffset(int u) { return truncatedTenThousandths((u - kChromaZero) * 17700); }

inline std::uint8_t to8bit(int tenBitValue) {
    // Divided by 4 truncating towards zero, then clamped: negatives become 0.
    return static_cast<std::uint8_t>(std::clamp(tenBitValue / 4, 0, 255));
}

inline const std::uint8_t *row8(const PlanarPictureView &picture, int plane, int row) {
    return picture.planes[plane] + std::ptrdiff_t(row) * picture.strides[plane];
}
inline const std::uint16_t *row16(const PlanarPictureView &picture, int plane, int row) {
    return reinterpret_cast<const std::uint16_t *>(picture.planes[plane] +
                                                   std::ptrdiff_t(row) * picture.strides[plane]);
}

TOLVANE_ROW_LOOP void packRow8(const std::uint8_t *__restrict luma,
                               const std::uint8_t *__restrict u, const std::uint8_t *__restrict v,
                               int pairs, std::uint8_t *__restrict out) {
    for (int i = 0; i < pairs; ++i) {
        out[4 * i] = u[i];
        out[4 * i + 1] = luma[2 * i];
        out[4 * i + 2] = v[i];
        out[4 * i + 3] = luma[2 * i + 1];
    }
}

TOLVANE_ROW_LOOP void packRow10(const std::uint16_t *__restrict luma,
                                const std::uint16_t *__restrict u,
                                const std::uint16_t *__restrict v, int pairs,
                                std::uint8_t *__restrict out) {
    for (int i = 0; i < pairs; ++i) {
        out[4 * i] = std::uint8_t((u[i] & kTenBitMask) >> 2);
        out[4 * i + 1] = std::uint8_t((luma[2 * i] & kTenBitMask) >> 2);
        out[4 * i + 2] = std::uint8_t((v[i] & kTenBitMask) >> 2);
        out[4 * i + 3] = std::uint8_t((luma[2 * i + 1] & kTenBitMask) >> 2);
    }
}

// The colour offsets of one chroma row, each stored twice so that the
// pixel loop reads them at the pixel's own index.
struct ChromaOffsets {
    std::vector<std::int16_t> red;
    std::vector<std::int16_t> green;
    std::vector<std::int16_t> blue;
    explicit ChromaOffsets(int pixels)
        : red(std::size_t(pixels)), green(std::size_t(pixels)), blue(std::size_t(pixels)) {}
};

TOLVANE_ROW_LOOP void computeChromaOffsetsForPairs(const std::uint16_t *__restrict u,
                                                   const std::uint16_t *__restrict v, int pairs,
                                                   std::int16_t *__restrict red,
                                                   std::int16_t *__restrict green,
                                                   std::int16_t *__restrict blue) {
    for (int i = 0; i < pairs; ++i) {
        const int u10 = u[i] & kTenBitMask;
        const int v10 = v[i] & kTenBitMask;
        const auto redTerm = std::int16_t(redOffset(v10));
        const auto greenTerm = std::int16_t(greenOffset(u10, v10));
        const auto blueTerm = std::int16_t(blueOffset(u10));
        red[2 * i] = redTerm;
        red[2 * i + 1] = redTerm;
        green[2 * i] = greenTerm;
        green[2 * i + 1] = greenTerm;
        blue[2 * i] = blueTerm;
        blue[2 * i + 1] = blueTerm;
    }
}

TOLVANE_ROW_LOOP void computeChromaOffsets(const std::uint16_t *__restrict u,
                                           const std::uint16_t *__restrict v, int count,
                                           std::int16_t *__restrict red,
                                           std::int16_t *__restrict green,
                                           std::int16_t *__restrict blue) {
    for (int i = 0; i < count; ++i) {
        const int u10 = u[i] & kTenBitMask;
        const int v10 = v[i] & kTenBitMask;
        red[i] = std::int16_t(redOffset(v10));
        green[i] = std::int16_t(greenOffset(u10, v10));
        blue[i] = std::int16_t(blueOffset(u10));
    }
}

// Two 16-bit values as the 32-bit word that holds them in this order in
// memory: one wide store instead of two narrow ones in the pixel loops.
inline std::uint32_t wordOf16bitPair(std::uint32_t first, std::uint32_t second) {
    if constexpr (std::endian::native == std::endian::little) {
        return first | (second << 16);
    } else {
        return (first << 16) | second;
    }
}

// (x × 64) clamped to 0..65535, in a form that fits 16-bit lanes: x is
// clamped to 0..1024 first, and 1024 × 64, which wraps to 0, loses one to
// become 65535.
inline std::uint16_t scaledTo16bit(int x) {
    const auto clamped = std::uint16_t(std::clamp(x, 0, 1024));
    return std::uint16_t((clamped << 6) - (clamped >> 10));
}

TOLVANE_ROW_LOOP void rgba16Row(const std::uint16_t *__restrict luma,
                                const std::int16_t *__restrict red,
                                const std::int16_t *__restrict green,
                                const std::int16_t *__restrict blue, int pixels,
                                std::uint16_t *__restrict out) {
    std::uint32_t *__restrict words = reinterpret_cast<std::uint32_t *>(out);
    for (int x = 0; x < pixels; ++x) {
        const int y = std::int16_t((luma[x] & kTenBitMask) - kLumaBlack);
        const std::uint32_t r = scaledTo16bit(y + red[x]);
        const std::uint32_t g = scaledTo16bit(y - green[x]);
        const std::uint32_t b = scaledTo16bit(y + blue[x]);
        words[2 * x] = wordOf16bitPair(r, g);
        words[2 * x + 1] = wordOf16bitPair(b, kOpaque16);
    }
}

TOLVANE_ROW_LOOP void argb8Row(const std::uint16_t *__restrict luma,
                               const std::int16_t *__restrict red,
                               const std::int16_t *__restrict green,
                               const std::int16_t *__restrict blue, int pixels,
                               std::uint8_t *__restrict out) {
    for (int x = 0; x < pixels; ++x) {
        const int y = std::int16_t((luma[x] & kTenBitMask) - kLumaBlack);
        out[4 * x] = kOpaque8;
        out[4 * x + 1] = to8bit(y + red[x]);
        out[4 * x + 2] = to8bit(y - green[x]);
        out[4 * x + 3] = to8bit(y + blue[x]);
    }
}

}  // namespace

int redOffsetFor10bitChroma(int v10) { return redOffset(v10 & kTenBitMask); }
int greenOffsetFor10bitChroma(int u10, int v10) {
    return greenOffset(u10 & kTenBitMask, v10 & kTenBitMask);
}
int blueOffsetFor10bitChroma(int u10) { return blueOffset(u10 & kTenBitMask); }

BitmapLayout bitmapLayoutFor(int pixelFormatMode, bool is10bitMode) {
    switch (pixelFormatMode) {
        case kPixelFormat420p8Interlaced:
            return BitmapLayout::Packed422FirstFieldFrom420p8;
        case kPixelFormat420p10:
            return is10bitMode ? BitmapLayout::Rgba16From420p10 : BitmapLayout::Packed422From420p10;
        case kPixelFormat444p10:
            return is10bitMode ? BitmapLayout::Rgba16From444p10 : BitmapLayout::Argb8From444p10;
        case kPixelFormat420p8:
        default:
            // Unsupported formats are read as 8-bit 4:2:0, deliberately: the
            // player keeps running whatever the picture looks like. NV12 keeps
            // the planes as decoded (the GPU converts and scales them in one
            // pass) and is a quarter smaller than the packed 4:2:2.
            return BitmapLayout::Nv12From420p8;
    }
}

std::size_t bitmapByteCountFor(BitmapLayout layout, int width, int height) {
    const std::size_t pixels = std::size_t(std::max(width, 0)) * std::size_t(std::max(height, 0));
    switch (layout) {
        case BitmapLayout::Packed422From420p8:
        case BitmapLayout::Packed422From420p10:
            return pixels * 2;
        case BitmapLayout::Packed422FirstFieldFrom420p8:
            return pixels;
        case BitmapLayout::Rgba16From420p10:
        case BitmapLayout::Rgba16From444p10:
            return pixels * 8;
        case BitmapLayout::Argb8From444p10:
            return pixels * 4;
        case BitmapLayout::Nv12From420p8:
            return nv12ByteCountFor(width, height);
    }
    return 0;
}

bool conversionWritesWholeBitmap(BitmapLayout layout, int width, int height) {
    switch (layout) {
        case BitmapLayout::Packed422From420p8:
        case BitmapLayout::Packed422From420p10:
        case BitmapLayout::Rgba16From420p10:
            return width % 2 == 0 && height % 2 == 0;
        case BitmapLayout::Packed422FirstFieldFrom420p8:
            return width % 2 == 0 && height % 4 == 0;
        case BitmapLayout::Rgba16From444p10:
        case BitmapLayout::Argb8From444p10:
        case BitmapLayout::Nv12From420p8:
            return true;
    }
    return false;
}

void convert420p8ToPacked422(const PlanarPictureView &picture, std::uint8_t *bitmap) {
    const int pairs = picture.width / 2;
    const std::size_t rowBytes = std::size_t(picture.width) * 2;
    for (int r = 0; r < picture.height / 2; ++r) {
        const std::uint8_t *u = row8(picture, 1, r);
        const std::uint8_t *v = row8(picture, 2, r);
        packRow8(row8(picture, 0, 2 * r), u, v, pairs, bitmap + rowBytes * std::size_t(2 * r));
        packRow8(row8(picture, 0, 2 * r + 1), u, v, pairs,
                 bitmap + rowBytes * std::size_t(2 * r + 1));
    }
}

void convert420p8FirstFieldToPacked422(const PlanarPictureView &picture, bool topFieldFirst,
                                       std::uint8_t *bitmap) {
    const int parity = topFieldFirst ? 0 : 1;
    const int pairs = picture.width / 2;
    const std::size_t rowBytes = std::size_t(picture.width) * 2;
    // Each group of four picture rows gives two field rows sharing one chroma row.
    for (int k = 0; k < picture.height / 4; ++k) {
        const std::uint8_t *u = row8(picture, 1, 2 * k + parity);
        const std::uint8_t *v = row8(picture, 2, 2 * k + parity);
        packRow8(row8(picture, 0, 4 * k + parity), u, v, pairs,
                 bitmap + rowBytes * std::size_t(2 * k));
        packRow8(row8(picture, 0, 4 * k + 2 + parity), u, v, pairs,
                 bitmap + rowBytes * std::size_t(2 * k + 1));
    }
}

void convert420p10ToPacked422(const PlanarPictureView &picture, std::uint8_t *bitmap) {
    const int pairs = picture.width / 2;
    const std::size_t rowBytes = std::size_t(picture.width) * 2;
    for (int r = 0; r < picture.height / 2; ++r) {
        const std::uint16_t *u = row16(picture, 1, r);
        const std::uint16_t *v = row16(picture, 2, r);
        packRow10(row16(picture, 0, 2 * r), u, v, pairs, bitmap + rowBytes * std::size_t(2 * r));
        packRow10(row16(picture, 0, 2 * r + 1), u, v, pairs,
                  bitmap + rowBytes * std::size_t(2 * r + 1));
    }
}

void convert420p10ToRgba16(const PlanarPictureView &picture, std::uint16_t *bitmap) {
    const int pairs = picture.width / 2;
    const std::size_t rowWords = std::size_t(picture.width) * 4;
    ChromaOffsets offsets(2 * pairs);
    for (int r = 0; r < picture.height / 2; ++r) {
        computeChromaOffsetsForPairs(row16(picture, 1, r), row16(picture, 2, r), pairs,
                                     offsets.red.data(), offsets.green.data(), offsets.blue.data());
        for (const int row : {2 * r, 2 * r + 1}) {
            rgba16Row(row16(picture, 0, row), offsets.red.data(), offsets.green.data(),
                      offsets.blue.data(), 2 * pairs, bitmap + rowWords * std::size_t(row));
        }
    }
}

void convert444p10ToRgba16(const PlanarPictureView &picture, std::uint16_t *bitmap) {
    const int width = picture.width;
    ChromaOffsets offsets(width);
    for (int row = 0; row < picture.height; ++row) {
        computeChromaOffsets(row16(picture, 1, row), row16(picture, 2, row), width,
                             offsets.red.data(), offsets.green.data(), offsets.blue.data());
        rgba16Row(row16(picture, 0, row), offsets.red.data(), offsets.green.data(),
                  offsets.blue.data(), width, bitmap + std::size_t(row) * std::size_t(width) * 4);
    }
}

void convert444p10ToArgb8(const PlanarPictureView &picture, std::uint8_t *bitmap) {
    const int width = picture.width;
    ChromaOffsets offsets(width);
    for (int row = 0; row < picture.height; ++row) {
        computeChromaOffsets(row16(picture, 1, row), row16(picture, 2, row), width,
                             offsets.red.data(), offsets.green.data(), offsets.blue.data());
        argb8Row(row16(picture, 0, row), offsets.red.data(), offsets.green.data(),
                 offsets.blue.data(), width, bitmap + std::size_t(row) * std::size_t(width) * 4);
    }
}

void convertPictureToBitmap(BitmapLayout layout, const PlanarPictureView &picture,
                            bool topFieldFirst, std::uint8_t *bitmap) {
    if (!conversionWritesWholeBitmap(layout, picture.width, picture.height)) {
        // The unwritten edge is zeroed rather than left as whatever the
        // allocator returned, so that equal pictures give equal bitmaps.
        std::memset(bitmap, 0, bitmapByteCountFor(layout, picture.width, picture.height));
    }
    switch (layout) {
        case BitmapLayout::Packed422From420p8:
            convert420p8ToPacked422(picture, bitmap);
            break;
        case BitmapLayout::Packed422FirstFieldFrom420p8:
            convert420p8FirstFieldToPacked422(picture, topFieldFirst, bitmap);
            break;
        case BitmapLayout::Packed422From420p10:
            convert420p10ToPacked422(picture, bitmap);
            break;
        case BitmapLayout::Rgba16From420p10:
            convert420p10ToRgba16(picture, reinterpret_cast<std::uint16_t *>(bitmap));
            break;
        case BitmapLayout::Rgba16From444p10:
            convert444p10ToRgba16(picture, reinterpret_cast<std::uint16_t *>(bitmap));
            break;
        case BitmapLayout::Argb8From444p10:
            convert444p10ToArgb8(picture, bitmap);
            break;
        case BitmapLayout::Nv12From420p8:
            convert420p8ToNv12(picture, bitmap);
            break;
    }
}

}  // namespace tolvane
