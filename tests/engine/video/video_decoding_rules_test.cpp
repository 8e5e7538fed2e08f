#include "engine/video/video_decoding_rules.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/video/bitmap_conversion.h"

namespace tolvane {
namespace {

TEST(WantedBitmapQueueLength, FramesLeftToTheEndCappedAtFifteen) {
    struct Case {
        double durationSec, startSec, nowSec, fps;
        int wanted;
    };
    const Case cases[] = {
        {2.0, 0.0, 0.0, 25.0, 15},  {2.0, 0.0, 1.6, 25.0, 10},  // 0.4 s left at 25 fps
        {2.0, 0.0, 1.97, 25.0, 1},                              // the last frame
        {2.0, 0.0, 2.0, 25.0, 0},                               // at the end: nothing more
        {2.0, 0.021, 1.9, 25.0, 3},                             // the start time moves the end
        {2.0, 0.0, 0.0, 0.0, 0},                                // no usable frame rate
        {2.0, 0.0, 0.0, NAN, 0},    {2.0, 0.0, 0.0, INFINITY, 0},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(wantedBitmapQueueLength(c.durationSec, c.startSec, c.nowSec, c.fps), c.wanted)
            << "duration " << c.durationSec << " start " << c.startSec << " now " << c.nowSec
            << " fps " << c.fps;
    }
}

TEST(VideoFrameRate, AverageFirstThenRealBase) {
    EXPECT_DOUBLE_EQ(videoFrameRateFor({25, 1}, {50, 1}), 25.0);
    EXPECT_DOUBLE_EQ(videoFrameRateFor({0, 1}, {30000, 1001}), 30000.0 / 1001.0);
    EXPECT_DOUBLE_EQ(videoFrameRateFor({25, 0}, {24, 1}), 24.0);
    EXPECT_DOUBLE_EQ(videoFrameRateFor({0, 0}, {0, 0}), 0.0);
}

TEST(PixelPassAction, SleepsWhenPausedFullOrStarved) {
    struct Case {
        double rate;
        int wanted, bitmaps, video, audio;
        bool decoderHoldsPictures;
        PixelPassAction action;
    };
    const Case cases[] = {
        {0.0, 15, 0, 50, 50, false, PixelPassAction::Sleep},   // paused
        {1.0, 0, 0, 50, 50, false, PixelPassAction::Sleep},    // end of file
        {1.0, 15, 15, 50, 50, false, PixelPassAction::Sleep},  // list full
        {1.0, 10, 12, 50, 50, false, PixelPassAction::Sleep},  // more than the end needs
        {1.0, 15, 0, 0, 0, false, PixelPassAction::Sleep},     // every list empty
        {1.0, 15, 0, 0, 0, true, PixelPassAction::Decode},     // ...but pictures held back
        {1.0, 15, 15, 0, 0, true, PixelPassAction::Sleep},
        {1.0, 15, 0, 0, 3, false, PixelPassAction::Decode},  // audio still queued
        {1.0, 15, 2, 0, 0, false, PixelPassAction::Decode},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(pixelPassActionFor(c.rate, c.wanted, c.bitmaps, c.video, c.audio,
                                     c.decoderHoldsPictures),
                  c.action)
            << "rate " << c.rate << " wanted " << c.wanted << " bitmaps " << c.bitmaps << " video "
            << c.video << " audio " << c.audio << " held " << c.decoderHoldsPictures;
    }
}

TEST(LateVideoPacket, DroppedOnlyWhenLateWithTwoHundredQueuedAndNotKey) {
    struct Case {
        std::optional<double> packetSec;
        bool key;
        double nowSec;
        int queued;
        double seekingSec;
        bool drop;
        double seekingAfter;
    };
    const Case cases[] = {
        {10.0, false, 13.0, 200, 0.0, true, 0.0},   // 3 s late, 200 queued
        {10.0, true, 13.0, 250, 0.0, false, 0.0},   // key frames are never dropped
        {10.0, false, 13.0, 199, 0.0, false, 0.0},  // too few queued
        {10.0, false, 12.5, 250, 0.0, false, 0.0},  // exactly 2.5 s is not late
        {std::nullopt, false, 13.0, 250, 0.0, false, 0.0},
        // After a seek the target stands in for the clock, once.
        {10.0, false, 13.0, 250, 11.0, false, 0.0},
        {10.0, false, 13.0, 250, 12.6, true, 0.0},
        // Not late by the clock: the seek target is kept for later.
        {10.0, false, 11.0, 250, 11.0, false, 11.0},
        {10.0, false, 13.0, 150, 11.0, false, 11.0},
    };
    for (const Case &c : cases) {
        const LateVideoPacketJudgement judgement =
            judgeLateVideoPacket(c.packetSec, c.key, c.nowSec, c.queued, c.seekingSec);
        EXPECT_EQ(judgement.drop, c.drop)
            << c.packetSec.value_or(-1) << " key " << c.key << " now " << c.nowSec << " queued "
            << c.queued << " seeking " << c.seekingSec;
        EXPECT_EQ(judgement.seekingMovieTimeSec, c.seekingAfter);
    }
}

TEST(PictureTime, OwnTimeFirstThenThePacketRule) {
    constexpr std::int64_t kNone = AV_NOPTS_VALUE;
    const AVRational millis{1, 1000};
    struct Case {
        std::int64_t bestEffort, pts, dts;
        double next;
        double ptsSec, nextAfter;
    };
    const Case cases[] = {
        {80, 40, 0, 5.0, 0.080, 0.081},          // the picture's own time wins
        {kNone, 120, 80, 5.0, 0.120, 0.121},     // packet pts
        {kNone, 0, 40, 5.0, 0.040, 5.001},       // pts 0 falls back to dts
        {kNone, kNone, 40, 5.0, 0.040, 5.001},   // no pts: dts
        {kNone, kNone, kNone, 5.0, 5.0, 5.001},  // nothing: the running next time
        {kNone, 0, kNone, 0.0, 0.0, 0.001},
    };
    for (const Case &c : cases) {
        const PictureTime time = pictureTimeFor(c.bestEffort, c.pts, c.dts, millis, c.next);
        EXPECT_DOUBLE_EQ(time.ptsSec, c.ptsSec) << c.bestEffort << " " << c.pts << " " << c.dts;
        EXPECT_DOUBLE_EQ(time.nextVideoFramePtsSec, c.nextAfter)
            << c.bestEffort << " " << c.pts << " " << c.dts;
    }
    // A negative packet pts is read as unsigned: a huge time, kept as it always was.
    EXPECT_GT(pictureTimeFor(kNone, -1, 0, millis, 0.0).ptsSec, 1e15);
}

TEST(BitmapQueueBytes, LargePicturesQueueFewerButNeverTooFew) {
    const struct {
        BitmapLayout layout;
        int width, height, expected;
    } cases[] = {
        {BitmapLayout::Packed422From420p8, 1920, 1080, 14},
        {BitmapLayout::Packed422From420p8, 320, 240, kMaxQueuedBitmaps},
        {BitmapLayout::Rgba16From420p10, 1920, 1080, 3},  // 16.6 MB each
        {BitmapLayout::Packed422From420p8, 3840, 2160, 3},
        {BitmapLayout::Rgba16From420p10, 3840, 2160, kMinQueuedBitmaps},
        {BitmapLayout::Rgba16From444p10, 7680, 4320, kMinQueuedBitmaps},
        {BitmapLayout::Packed422From420p8, 0, 0, kMaxQueuedBitmaps},  // size not known yet
    };
    for (const auto &c : cases) {
        EXPECT_EQ(bitmapQueueLimitForPictureBytes(bitmapByteCountFor(c.layout, c.width, c.height)),
                  c.expected)
            << c.width << "x" << c.height;
    }
}

}  // namespace
}  // namespace tolvane
