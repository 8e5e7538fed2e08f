// Choosing hardware decoding: the streams it takes, the format choice, and
// the engine's fallback where no device opens (as on a machine without GPU).

#include "engine/video/hardware/hardware_decoding.h"

#include <gtest/gtest.h>

#include <QFile>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

TEST(HardwareDecoding, FormatChoicePrefersTheSurfaceThenTheFirstSoftwareFormat) {
    constexpr AVPixelFormat kNone = AV_PIX_FMT_NONE;
    struct Case {
        const char *name;
        std::vector<AVPixelFormat> offered;
        AVPixelFormat expected;
    };
    const Case cases[] = {
        {"surface offered", {AV_PIX_FMT_VAAPI, AV_PIX_FMT_YUV420P, kNone}, AV_PIX_FMT_VAAPI},
        {"surface offered last", {AV_PIX_FMT_YUV420P, AV_PIX_FMT_VAAPI, kNone}, AV_PIX_FMT_VAAPI},
        {"refused: software", {AV_PIX_FMT_YUV420P, kNone}, AV_PIX_FMT_YUV420P},
        {"other surfaces skipped",
         {AV_PIX_FMT_CUDA, AV_PIX_FMT_VDPAU, AV_PIX_FMT_YUVJ420P, kNone},
         AV_PIX_FMT_YUVJ420P},
        {"nothing usable", {AV_PIX_FMT_CUDA, kNone}, kNone},
        {"empty list", {kNone}, kNone},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(pickHardwareOrSoftwareFormat(c.offered.data(), AV_PIX_FMT_VAAPI), c.expected)
            << c.name;
    }
    EXPECT_EQ(pickHardwareOrSoftwareFormat(nullptr, AV_PIX_FMT_VAAPI), kNone);
}

TEST(HardwareDecoding, OnlyEightBitFourTwoZeroH264IsTried) {
    struct Case {
        const char *file;
        const char *refusal;  // null: may be tried
    };
    const Case cases[] = {
        {"h264_aac.mkv", nullptr},
        {"h264_1080p.mkv", nullptr},
        {"h264_10bit_420.mkv", "the pictures are yuv420p10le, not yuv420p"},
        {"yuv422p.mkv", "the pictures are yuv422p, not yuv420p"},
        {"yuvj420p.mkv", "the pictures are yuvj420p, not yuv420p"},
        {"short_hevc_aac.mkv", "the video is hevc, not H.264"},
        {"short_mpeg2_mp2.ts", "the video is mpeg2video, not H.264"},
    };
    for (const Case &c : cases) {
        const OpenedInput input =
            openInputWithStreamInfo(QFile::encodeName(test::mediaPath(c.file)).constData());
        ASSERT_EQ(input.failedStep, -1) << c.file;
        const std::optional<std::string> refusal =
            hardwareDecodingRefusalFor(*input.context->streams[0]->codecpar);
        if (c.refusal == nullptr) {
            EXPECT_FALSE(refusal) << c.file << ": " << refusal.value_or("");
        } else {
            EXPECT_EQ(refusal.value_or("(none)"), c.refusal) << c.file;
        }
    }
}

// Whatever this machine offers, the engine's state agrees with it: with a
// device the file is decoded on it; without one, in software, saying why.
TEST(HardwareDecoding, EngineUsesTheDeviceExactlyWhenOneWorks) {
    std::string deviceFailures;
    const bool hasDevice = HardwareVideoDecoding::create(avcodec_find_decoder(AV_CODEC_ID_H264),
                                                         deviceFailures) != nullptr;

    struct Case {
        const char *file;
        bool isUseH264Acc;
        bool expectHardware;
        const char *reasonStart;  // when not decoded in hardware
    };
    const Case cases[] = {
        {"h264_aac.mkv", true, hasDevice, "no device: vaapi: "},
        {"h264_aac.mkv", false, false, "hardware decoding is off in the settings"},
        {"interlaced_tff.mkv", true, false, "the video is interlaced"},
    };
    for (const Case &c : cases) {
        MyCAOpenGLLayer engine;
        engine.setIsUseH264Acc(c.isUseH264Acc);
        ASSERT_EQ(engine.openMovieFile(test::mediaPath(c.file)), QLatin1String(kOpenSucceeded))
            << c.file;
        EXPECT_EQ(engine.isMacSupportH264Acc(), c.expectHardware) << c.file;
        if (c.expectHardware) {
            EXPECT_TRUE(engine.hardwareDecodingReason().isEmpty());
            EXPECT_TRUE(engine.flagMessPTS() == 0 || engine.flagMessPTS() == 1);
        } else {
            EXPECT_TRUE(engine.hardwareDecodingReason().startsWith(QLatin1String(c.reasonStart)))
                << c.file << ": " << engine.hardwareDecodingReason().toStdString();
            EXPECT_EQ(engine.flagMessPTS(), -100) << c.file;
        }
        engine.cleanBeforeOpenFile();
        EXPECT_FALSE(engine.isMacSupportH264Acc());
        EXPECT_TRUE(engine.hardwareDecodingReason().isEmpty());
    }
}

}  // namespace
}  // namespace tolvane
