#include <gtest/gtest.h>

#include "engine/video/bitmap_conversion.h"
#include "engine/video/video_decoding_rules.h"

namespace tolvane {
namespace {

TEST(BitmapQueueBytes, LargePicturesQueueFewerButNeverTooFew) {
    struct Case {
        BitmapLayout layout;
        int width;
        int height;
        int expected;
    };
    const Case cases[] = {
        {BitmapLayout::Packed422From420p8, 1920, 1080, 14},
        {BitmapLayout::Packed422From420p8, 320, 240, kMaxQueuedBitmaps},
        {BitmapLayout::Rgba16From420p10, 1920, 1080, 3},  // 16.6 MB each
        {BitmapLayout::Packed422From420p8, 3840, 2160, 3},
        {BitmapLayout::Rgba16From420p10, 3840, 2160, kMinQueuedBitmaps},
        {BitmapLayout::Rgba16From444p10, 7680, 4320, kMinQueuedBitmaps},
        {BitmapLayout::Packed422From420p8, 0, 0, kMaxQueuedBitmaps},  // size not known yet
    };
    for (const Case &c : cases) {
        const int limit =
            bitmapQueueLimitForPictureBytes(bitmapByteCountFor(c.layout, c.width, c.height));
        EXPECT_EQ(limit, c.expected) << c.width << "x" << c.height;
        EXPECT_TRUE(limit == kMinQueuedBitmaps ||
                    std::size_t(limit) * bitmapByteCountFor(c.layout, c.width, c.height) <=
                        kMaxQueuedBitmapBytes);
    }
}

}  // namespace
}  // namespace tolvane
