#include <gtest/gtest.h>

#include "base/notification_center.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

// Drives the packet and pixel passes by hand, as the two threads would,
// taking every picture out as soon as it is queued. Audio is not decoded
// here, so its packets are thrown away to keep the packet pacing reading.
class PixelPathTest : public ::testing::Test {
protected:
    void open(const char *file) {
        ASSERT_EQ(engine.openMovieFile(mediaPath(file)), QLatin1String(kOpenSucceeded)) << file;
        engine.setRate(1.0);
    }
    std::vector<BitmapData> decodePictures(std::size_t count) {
        std::vector<BitmapData> pictures;
        for (int pass = 0; pass < 20000 && pictures.size() < count; ++pass) {
            const bool endOfFile = engine.addPacketOnePass() == PacketPassAction::Sleep;
            engine.removeAllAudioPackets();
            const PixelPassOutcome outcome = engine.addBitmapDataOnePass();
            while (engine.getBitmapData() != nullptr) {
            }
            for (BitmapData &picture : engine.removeBitmapData()) {
                pictures.push_back(std::move(picture));
            }
            if (endOfFile && (outcome == PixelPassOutcome::NoUnreadPacket ||
                              outcome == PixelPassOutcome::Idle)) {
                break;
            }
        }
        return pictures;
    }
    MyCAOpenGLLayer engine;
};

TEST_F(PixelPathTest, PictureTimesRiseSteadilyInDisplayOrderWithBFrames) {
    int interlacedPosts = 0;
    ScopedObserver observer(kIsInterlacedNotification,
                            [&](const Notification &) { ++interlacedPosts; });
    open("h264_aac.mkv");
    const std::vector<BitmapData> pictures = decodePictures(100);
    EXPECT_EQ(interlacedPosts, 0) << "a progressive file";
    // Every one of the 50 frames: those the decoder holds back for reordering
    // come out once the last packet has been read.
    ASSERT_EQ(pictures.size(), 50u);
    EXPECT_NEAR(pictures.front().ptsSec, 0.021, 1e-9);
    EXPECT_NEAR(pictures.back().ptsSec, 1.981, 1e-9);
    for (std::size_t i = 1; i < pictures.size(); ++i) {
        EXPECT_NEAR(pictures[i].ptsSec - pictures[i - 1].ptsSec, 0.04, 1e-9) << "picture " << i;
    }
    EXPECT_EQ(pictures.front().width, 320);
    EXPECT_EQ(pictures.front().height, 240);
    EXPECT_EQ(pictures.front().data.size(), 320u * 240u * 3u / 2u) << "NV12";

    // The seek's flush makes the decoder take packets, and a later end, again.
    engine.setCurrentTimeSec(0.0, false);
    const std::vector<BitmapData> again = decodePictures(100);
    ASSERT_EQ(again.size(), 50u);
    EXPECT_NEAR(again.back().ptsSec, 1.981, 1e-9);
}

TEST_F(PixelPathTest, InterlacedFileSwitchesToTheFirstFieldOncePostingOnce) {
    int posts = 0;
    ScopedObserver observer(
        kIsInterlacedNotification, [&](const Notification &) { ++posts; }, &engine);
    open("interlaced_tff.mkv");
    EXPECT_EQ(engine.pixelFormatMode(), kPixelFormat420p8);
    const std::vector<BitmapData> pictures = decodePictures(10);
    ASSERT_EQ(pictures.size(), 10u);
    EXPECT_EQ(posts, 1);
    EXPECT_TRUE(engine.isInterlaced());
    EXPECT_EQ(engine.pixelFormatMode(), kPixelFormat420p8Interlaced);
    for (const BitmapData &picture : pictures) {
        EXPECT_EQ(picture.data.size(), 320u * 120u * 2u) << "half the rows";
        EXPECT_EQ(picture.height, 240) << "the frame's own height is recorded";
    }
    engine.cleanBeforeOpenFile();
    EXPECT_FALSE(engine.isInterlaced());
}

// The first picture decoded while a seek waits to be drawn is its preview;
// those decoded before the draw decision takes it must reach the list, or the
// user sees a freeze and a jump after every seek.
TEST_F(PixelPathTest, WhileASeekPreviewWaitsLaterPicturesGoToTheListInOrder) {
    open("h264_aac.mkv");
    engine.setIsSeekingVideoForTesting(true);
    int previews = 0;
    for (int pass = 0; pass < 2000 && engine.bitmapDataCount() < 10; ++pass) {
        engine.addPacketOnePass();
        engine.removeAllAudioPackets();
        engine.addBitmapDataOnePass();
        engine.readSeekPreview([&](const BitmapBytes &bytes, float width, float height) {
            if (!bytes.empty()) {
                EXPECT_EQ(bytes.size(), 320u * 240u * 3u / 2u);
                EXPECT_EQ(width, 320.0f);
                EXPECT_EQ(height, 240.0f);
                previews = 1;
            }
        });
    }
    EXPECT_EQ(previews, 1);
    std::vector<BitmapData> queued;
    while (engine.getBitmapData() != nullptr) {
    }
    queued = engine.removeBitmapData();
    ASSERT_EQ(queued.size(), 10u);
    // The preview was the picture at 0.021 s; the list goes on from the next.
    for (std::size_t i = 0; i < queued.size(); ++i) {
        EXPECT_NEAR(queued[i].ptsSec, 0.061 + 0.04 * double(i), 1e-9) << "picture " << i;
    }
    engine.cleanBeforeOpenFile();
    engine.readSeekPreview([](const BitmapBytes &bytes, float width, float height) {
        EXPECT_TRUE(bytes.empty());
        EXPECT_EQ(width, 0.0f);
        EXPECT_EQ(height, 0.0f);
    });
}

}  // namespace
}  // namespace tolvane
