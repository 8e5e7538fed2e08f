#include "engine/bitmap_conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

namespace tolvane {
namespace {

// A planar picture built in the test, with rows padded past their width so
// that a conversion reading the width instead of the line size shows.
struct SyntheticPicture {
    static constexpr int kRowPadding = 24;

    SyntheticPicture(int width, int height, int bytesPerSample, int chromaWidth, int chromaHeight)
        : bytesPerSample(bytesPerSample) {
        view.width = width;
        view.height = height;
        const int widths[3] = {width, chromaWidth, chromaWidth};
        const int heights[3] = {height, chromaHeight, chromaHeight};
        for (int plane = 0; plane < 3; ++plane) {
            view.strides[plane] = widths[plane] * bytesPerSample + kRowPadding;
            // Padding bytes hold a value no conversion should ever see.
            storage[plane].assign(std::size_t(view.strides[plane] * heights[plane]), 0xEE);
            view.planes[plane] = storage[plane].data();
        }
    }
    void set(int plane, int x, int y, int value) {
        std::uint8_t *sample = storage[plane].data() + y * view.strides[plane] + x * bytesPerSample;
        if (bytesPerSample == 1) {
            *sample = std::uint8_t(value);
        } else {
            const auto word = std::uint16_t(value);
            std::memcpy(sample, &word, 2);
        }
    }
    void fill(int plane, int planeWidth, int planeHeight, const std::function<int(int, int)> &at) {
        for (int y = 0; y < planeHeight; ++y) {
            for (int x = 0; x < planeWidth; ++x) {
                set(plane, x, y, at(x, y));
            }
        }
    }

    int bytesPerSample;
    std::vector<std::uint8_t> storage[3];
    PlanarPictureView view;
};

// The integer formulas, written out independently of the conversion code.
struct ExpectedRgb {
    int red, green, blue;
};
ExpectedRgb referenceRgb10(int y10, int u10, int v10) {
    const int y = y10 - 64;
    const int u = u10 - 512;
    const int v = v10 - 512;
    return {y + v * 14020 / 10000, y - (v * 7143 + u * 3437) / 10000, y + u * 17700 / 10000};
}
std::uint16_t reference16(int value) { return std::uint16_t(std::clamp(value * 64, 0, 65535)); }
std::uint8_t reference8(int value) { return std::uint8_t(std::clamp(value / 4, 0, 255)); }

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

TEST(BitmapLayout, FollowsModeAndTenBitSetting) {
    struct Case {
        int mode;
        bool is10bit;
        BitmapLayout layout;
        std::size_t bytesFor4x4;
    };
    const Case cases[] = {
        {42010, true, BitmapLayout::Packed422From420p8, 32},
        {42010, false, BitmapLayout::Packed422From420p8, 32},
        {0, true, BitmapLayout::Packed422From420p8, 32},
        {42011, true, BitmapLayout::Packed422FirstFieldFrom420p8, 16},
        {42020, true, BitmapLayout::Rgba16From420p10, 128},
        {42020, false, BitmapLayout::Packed422From420p10, 32},
        {44420, true, BitmapLayout::Rgba16From444p10, 128},
        {44420, false, BitmapLayout::Argb8From444p10, 64},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(bitmapLayoutFor(c.mode, c.is10bit), c.layout) << c.mode << " " << c.is10bit;
        EXPECT_EQ(bitmapByteCountFor(c.layout, 4, 4), c.bytesFor4x4) << c.mode;
    }
}

TEST(BitmapConversion, Packs420p8AsUY0VY1WithOneChromaRowPerTwoRows) {
    SyntheticPicture picture(4, 4, 1, 2, 2);
    picture.fill(0, 4, 4, [](int x, int y) { return 10 * y + x; });
    picture.fill(1, 2, 2, [](int x, int y) { return 100 + 10 * y + x; });
    picture.fill(2, 2, 2, [](int x, int y) { return 200 + 10 * y + x; });
    const std::vector<std::uint8_t> expected = {
        100, 0,  200, 1,  101, 2,  201, 3,   // row 0, chroma row 0
        100, 10, 200, 11, 101, 12, 201, 13,  // row 1, chroma row 0
        110, 20, 210, 21, 111, 22, 211, 23,  // row 2, chroma row 1
        110, 30, 210, 31, 111, 32, 211, 33,
    };
    EXPECT_EQ(convert(BitmapLayout::Packed422From420p8, picture.view), expected);
}

TEST(BitmapConversion, OddLastRowAndColumnAreLeftZero) {
    SyntheticPicture picture(5, 3, 1, 3, 2);
    picture.fill(0, 5, 3, [](int, int) { return 50; });
    picture.fill(1, 3, 2, [](int, int) { return 60; });
    picture.fill(2, 3, 2, [](int, int) { return 70; });
    const std::vector<std::uint8_t> bitmap =
        convert(BitmapLayout::Packed422From420p8, picture.view);
    ASSERT_EQ(bitmap.size(), 5u * 3u * 2u);
    const std::uint8_t written[] = {60, 50, 70, 50, 60, 50, 70, 50, 0, 0};
    EXPECT_TRUE(std::equal(std::begin(written), std::end(written), bitmap.begin()));
    EXPECT_TRUE(std::all_of(bitmap.begin() + 20, bitmap.end(), [](auto b) { return b == 0; }))
        << "the third row has no partner and stays unwritten";
}

TEST(BitmapConversion, FirstFieldTakesRowsOfTheFieldsParity) {
    SyntheticPicture picture(2, 8, 1, 1, 4);
    picture.fill(0, 2, 8, [](int x, int y) { return 10 * y + x; });
    picture.fill(1, 1, 4, [](int, int y) { return 100 + y; });
    picture.fill(2, 1, 4, [](int, int y) { return 200 + y; });
    // Luma rows 4k and 4k+2 of the field, both with chroma row 2k of the field.
    const std::vector<std::uint8_t> top = {100, 0,  200, 1,  100, 20, 200, 21,
                                           102, 40, 202, 41, 102, 60, 202, 61};
    const std::vector<std::uint8_t> bottom = {101, 10, 201, 11, 101, 30, 201, 31,
                                              103, 50, 203, 51, 103, 70, 203, 71};
    EXPECT_EQ(convert(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view, true), top);
    EXPECT_EQ(convert(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view, false), bottom);
}

TEST(BitmapConversion, FirstFieldOfFewerThanFourRowsIsUnwritten) {
    SyntheticPicture picture(4, 3, 1, 2, 2);
    const std::vector<std::uint8_t> bitmap =
        convert(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view);
    ASSERT_EQ(bitmap.size(), 12u);
    EXPECT_TRUE(std::all_of(bitmap.begin(), bitmap.end(), [](auto b) { return b == 0; }));
}

TEST(BitmapConversion, TenBit420ToEightBitShiftsEverySample) {
    SyntheticPicture picture(2, 2, 2, 1, 1);
    picture.fill(0, 2, 2, [](int x, int y) { return 1023 - 300 * y - x; });
    picture.set(1, 0, 0, 515);
    picture.set(2, 0, 0, 0xFC00 | 64);  // bits above the tenth are not part of the sample
    const std::vector<std::uint8_t> expected = {128, 255, 16, 255, 128, 180, 16, 180};
    EXPECT_EQ(convert(BitmapLayout::Packed422From420p10, picture.view), expected);
}

// Every (U, V) pair of the 10-bit range in one 4:4:4 frame, with a luma that
// walks the range too, against the integer formulas.
class TenBitFullRange : public ::testing::Test {
protected:
    TenBitFullRange() : picture(1024, 1024, 2, 1024, 1024) {
        picture.fill(0, 1024, 1024, [](int x, int y) { return lumaAt(x, y); });
        picture.fill(1, 1024, 1024, [](int x, int) { return x; });
        picture.fill(2, 1024, 1024, [](int, int y) { return y; });
    }
    static int lumaAt(int x, int y) { return (x * 7 + y * 13) % 1024; }
    SyntheticPicture picture;
};

TEST_F(TenBitFullRange, Yuv444To16BitRgbaHoldsTheFormulaValues) {
    const std::vector<std::uint16_t> words =
        asWords(convert(BitmapLayout::Rgba16From444p10, picture.view));
    int mismatches = 0;
    for (int y = 0; y < 1024 && mismatches < 5; ++y) {
        for (int x = 0; x < 1024; ++x) {
            const ExpectedRgb rgb = referenceRgb10(lumaAt(x, y), x, y);
            const std::uint16_t *pixel = &words[std::size_t(y * 1024 + x) * 4];
            const std::uint16_t expected[4] = {reference16(rgb.red), reference16(rgb.green),
                                               reference16(rgb.blue), 65535};
            if (!std::equal(expected, expected + 4, pixel)) {
                ADD_FAILURE() << "U " << x << " V " << y << ": got " << pixel[0] << "," << pixel[1]
                              << "," << pixel[2] << "," << pixel[3] << " expected " << expected[0]
                              << "," << expected[1] << "," << expected[2];
                ++mismatches;
            }
        }
    }
}

TEST_F(TenBitFullRange, Yuv444To8BitArgbHoldsTheFormulaValuesWithAlphaFirst) {
    const std::vector<std::uint8_t> bytes = convert(BitmapLayout::Argb8From444p10, picture.view);
    int mismatches = 0;
    for (int y = 0; y < 1024 && mismatches < 5; ++y) {
        for (int x = 0; x < 1024; ++x) {
            const ExpectedRgb rgb = referenceRgb10(lumaAt(x, y), x, y);
            const std::uint8_t *pixel = &bytes[std::size_t(y * 1024 + x) * 4];
            const std::uint8_t expected[4] = {255, reference8(rgb.red), reference8(rgb.green),
                                              reference8(rgb.blue)};
            if (!std::equal(expected, expected + 4, pixel)) {
                ADD_FAILURE() << "U " << x << " V " << y << ": got " << int(pixel[1]) << ","
                              << int(pixel[2]) << "," << int(pixel[3]) << " alpha "
                              << int(pixel[0]);
                ++mismatches;
            }
        }
    }
}

TEST(BitmapConversion, TenBit420To16BitRgbaSharesEachChromaSampleWithItsTwoByTwoBlock) {
    SyntheticPicture picture(4, 2, 2, 2, 1);
    const int luma[2][4] = {{64, 940, 512, 0}, {1023, 700, 100, 300}};
    picture.fill(0, 4, 2, [&](int x, int y) { return luma[y][x]; });
    const int u[2] = {512, 960};
    const int v[2] = {960, 64};
    picture.fill(1, 2, 1, [&](int x, int) { return u[x]; });
    picture.fill(2, 2, 1, [&](int x, int) { return v[x]; });
    const std::vector<std::uint16_t> words =
        asWords(convert(BitmapLayout::Rgba16From420p10, picture.view));
    ASSERT_EQ(words.size(), 4u * 2u * 4u);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x) {
            const ExpectedRgb rgb = referenceRgb10(luma[y][x], u[x / 2], v[x / 2]);
            const std::uint16_t *pixel = &words[std::size_t(y * 4 + x) * 4];
            EXPECT_EQ(pixel[0], reference16(rgb.red)) << x << "," << y;
            EXPECT_EQ(pixel[1], reference16(rgb.green)) << x << "," << y;
            EXPECT_EQ(pixel[2], reference16(rgb.blue)) << x << "," << y;
            EXPECT_EQ(pixel[3], 65535) << x << "," << y;
        }
    }
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
    };
    for (const Case &c : cases) {
        SyntheticPicture picture(1, 1, 2, 1, 1);
        picture.set(0, 0, 0, c.y);
        picture.set(1, 0, 0, c.u);
        picture.set(2, 0, 0, c.v);
        const std::vector<std::uint16_t> words =
            asWords(convert(BitmapLayout::Rgba16From444p10, picture.view));
        EXPECT_EQ(words, (std::vector<std::uint16_t>{c.red16, c.green16, c.blue16, 65535}))
            << c.y << " " << c.u << " " << c.v;
        EXPECT_EQ(convert(BitmapLayout::Argb8From444p10, picture.view),
                  (std::vector<std::uint8_t>{255, c.red8, c.green8, c.blue8}))
            << c.y << " " << c.u << " " << c.v;
    }
}

}  // namespace
}  // namespace tolvane
