#include "engine/video/bitmap_conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <vector>

namespace tolvane {
namespace {

// A planar picture with rows padded past their width, so that a conversion
// reading the width instead of the line size shows.
struct SyntheticPicture {
    SyntheticPicture(int width, int height, int bytesPerSample, int chromaWidth, int chromaHeight)
        : bytesPerSample(bytesPerSample),
          widths{width, chromaWidth, chromaWidth},
          heights{height, chromaHeight, chromaHeight} {
        view.width = width;
        view.height = height;
        for (int plane = 0; plane < 3; ++plane) {
            view.strides[plane] = widths[plane] * bytesPerSample + 24;
            // Padding bytes hold a value no conversion should ever see.
            storage[plane].assign(std::size_t(view.strides[plane] * heights[plane]), 0xEE);
            view.planes[plane] = storage[plane].data();
        }
    }
    void fill(int plane, const std::function<int(int, int)> &at) {
        for (int y = 0; y < heights[plane]; ++y) {
            for (int x = 0; x < widths[plane]; ++x) {
                const auto word = std::uint16_t(at(x, y));
                std::memcpy(storage[plane].data() + y * view.strides[plane] + x * bytesPerSample,
                            &word, std::size_t(bytesPerSample));  // little-endian
            }
        }
    }

    int bytesPerSample;
    int widths[3];
    int heights[3];
    std::vector<std::uint8_t> storage[3];
    PlanarPictureView view;
};

std::vector<std::uint16_t> asWords(const std::vector<std::uint8_t> &bytes) {
    std::vector<std::uint16_t> words(bytes.size() / 2);
    std::memcpy(words.data(), bytes.data(), words.size() * 2);
    return words;
}

std::vector<std::uint8_t> convert(BitmapLayout layout, const PlanarPictureView &view,
                                  bool topFieldFirst = true) {
    // Filled with a marker so that bytes left unwritten would be noticed.
    std::vector<std::uint8_t> bitmap(bitmapByteCountFor(layout, view.width, view.height), 0xA5);
    convertPictureToBitmap(layout, view, topFieldFirst, bitmap.data());
    return bitmap;
}

// A row without a partner is left zero: the odd last row (and column) of a
// packed picture, and a first field of fewer than four rows.
TEST(BitmapConversion, RowsWithoutAPartnerAreLeftZero) {
    SyntheticPicture picture(5, 3, 2, 3, 2);
    picture.fill(0, [](int, int) { return 50 << 2; });
    picture.fill(1, [](int, int) { return 60 << 2; });
    picture.fill(2, [](int, int) { return 70 << 2; });
    const std::uint8_t row[] = {60, 50, 70, 50, 60, 50, 70, 50, 0, 0};
    std::vector<std::uint8_t> expected(5 * 3 * 2, 0);
    std::copy(std::begin(row), std::end(row), expected.begin());
    std::copy(std::begin(row), std::end(row), expected.begin() + 10);
    EXPECT_EQ(convert(BitmapLayout::Packed422From420p10, picture.view), expected);

    SyntheticPicture threeRows(4, 3, 1, 2, 2);
    EXPECT_EQ(convert(BitmapLayout::Packed422FirstFieldFrom420p8, threeRows.view),
              std::vector<std::uint8_t>(12, 0));
}

// NV12 keeps the luma rows and interleaves the chroma, rounded up at odd sizes.
TEST(BitmapConversion, Nv12FromPaddedPlanesOfAnOddSize) {
    SyntheticPicture picture(3, 3, 1, 2, 2);
    picture.fill(0, [](int x, int y) { return 10 * y + x; });
    picture.fill(1, [](int x, int y) { return 100 + 10 * y + x; });
    picture.fill(2, [](int x, int y) { return 200 + 10 * y + x; });
    const std::vector<std::uint8_t> expected = {0,   1,   2,   10,  11,  12,  20,  21, 22,
                                                100, 200, 101, 201, 110, 210, 111, 211};
    EXPECT_EQ(convert(BitmapLayout::Nv12From420p8, picture.view), expected);
}

TEST(BitmapConversion, FirstFieldTakesRowsOfTheFieldsParity) {
    SyntheticPicture picture(2, 8, 1, 1, 4);
    picture.fill(0, [](int x, int y) { return 10 * y + x; });
    picture.fill(1, [](int, int y) { return 100 + y; });
    picture.fill(2, [](int, int y) { return 200 + y; });
    // Luma rows 4k and 4k+2 of the field, both with chroma row 2k of the field.
    const std::vector<std::uint8_t> top = {100, 0,  200, 1,  100, 20, 200, 21,
                                           102, 40, 202, 41, 102, 60, 202, 61};
    const std::vector<std::uint8_t> bottom = {101, 10, 201, 11, 101, 30, 201, 31,
                                              103, 50, 203, 51, 103, 70, 203, 71};
    EXPECT_EQ(convert(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view, true), top);
    EXPECT_EQ(convert(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view, false), bottom);
}

TEST(BitmapConversion, TenBit420ToEightBitShiftsEverySample) {
    SyntheticPicture picture(2, 2, 2, 1, 1);
    picture.fill(0, [](int x, int y) { return 1023 - 300 * y - x; });
    picture.fill(1, [](int, int) { return 515; });
    picture.fill(2, [](int, int) { return 0xFC00 | 64; });  // bit 10 up: not the sample
    const std::vector<std::uint8_t> expected = {128, 255, 16, 255, 128, 180, 16, 180};
    EXPECT_EQ(convert(BitmapLayout::Packed422From420p10, picture.view), expected);
}

// 4:2:0 must give what 4:4:4 gives with each chroma sample spread over its
// 2x2 block.
TEST(BitmapConversion, TenBit420ToRgbaSharesEachChromaSampleWithItsBlock) {
    const int luma[2][4] = {{64, 940, 512, 0}, {1023, 700, 100, 300}};
    const int u[2] = {512, 960};
    const int v[2] = {960, 64};
    SyntheticPicture subsampled(4, 2, 2, 2, 1);
    SyntheticPicture full(4, 2, 2, 4, 2);
    for (SyntheticPicture *picture : {&subsampled, &full}) {
        picture->fill(0, [&](int x, int y) { return luma[y][x]; });
    }
    subsampled.fill(1, [&](int x, int) { return u[x]; });
    subsampled.fill(2, [&](int x, int) { return v[x]; });
    full.fill(1, [&](int x, int) { return u[x / 2]; });
    full.fill(2, [&](int x, int) { return v[x / 2]; });
    EXPECT_EQ(convert(BitmapLayout::Rgba16From420p10, subsampled.view),
              convert(BitmapLayout::Rgba16From444p10, full.view));
}

TEST(BitmapConversion, KnownTenBitPixels) {
    struct Case {
        int y, u, v;
        std::uint16_t red16, green16, blue16;
        std::uint8_t red8, green8, blue8;
    };
    const Case cases[] = {
        {64, 512, 512, 0, 0, 0, 0, 0, 0},                     // video black
        {940, 512, 512, 56064, 56064, 56064, 219, 219, 219},  // video white, not stretched
        {1023, 1023, 1023, 65535, 26816, 65535, 255, 104, 255},
        {0, 0, 0, 0, 30528, 0, 0, 119, 0},  // negative terms clamp to 0
        {500, 300, 700, 44736, 24000, 3904, 174, 93, 15},
        {1023, 512, 559, 65535, 59264, 61376, 255, 231, 239},  // red exactly 1024
    };
    // Each case fills 16 pixels of one row, so that the vectorised loops see it.
    const int width = 16 * int(std::size(cases));
    SyntheticPicture picture(width, 1, 2, width, 1);
    picture.fill(0, [&](int x, int) { return cases[x / 16].y; });
    picture.fill(1, [&](int x, int) { return cases[x / 16].u; });
    picture.fill(2, [&](int x, int) { return cases[x / 16].v; });
    const std::vector<std::uint16_t> rgba16 =
        asWords(convert(BitmapLayout::Rgba16From444p10, picture.view));
    const std::vector<std::uint8_t> argb8 = convert(BitmapLayout::Argb8From444p10, picture.view);
    for (int x = 0; x < width; ++x) {
        const Case &c = cases[x / 16];
        const auto at = std::ptrdiff_t(x) * 4;
        EXPECT_EQ(std::vector<std::uint16_t>(rgba16.begin() + at, rgba16.begin() + at + 4),
                  (std::vector<std::uint16_t>{c.red16, c.green16, c.blue16, 65535}))
            << c.y << " " << c.u << " " << c.v;
        EXPECT_EQ(std::vector<std::uint8_t>(argb8.begin() + at, argb8.begin() + at + 4),
                  (std::vector<std::uint8_t>{255, c.red8, c.green8, c.blue8}))
            << c.y << " " << c.u << " " << c.v;
    }
}

}  // namespace
}  // namespace tolvane
