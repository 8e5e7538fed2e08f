#include <gtest/gtest.h>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

struct OpenCase {
    const char *file;
    const char *resultPrefix;  // the code, without the FFmpeg error text
    int pixelFormatMode;
    bool alertsNoPixelFormat;
};

const OpenCase kOpenCases[] = {
    {"h264_aac.mkv", "+1000", 42010, false},
    {"h264_aac.mp4", "+1000", 42010, false},
    {"audio_first.mkv", "+1000", 42010, false},
    {"three_audio.mkv", "+1000", 42010, false},
    {"surround51.mkv", "+1000", 42010, false},
    {"mono.mkv", "+1000", 42010, false},
    {"h264_10bit_420.mkv", "+1000", 42020, false},
    {"h264_10bit_444.mkv", "+1000", 44420, false},
    {"yuvj420p.mkv", "+1000", 0, true},
    {"yuv422p.mkv", "+1000", 0, true},
    {"interlaced_tff.mkv", "+1000", 42010, false},
    {"sparse_keyframes.mp4", "+1000", 42010, false},
    {"video_only.mkv", "-2003", -1, false},
    {"no_timestamps.h264", "-2003", -1, false},
    {"audio_only.mka", "-2002", -1, false},
    {"truncated.mkv", "+1000", 42010, false},
    {"random.mkv", "-2000: ", -1, false},
    {"does-not-exist.mkv", "-2000: ", -1, false},
};

TEST(OpenMovieFile, ResultCodesPixelModesAndAlerts) {
    for (const OpenCase &c : kOpenCases) {
        MyCAOpenGLLayer engine;
        const QString result = engine.openMovieFile(mediaPath(c.file));
        EXPECT_TRUE(result.startsWith(QLatin1String(c.resultPrefix)))
            << c.file << ": " << result.toStdString();
        if (result != QLatin1String(kOpenSucceeded)) {
            EXPECT_TRUE(engine.tracks().isEmpty()) << c.file;
            continue;
        }
        EXPECT_EQ(engine.pixelFormatMode(), c.pixelFormatMode) << c.file;
        const auto alerts = engine.recordedAlerts();
        ASSERT_EQ(alerts.size(), c.alertsNoPixelFormat ? 1u : 0u) << c.file;
        if (c.alertsNoPixelFormat) {
            EXPECT_EQ(alerts[0].informativeText, engine.tracks().videotrack->pixelformat);
            EXPECT_NE(alerts[0].message, QLatin1String("NOPXFMT")) << "untranslated alert";
        }
    }
}

TEST(OpenMovieFile, ErrorCodesCarryFFmpegsTextInTheirForm) {
    MyCAOpenGLLayer engine;
    const QString result = engine.openMovieFile(mediaPath("does-not-exist.mkv"));
    EXPECT_EQ(result, QStringLiteral("-2000: No such file or directory."));
}

TEST(OpenMovieFile, ChoosesStreamsAudioFirst) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("audio_first.mkv")), QLatin1String(kOpenSucceeded));
    EXPECT_EQ(engine.videoStreamIndex(), 1);
    EXPECT_EQ(engine.audioStreamIndex(), 0);
    const QVariantMap tracks = engine.tracks().toVariantMap();
    EXPECT_EQ(tracks.value("videotrack").toMap().value("idx").toInt(), 1);
    EXPECT_EQ(tracks.value("audiotrack").toMap().keys(), QStringList{"0"});
}

TEST(OpenMovieFile, ListsEveryAudioStreamKeyedByIndexAndPlaysTheFirst) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("three_audio.mkv")), QLatin1String(kOpenSucceeded));
    EXPECT_EQ(engine.audioStreamIndex(), 1);
    const QVariantMap audio = engine.tracks().toVariantMap().value("audiotrack").toMap();
    ASSERT_EQ(audio.keys(), (QStringList{"1", "2", "3"}));
    const QStringList languages = {audio["1"].toMap()["language"].toString(),
                                   audio["2"].toMap()["language"].toString(),
                                   audio["3"].toMap()["language"].toString()};
    EXPECT_EQ(languages, (QStringList{"kor", "jpn", "und"}));
    for (const QString &key : audio.keys()) {
        EXPECT_EQ(audio[key].toMap()["idx"].toInt(), key.toInt());
    }
}

TEST(OpenMovieFile, TracksRecordHoldsTheDescribedValues) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(mediaPath("h264_aac.mkv")), QLatin1String(kOpenSucceeded));
    const QVariantMap record = engine.tracks().toVariantMap();
    EXPECT_EQ(record.keys(), (QStringList{"audiotrack", "videotrack"}));
    const QVariantMap video = record["videotrack"].toMap();
    EXPECT_EQ(video.keys(), (QStringList{"codecname", "fps", "height", "idx", "pixelformat",
                                         "sourceHeight", "tbr", "width"}));
    EXPECT_EQ(video["codecname"].toString(), "H264");
    EXPECT_EQ(video["width"].toInt(), 320);
    EXPECT_EQ(video["height"].toInt(), 240);
    EXPECT_EQ(video["pixelformat"].toString(), "YUV420P");
    EXPECT_DOUBLE_EQ(video["fps"].toDouble(), 25.0);
    EXPECT_DOUBLE_EQ(video["tbr"].toDouble(), 25.0);
    const QVariantMap audio = record["audiotrack"].toMap()["1"].toMap();
    EXPECT_EQ(audio.keys(), (QStringList{"channel", "codecname", "idx", "language", "sampleformat",
                                         "samplerate", "starttimesec"}));
    EXPECT_EQ(audio["codecname"].toString(), "AAC");
    EXPECT_EQ(audio["channel"].toString(), "Stereo");
    EXPECT_EQ(audio["sampleformat"].toString(), "FLTP");
    EXPECT_EQ(audio["samplerate"].toInt(), 48000);
    EXPECT_EQ(audio["starttimesec"].toDouble(), 0.0);
    EXPECT_NEAR(engine.fileDurationSec(), 2.0, 0.1);
    EXPECT_EQ(engine.audioBytesPerChannel(), 4);
    EXPECT_FALSE(engine.isUglyKeyframe());
}

TEST(OpenMovieFile, ChannelTextsAndQuadFlag) {
    struct Case {
        const char *file;
        const char *channel;
        int bytesPerChannel;
    };
    for (const Case &c : {Case{"mono.mkv", "Mono", 4}, Case{"surround51.mkv", "5.1 Channels", 4},
                          Case{"h264_aac.mp4", "Stereo", 4}}) {
        MyCAOpenGLLayer engine;
        ASSERT_EQ(engine.openMovieFile(mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        const auto &audio = engine.tracks().audiotrack.at(engine.audioStreamIndex());
        EXPECT_EQ(audio.channel, QString::fromUtf8(c.channel)) << c.file;
        EXPECT_EQ(engine.audioBytesPerChannel(), c.bytesPerChannel) << c.file;
        EXPECT_FALSE(engine.isQuad()) << c.file;
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

TEST(DurationSecOfMovieFile, NeedsVideoAndUsableAudio) {
    struct Case {
        const char *file;
        double expected;  // -100 for "no duration"
    };
    for (const Case &c : {Case{"h264_aac.mkv", 2.0}, Case{"three_audio.mkv", 2.0},
                          Case{"video_only.mkv", -100.0}, Case{"audio_only.mka", -100.0},
                          Case{"random.mkv", -100.0}, Case{"does-not-exist.mkv", -100.0}}) {
        EXPECT_NEAR(MyCAOpenGLLayer::durationSecOfMovieFile(mediaPath(c.file)), c.expected, 0.1)
            << c.file;
    }
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

TEST(NameOf, CodecAndPixelFormatNames) {
    EXPECT_EQ(MyCAOpenGLLayer::nameOfCodecID(AV_CODEC_ID_H264), "H264");
    EXPECT_EQ(MyCAOpenGLLayer::nameOfCodecID(AV_CODEC_ID_NONE), "NONE");
    EXPECT_EQ(MyCAOpenGLLayer::nameOfPixelFormat(AV_PIX_FMT_YUV420P10LE), "YUV420P 10-bit");
    EXPECT_EQ(MyCAOpenGLLayer::nameOfPixelFormat(AV_PIX_FMT_YUV444P10LE), "YUV444P 10-bit");
    EXPECT_EQ(MyCAOpenGLLayer::nameOfPixelFormat(AV_PIX_FMT_YUVJ420P), "YUVJ420P");
    EXPECT_EQ(MyCAOpenGLLayer::nameOfPixelFormat(AV_PIX_FMT_NONE), "NONE");
}

}  // namespace
}  // namespace tolvane
