#include <gtest/gtest.h>

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

TEST(OpenMovieFile, TracksRecordListsEveryAudioStreamKeyedByIndexAndPlaysTheFirst) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("three_audio.mkv")), QLatin1String(kOpenSucceeded));
    EXPECT_EQ(engine.audioStreamIndex(), 1);
    const QVariantMap record = engine.tracks().toVariantMap();
    EXPECT_EQ(record.keys(), (QStringList{"audiotrack", "videotrack"}));
    const QVariantMap video = record["videotrack"].toMap();
    EXPECT_EQ(video.keys(), (QStringList{"codecname", "fps", "height", "idx", "pixelformat",
                                         "sourceHeight", "tbr", "width"}));
    EXPECT_EQ(video["codecname"].toString(), "H264");
    EXPECT_EQ(video["width"].toInt(), 320);
    EXPECT_EQ(video["height"].toInt(), 240);
    EXPECT_DOUBLE_EQ(video["fps"].toDouble(), 25.0);
    EXPECT_DOUBLE_EQ(video["tbr"].toDouble(), 25.0);
    const QVariantMap audioTracks = record["audiotrack"].toMap();
    ASSERT_EQ(audioTracks.keys(), (QStringList{"1", "2", "3"}));
    QStringList languages;
    for (const QString &key : audioTracks.keys()) {
        EXPECT_EQ(audioTracks[key].toMap()["idx"].toInt(), key.toInt());
        languages.push_back(audioTracks[key].toMap()["language"].toString());
    }
    EXPECT_EQ(languages, (QStringList{"kor", "jpn", "und"}));
    const QVariantMap audio = audioTracks["1"].toMap();
    EXPECT_EQ(audio.keys(), (QStringList{"channel", "codecname", "idx", "language", "sampleformat",
                                         "samplerate", "starttimesec"}));
    EXPECT_EQ(audio["codecname"].toString(), "AAC");
    EXPECT_EQ(audio["channel"].toString(), "Stereo");
    EXPECT_EQ(audio["sampleformat"].toString(), "FLTP");
    EXPECT_EQ(audio["samplerate"].toInt(), 48000);
    EXPECT_DOUBLE_EQ(audio["starttimesec"].toDouble(), 0.002);  // the stream's own start
    EXPECT_NEAR(engine.fileDurationSec(), 2.0, 0.1);
    EXPECT_EQ(engine.audioBytesPerChannel(), 4);
}

// "sourceHeight" is the height shown: 1080 for a 1080p H.264 stream, whose
// coded height, padded to whole macroblocks, is 1088.
TEST(OpenMovieFile, VideoTrackDimensionsAreTheDisplayedOnes) {
    struct Case {
        const char *file;
        int width;
        int height;
    };
    for (const Case &c : {Case{"h264_1080p.mkv", 1920, 1080}, Case{"h264_aac.mkv", 320, 240}}) {
        MyCAOpenGLLayer engine;
        ASSERT_EQ(engine.openMovieFile(mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        const QVariantMap video = engine.tracks().toVariantMap()["videotrack"].toMap();
        EXPECT_EQ(video["width"].toInt(), c.width) << c.file;
        EXPECT_EQ(video["height"].toInt(), c.height) << c.file;
        EXPECT_EQ(video["sourceHeight"].toInt(), c.height) << c.file;
    }
}

TEST(OpenMovieFile, SparseKeyframesAreUgly) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("sparse_keyframes.mp4")),
              QLatin1String(kOpenSucceeded));
    EXPECT_TRUE(engine.isUglyKeyframe());
    ASSERT_EQ(engine.openMovieFile(mediaPath("h264_aac.mp4")), QLatin1String(kOpenSucceeded));
    EXPECT_FALSE(engine.isUglyKeyframe()) << "the reset must clear the flag";
}

TEST(CleanBeforeOpenFile, HarmlessOnAFreshEngineAndTwiceInARow) {
    MyCAOpenGLLayer engine;
    engine.cleanBeforeOpenFile();
    engine.cleanBeforeOpenFile();
    EXPECT_EQ(engine.videoStreamIndex(), -1);

    ASSERT_EQ(engine.openMovieFile(mediaPath("surround51.mkv")), QLatin1String(kOpenSucceeded));
    engine.setRate(1.0);
    engine.startPacketThread();
    ASSERT_TRUE(test::waitUntil([&] { return engine.videoPacketCount() > 0; }));
    engine.cleanBeforeOpenFile();
    engine.cleanBeforeOpenFile();
    EXPECT_FALSE(engine.hasPacketThread());
    EXPECT_EQ(engine.videoPacketCount(), 0);
    EXPECT_EQ(engine.audioPacketCount(), 0);
    EXPECT_EQ(engine.videoStreamIndex(), -1);
    EXPECT_EQ(engine.audioStreamIndex(), -1);
    EXPECT_EQ(engine.rate(), 0.0);
    EXPECT_EQ(engine.fileDurationSec(), 0.0);
    EXPECT_EQ(engine.audioBytesPerChannel(), 2);
    EXPECT_TRUE(engine.tracks().isEmpty());
}

}  // namespace
}  // namespace tolvane
