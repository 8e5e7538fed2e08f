#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <cmath>

#include "base/notification_center.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

QByteArray digestOf(const BitmapBytes &bytes) {
    return QCryptographicHash::hash(
        QByteArrayView(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size())),
        QCryptographicHash::Md5);
}

// Drives the packet and pixel passes by hand, as the two threads would,
// taking every picture out as soon as it is queued. Audio is not decoded
// here, so its packets are thrown away to keep the packet pacing reading.
class PixelPathTest : public ::testing::Test {
protected:
    void open(const char *file) {
        ASSERT_EQ(engine.openMovieFile(mediaPath(file)), QLatin1String(kOpenSucceeded)) << file;
        engine.setRate(1.0);
    }
    std::vector<BitmapData> decodePictures(std::size_t count, bool readPackets = true) {
        std::vector<BitmapData> pictures;
        for (int pass = 0; pass < 20000 && pictures.size() < count; ++pass) {
            const bool endOfFile =
                !readPackets || engine.addPacketOnePass() == PacketPassAction::Sleep;
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
    void readWholeFile() {
        while (engine.addPacketOnePass() == PacketPassAction::Read) {
        }
    }
    MyCAOpenGLLayer engine;
};

TEST_F(PixelPathTest, PictureTimesRiseSteadilyInDisplayOrderWithBFrames) {
    open("h264_aac.mkv");
    const std::vector<BitmapData> pictures = decodePictures(100);
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
    EXPECT_EQ(pictures.front().data.size(), 320u * 240u * 2u);
}

TEST_F(PixelPathTest, PacketsWithoutTimeStampsGetOneTimeBaseUnitPerPictureFromZero) {
    open("h264_aac.mkv");
    readWholeFile();
    std::vector<PacketPtr> stripped;
    while (AVPacket *packet = engine.getVideoPacket()) {
        stripped.emplace_back(av_packet_clone(packet));
        stripped.back()->pts = AV_NOPTS_VALUE;
        stripped.back()->dts = AV_NOPTS_VALUE;
    }
    engine.removeAllVideoPackets();
    for (PacketPtr &packet : stripped) {
        engine.addVideoPacket(packet.get());
    }
    const std::vector<BitmapData> pictures = decodePictures(100, false);
    ASSERT_GE(pictures.size(), 45u);
    const double unitSec = 0.001;  // Matroska's time base
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        EXPECT_NEAR(pictures[i].ptsSec, double(i) * unitSec, 1e-9) << "picture " << i;
    }
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

TEST_F(PixelPathTest, ProgressiveFileNeverPostsInterlaced) {
    int posts = 0;
    ScopedObserver observer(kIsInterlacedNotification, [&](const Notification &) { ++posts; });
    open("h264_aac.mkv");
    decodePictures(20);
    EXPECT_EQ(posts, 0);
    EXPECT_EQ(engine.pixelFormatMode(), kPixelFormat420p8);
}

TEST_F(PixelPathTest, TenBitLayoutsFollowTheTenBitSetting) {
    struct Case {
        const char *file;
        bool is10bit;
        std::size_t bytesPerPixel;
        int alphaOffset;  // where the opaque alpha lies in a pixel; -1 without alpha
        int alphaBytes;
    };
    const Case cases[] = {
        {"h264_10bit_444.mkv", false, 4, 0, 1},
        {"h264_10bit_444.mkv", true, 8, 6, 2},
        {"h264_10bit_420.mkv", true, 8, 6, 2},
        {"h264_10bit_420.mkv", false, 2, -1, 0},  // packed U Y0 V Y1
        {"yuv422p.mkv", true, 2, -1, 0},          // unsupported: read as 4:2:0
        {"yuvj420p.mkv", true, 2, -1, 0},
    };
    for (const Case &c : cases) {
        MyCAOpenGLLayer tenBitEngine;
        tenBitEngine.setIs10bitMode(c.is10bit);
        ASSERT_EQ(tenBitEngine.openMovieFile(mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        tenBitEngine.setRate(1.0);
        for (int pass = 0; pass < 2000 && tenBitEngine.bitmapDataCount() == 0; ++pass) {
            tenBitEngine.addPacketOnePass();
            tenBitEngine.addBitmapDataOnePass();
        }
        const BitmapData *picture = tenBitEngine.getBitmapData();
        ASSERT_NE(picture, nullptr) << c.file;
        ASSERT_EQ(picture->data.size(), 320u * 240u * c.bytesPerPixel) << c.file << c.is10bit;
        if (c.alphaOffset < 0) {
            continue;
        }
        bool everyPixelOpaque = true;
        for (std::size_t pixel = 0; pixel < 320u * 240u; ++pixel) {
            const std::uint8_t *alpha = &picture->data[pixel * c.bytesPerPixel + c.alphaOffset];
            everyPixelOpaque &= alpha[0] == 255 && (c.alphaBytes == 1 || alpha[1] == 255);
        }
        EXPECT_TRUE(everyPixelOpaque) << c.file << " is10bit " << c.is10bit;
    }
}

TEST_F(PixelPathTest, QueueNeverExceedsTheWantedLength) {
    open("h264_aac.mkv");
    for (int pass = 0; pass < 3000; ++pass) {
        engine.addPacketOnePass();
        engine.removeAllAudioPackets();
        engine.addBitmapDataOnePass();
        ASSERT_LE(engine.bitmapDataCount(), kMaxQueuedBitmaps) << "pass " << pass;
    }
    EXPECT_EQ(engine.bitmapDataCount(), kMaxQueuedBitmaps);
    // A consumer taking two pictures makes room for exactly two more.
    engine.getBitmapData();
    engine.getBitmapData();
    EXPECT_EQ(engine.removeBitmapData().size(), 2u);
    for (int pass = 0; pass < 100; ++pass) {
        engine.addBitmapDataOnePass();
    }
    EXPECT_EQ(engine.bitmapDataCount(), kMaxQueuedBitmaps);
}

TEST_F(PixelPathTest, ThreadsFillTheListToTheWantedLengthAndStop) {
    open("h264_aac.mkv");
    engine.startPacketThread();
    engine.startPixelThread();
    engine.startPixelThread();  // a second start keeps the running thread
    EXPECT_TRUE(engine.hasPixelThread());
    ASSERT_TRUE(test::waitUntil([&] { return engine.bitmapDataCount() == kMaxQueuedBitmaps; }));
    engine.stopPixelThread();
    engine.stopPacketThread();
    EXPECT_FALSE(engine.hasPixelThread());
    EXPECT_EQ(engine.bitmapDataCount(), kMaxQueuedBitmaps);
    engine.cleanBeforeOpenFile();
    EXPECT_EQ(engine.bitmapDataCount(), 0);
}

TEST_F(PixelPathTest, PausedEngineDecodesNothing) {
    open("h264_aac.mkv");
    readWholeFile();
    engine.setRate(0.0);
    EXPECT_EQ(engine.addBitmapDataOnePass(), PixelPassOutcome::Idle);
    EXPECT_EQ(engine.bitmapDataCount(), 0);
}

TEST_F(PixelPathTest, WhileSeekingTheListDoesNotGrowAndThePreviewIsReplaced) {
    open("h264_aac.mkv");
    engine.setIsSeekingVideoForTesting(true);
    std::vector<QByteArray> previews;
    for (int pass = 0; pass < 2000 && previews.size() < 3; ++pass) {
        engine.addPacketOnePass();
        engine.removeAllAudioPackets();
        if (engine.addBitmapDataOnePass() == PixelPassOutcome::QueuedPicture) {
            engine.readSeekPreview([&](const BitmapBytes &bytes, float width, float height) {
                EXPECT_EQ(bytes.size(), 320u * 240u * 2u);
                EXPECT_EQ(width, 320.0f);
                EXPECT_EQ(height, 240.0f);
                previews.push_back(digestOf(bytes));
            });
        }
        ASSERT_EQ(engine.bitmapDataCount(), 0);
    }
    ASSERT_EQ(previews.size(), 3u);
    EXPECT_NE(previews[0], previews[1]);
    EXPECT_NE(previews[1], previews[2]);
    engine.cleanBeforeOpenFile();
    engine.readSeekPreview([](const BitmapBytes &bytes, float width, float height) {
        EXPECT_TRUE(bytes.empty());
        EXPECT_EQ(width, 0.0f);
        EXPECT_EQ(height, 0.0f);
    });
}

TEST_F(PixelPathTest, SingleFrameDecodeShowsTheKeyFrameWithinFourPackets) {
    open("h264_aac.mkv");
    readWholeFile();
    engine.setIsSeekingVideoForTesting(true);
    const double fps = engine.videoFrameRate();
    EXPECT_DOUBLE_EQ(fps, 25.0);
    int fruitless = 0;
    bool shown = false;
    while (AVPacket *packet = engine.getVideoPacket()) {
        if ((shown = engine.decodingJustOneVideoFrameForNormal(packet, fps))) {
            break;
        }
        ++fruitless;
    }
    // The seek gives up after four packets without a picture.
    EXPECT_TRUE(shown);
    EXPECT_LT(fruitless, 4);
    EXPECT_EQ(engine.bitmapDataCount(), 0);
    engine.readSeekPreview([](const BitmapBytes &bytes, float width, float) {
        EXPECT_EQ(bytes.size(), 320u * 240u * 2u);
        EXPECT_EQ(width, 320.0f);
    });
}

TEST(BitmapLists, RemoveHandsTheReadPicturesToTheReader) {
    MyCAOpenGLLayer engine;
    for (int i = 0; i < 3; ++i) {
        engine.addBitmapData(BitmapBytes(4, std::uint8_t(i)), 0.04 * i, 2, 1);
    }
    const BitmapData *first = engine.getBitmapData();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->data[0], 0);
    const std::vector<BitmapData> taken = engine.removeBitmapData();
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].data, BitmapBytes(4, 0));
    EXPECT_EQ(engine.bitmapDataCount(), 2);
    EXPECT_EQ(engine.removeBitmapData().size(), 2u) << "nothing read: everything goes";
    engine.addBitmapData(BitmapBytes(4), 1.0, 2, 1);
    engine.removeAllBitmapDatas();
    EXPECT_EQ(engine.bitmapDataCount(), 0);
    EXPECT_EQ(engine.getBitmapData(), nullptr);
}

TEST(BitmapLists, HoldingInsertKeepsTimeOrderAndArrivalOrderForEqualTimes) {
    MyCAOpenGLLayer engine;
    const std::pair<double, std::uint8_t> arrivals[] = {{0.2, 1}, {0.1, 2}, {0.2, 3},
                                                        {0.0, 4}, {0.3, 5}, {0.1, 6}};
    for (const auto &[time, tag] : arrivals) {
        engine.insertHoldingBitmapData(BitmapBytes(1, tag), time);
    }
    std::vector<int> order;
    while (const HoldingBitmapData *entry = engine.getHoldingBitmapData()) {
        order.push_back(entry->data[0]);
    }
    EXPECT_EQ(order, (std::vector<int>{4, 2, 6, 1, 3, 5}));
    EXPECT_EQ(engine.removeHoldingBitmapData().size(), 6u);
    engine.addHoldingBitmapData(BitmapBytes(1), 9.0);
    engine.removeAllHoldingBitmapDatas();
    EXPECT_EQ(engine.holdingBitmapDataCount(), 0);
}

}  // namespace
}  // namespace tolvane
