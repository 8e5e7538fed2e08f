#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

struct OpenCase {
    const char *file;
    const char *resultPrefix;  // the code, and for failed opens FFmpeg's text after it
    int pixelFormatMode;
    const char *pixelFormatName;
    bool alertsNoPixelFormat;
};

const OpenCase kOpenCases[] = {
    {"h264_aac.mkv", "+1000", 42010, "YUV420P", false},
    {"audio_first.mkv", "+1000", 42010, "YUV420P", false},
    {"h264_10bit_420.mkv", "+1000", 42020, "YUV420P 10-bit", false},
    {"h264_10bit_444.mkv", "+1000", 44420, "YUV444P 10-bit", false},
    {"yuvj420p.mkv", "+1000", 0, "YUVJ420P", true},
    {"yuv422p.mkv", "+1000", 0, "YUV422P", true},
    {"truncated.mkv", "+1000", 42010, "YUV420P", false},
    {"video_only.mkv", "+1000", 42010, "YUV420P", false},
    {"no_timestamps.h264", "-2003", -1, "", false},
    {"audio_only.mka", "-2002", -1, "", false},
    {"random.mkv", "-2000: ", -1, "", false},
    {"does-not-exist.mkv", "-2000: No such file or directory.", -1, "", false},
};

// durationSecOfMovieFile asks for what opening asks for: video, and sound it can
// decode or a known length.
TEST(OpenMovieFile, ResultCodesPixelModesAlertsAndDuration) {
    for (const OpenCase &c : kOpenCases) {
        MyCAOpenGLLayer engine;
        const QString result = engine.openMovieFile(mediaPath(c.file));
        EXPECT_TRUE(result.startsWith(QLatin1String(c.resultPrefix)))
            << c.file << ": " << result.toStdString();
        const double durationSec = MyCAOpenGLLayer::durationSecOfMovieFile(mediaPath(c.file));
        if (result != QLatin1String(kOpenSucceeded)) {
            EXPECT_TRUE(engine.tracks().isEmpty()) << c.file;
            EXPECT_EQ(durationSec, -100.0) << c.file;
            continue;
        }
        EXPECT_NEAR(durationSec, 2.0, 0.1) << c.file;
        EXPECT_EQ(engine.pixelFormatMode(), c.pixelFormatMode) << c.file;
        EXPECT_EQ(engine.tracks().videotrack->pixelformat, QLatin1String(c.pixelFormatName));
        const auto alerts = engine.recordedAlerts();
        ASSERT_EQ(alerts.size(), c.alertsNoPixelFormat ? 1u : 0u) << c.file;
        if (c.alertsNoPixelFormat) {
            EXPECT_EQ(alerts[0].informativeText, QLatin1String(c.pixelFormatName));
            EXPECT_NE(alerts[0].message, QLatin1String("NOPXFMT")) << "untranslated alert";
        }
    }
}

// The record as the inspector and the probe print it; "sourceHeight" is the
// height shown: 1080 for a 1080p H.264 stream, whose coded height, padded to
// whole macroblocks, is 1088.
TEST(OpenMovieFile, TracksRecordListsEveryAudioStreamKeyedByIndexAndPlaysTheFirst) {
    // The second and third tracks are sine sources at their own rate and start.
    const auto audio = [](int idx, const char *language, int rate, double start) {
        return QStringLiteral(R"("%1":{"channel":"Stereo","codecname":"AAC","idx":%1,)"
                              R"("language":"%2","sampleformat":"FLTP","samplerate":%3,)"
                              R"("starttimesec":%4})")
            .arg(idx)
            .arg(language)
            .arg(rate)
            .arg(start);
    };
    const auto video = [](int width, int height) {
        return QStringLiteral(R"({"codecname":"H264","fps":25,"height":%2,"idx":0,)"
                              R"("pixelformat":"YUV420P","sourceHeight":%2,"tbr":25,"width":%1})")
            .arg(width)
            .arg(height);
    };
    const struct {
        const char *file;
        QString tracks;
    } cases[] = {
        {"three_audio.mkv", R"({"audiotrack":{)" + audio(1, "kor", 48000, 0.002) + "," +
                                audio(2, "jpn", 44100, 0) + "," + audio(3, "und", 44100, 0) +
                                R"(},"videotrack":)" + video(320, 240) + "}"},
        {"h264_1080p.mkv", R"({"audiotrack":{)" + audio(1, "und", 48000, 0) + R"(},"videotrack":)" +
                               video(1920, 1080) + "}"},
    };
    for (const auto &c : cases) {
        MyCAOpenGLLayer engine;
        ASSERT_EQ(engine.openMovieFile(mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        const QJsonDocument record(QJsonObject::fromVariantMap(engine.tracks().toVariantMap()));
        EXPECT_EQ(QString::fromUtf8(record.toJson(QJsonDocument::Compact)), c.tracks) << c.file;
    }
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("three_audio.mkv")), QLatin1String(kOpenSucceeded));
    EXPECT_EQ(engine.audioStreamIndex(), 1);
    EXPECT_NEAR(engine.fileDurationSec(), 2.0, 0.1);
    EXPECT_EQ(engine.audioBytesPerChannel(), 4);
}

// What a reset leaves, compared with what a fresh engine holds.
auto resetStateOf(MyCAOpenGLLayer &engine) {
    return std::make_tuple(
        engine.hasPacketThread(), engine.videoPacketCount(), engine.audioPacketCount(),
        engine.videoStreamIndex(), engine.audioStreamIndex(), engine.rate(),
        engine.fileDurationSec(), engine.audioBytesPerChannel(), engine.isUglyKeyframe(),
        engine.tracks().isEmpty(), engine.hasPixelThread(), engine.bitmapDataCount());
}

TEST(CleanBeforeOpenFile, LeavesAFreshEnginesStateAndIsHarmlessTwice) {
    MyCAOpenGLLayer fresh;
    MyCAOpenGLLayer engine;
    engine.cleanBeforeOpenFile();
    ASSERT_EQ(engine.openMovieFile(mediaPath("sparse_keyframes.mp4")),
              QLatin1String(kOpenSucceeded));
    EXPECT_TRUE(engine.isUglyKeyframe());
    engine.setRate(1.0);
    engine.startPacketThread();
    engine.startPixelThread();
    // The pixel thread fills the list to the wanted length and stops there.
    ASSERT_TRUE(test::waitUntil([&] { return engine.bitmapDataCount() == kMaxQueuedBitmaps; }));
    engine.cleanBeforeOpenFile();
    engine.cleanBeforeOpenFile();
    EXPECT_EQ(resetStateOf(engine), resetStateOf(fresh));
}

}  // namespace
}  // namespace tolvane
