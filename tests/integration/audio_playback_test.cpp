// Plays the generated fixtures through the engine and the silent output
// device, which calls the render callback at real-time pace without sound.

#include <gtest/gtest.h>

#include <QFile>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "base/notification_center.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;
using test::waitUntil;

// The times of the first `count` audio packets at or after `targetSec` that
// a demuxer of the test's own delivers after repeating the engine's last seek.
std::vector<double> audioPacketSecsAfterSeek(const QString &path, const MyCAOpenGLLayer &engine,
                                             double targetSec, std::size_t count) {
    OpenedInput input = openInputWithStreamInfo(QFile::encodeName(path).constData());
    const int audioStream = engine.audioStreamIndex();
    const AVRational timeBase = input.context->streams[audioStream]->time_base;
    EXPECT_GE(av_seek_frame(input.context.get(), engine.videoStreamIndex(),
                            engine.lastSeekTimestamp(), engine.lastSeekFlags()),
              0);
    PacketPtr packet = makePacket();
    std::vector<double> found;
    while (found.size() < count && av_read_frame(input.context.get(), packet.get()) >= 0) {
        const double sec = av_q2d(timeBase) * double(packet->dts);
        if (packet->stream_index == audioStream && sec >= targetSec) {
            found.push_back(sec);
        }
        av_packet_unref(packet.get());
    }
    return found;
}

// Whether the clock, which moves in whole callbacks from its re-basing, was
// re-based on one of `packetSecs`. The decoder may keep its first packet
// after opening to prime itself, so the first frame out can come from the
// second or third packet at the target.
bool isClockRebasedOnOneOf(const std::vector<double> &packetSecs, std::int64_t outputted,
                           int sampleRate, int framesPerCallback) {
    for (const double sec : packetSecs) {
        const std::int64_t played = outputted - std::int64_t(double(sampleRate) * sec);
        if (played >= 0 && played % framesPerCallback == 0) {
            return true;
        }
    }
    return false;
}

class AudioPlaybackTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    void open(const char *fileName) {
        path = mediaPath(fileName);
        ASSERT_EQ(engine.openMovieFile(path), QLatin1String(kOpenSucceeded));
    }
    void start() {
        ASSERT_TRUE(engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f));
        engine.setRate(1.0);
    }
    bool waitForClockPast(double sec, int timeoutMs = 10000) {
        return waitUntil([&] { return engine.currentTimeSec() > sec; }, timeoutMs);
    }
    // Makes draw decisions as a display would until the output has stayed
    // stopped for half a second; returns the time of the last picture shown.
    double showPicturesUntilTheOutputStops(int timeoutMs = 10000) {
        double lastShownSec = -1.0;
        int stoppedPolls = 0;
        for (int elapsedMs = 0; elapsedMs < timeoutMs && stoppedPolls < 100; elapsedMs += 5) {
            PictureDecision decision;
            engine.canDrawInCGLContext(&decision);
            if (decision.kind == PictureDecision::Kind::Shown) {
                lastShownSec = decision.ptsSec;
            }
            stoppedPolls = engine.isRunningOutputUnit() ? 0 : stoppedPolls + 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return lastShownSec;
    }
    int sampleRate() const {
        return engine.tracks().audiotrack.at(engine.audioStreamIndex()).samplerate;
    }

    QString path;
    MyCAOpenGLLayer engine;
};

TEST_F(AudioPlaybackTest, PauseFreezesTheClockAndStopsReading) {
    open("long_h264_aac.mkv");
    start();
    ASSERT_TRUE(waitForClockPast(0.3));
    engine.setRate(0.0);
    EXPECT_FALSE(engine.isRunningOutputUnit());
    // A callback already under way may still finish.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const double pausedAt = engine.currentTimeSec();
    const int videoPackets = engine.videoPacketCount();
    const int audioPackets = engine.audioPacketCount();
    const std::int64_t readed = engine.readedSampleCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    EXPECT_EQ(engine.currentTimeSec(), pausedAt);
    EXPECT_EQ(engine.videoPacketCount(), videoPackets);
    EXPECT_EQ(engine.audioPacketCount(), audioPackets);
    EXPECT_EQ(engine.readedSampleCount(), readed);

    engine.setRate(1.0);
    EXPECT_TRUE(waitForClockPast(pausedAt + 0.1));
}

TEST_F(AudioPlaybackTest, OutputStopsItselfAtTheEnd) {
    // The audio of these files ends at different points of its last decoded
    // frame; the 8 s one leaves a packet past the end that is never decoded.
    for (const char *file : {"h264_aac.mkv", "h264_aac_8s.mkv"}) {
        SCOPED_TRACE(file);
        open(file);
        start();
        const double lastShownSec = showPicturesUntilTheOutputStops(20000);
        EXPECT_FALSE(engine.isRunningOutputUnit());
        EXPECT_EQ(engine.rate(), 1.0);
        EXPECT_EQ(engine.bitmapDataCount(), 0);
        EXPECT_EQ(engine.videoPacketCount(), 0);
        // The last picture, the ones the decoder held back included.
        EXPECT_GT(lastShownSec, engine.fileDurationSec() - 0.1);
        EXPECT_GE(engine.currentTimeSec(), lastShownSec);
    }
}

TEST_F(AudioPlaybackTest, ClockRunsOnOverPicturesLeftAfterTheAudioEnds) {
    open("short_audio.mkv");  // one second of sound, two of pictures
    start();
    const double lastShownSec = showPicturesUntilTheOutputStops();
    EXPECT_FALSE(engine.isRunningOutputUnit());
    EXPECT_GT(lastShownSec, 1.9);
    EXPECT_GE(engine.currentTimeSec(), lastShownSec);
    // Nothing after the audio but pictures: the clock ran on silence.
    EXPECT_EQ(engine.sampleDataCountForChannel(0), 0);
}

TEST_F(AudioPlaybackTest, SeekShowsOnePictureAtOnceWhenAsked) {
    open("long_h264_aac.mkv");
    auto previewWidth = [&] {
        float width = 0.0f;
        engine.readSeekPreview([&](const BitmapBytes &bitmap, float frameWidth, float) {
            width = bitmap.empty() ? 0.0f : frameWidth;
        });
        return width;
    };
    // The first decision after opening belongs to the view's new size.
    engine.canDrawInCGLContext();
    engine.setCurrentTimeSec(4.3, false);
    EXPECT_EQ(previewWidth(), 0.0f);
    engine.setCurrentTimeSec(6.5, true);
    EXPECT_EQ(previewWidth(), 160.0f);
    // A forward seek goes to the next key frame (7.021 s); the target follows
    // the packet whose picture came out, the decoder's delay included.
    EXPECT_GE(engine.seekingMovieTime(), 7.021);
    EXPECT_LT(engine.seekingMovieTime(), 7.2);
    // The first draw decision after it shows the preview.
    PictureDecision decision;
    EXPECT_TRUE(engine.canDrawInCGLContext(&decision));
    EXPECT_EQ(decision.kind, PictureDecision::Kind::SeekPreview);
}

TEST_F(AudioPlaybackTest, RatesOtherThanZeroAndOneChangeNothing) {
    open("h264_aac.mkv");
    start();
    for (const double ignored : {0.5, 2.0, -1.0}) {
        engine.setRate(ignored);
        EXPECT_EQ(engine.rate(), 1.0);
    }
    engine.setRate(0.0);
    engine.setRate(2.0);
    EXPECT_EQ(engine.rate(), 0.0);
    EXPECT_FALSE(engine.isRunningOutputUnit());
}

TEST_F(AudioPlaybackTest, SeekRebasesTheClockOnTheFirstAudioPacketAtTheTarget) {
    open("long_h264_aac.mkv");
    const double targetSec = engine.startTimeSec() + 4.3;
    engine.setCurrentTimeSec(4.3, true);
    EXPECT_EQ(engine.lastSeekFlags(), 8);  // forward from 0
    // Until the first frame is decoded the clock stands at the target.
    EXPECT_NEAR(engine.currentTimeSec(), targetSec, 1.0 / sampleRate());
    start();
    ASSERT_TRUE(waitForClockPast(targetSec));
    ASSERT_TRUE(waitForClockPast(engine.currentTimeSec() + 0.1));
    engine.setRate(0.0);

    const auto packetSecs = audioPacketSecsAfterSeek(path, engine, targetSec, 3);
    ASSERT_EQ(packetSecs.size(), 3u);
    EXPECT_TRUE(isClockRebasedOnOneOf(packetSecs, engine.outputtedSampleCount(), sampleRate(),
                                      engine.outputFramesPerCallback()))
        << "played " << engine.outputtedSampleCount() << " from " << packetSecs[0] << " s";

    // Back again: a backward seek.
    engine.setCurrentTimeSec(3.0, false);
    EXPECT_EQ(engine.lastSeekFlags(), 9);
}

TEST_F(AudioPlaybackTest, ChangingTrackResumesOneSecondEarlierAndKeepsPlaying) {
    open("three_audio.mkv");
    start();
    ASSERT_TRUE(waitForClockPast(1.4));
    const double stoodAt = engine.currentTimeSec();
    engine.changeAudioTrack(2);
    EXPECT_EQ(engine.audioStreamIndex(), 2);
    EXPECT_EQ(engine.rate(), 1.0);
    EXPECT_EQ(engine.countAudioDecodingError(), 0);
    // The clock re-bases near one second before where it stood, then runs on.
    ASSERT_TRUE(waitUntil([&] { return engine.isRunningOutputUnit(); }));
    const double resumedAt = engine.currentTimeSec();
    EXPECT_GE(resumedAt, stoodAt - 1.0 - 0.05);
    EXPECT_LT(resumedAt, stoodAt - 0.5);
    EXPECT_TRUE(waitForClockPast(resumedAt + 0.1));
}

TEST_F(AudioPlaybackTest, ChangingTrackWhilePausedStaysPaused) {
    open("three_audio.mkv");
    start();
    ASSERT_TRUE(waitForClockPast(1.3));
    engine.setRate(0.0);
    const double stoodAt = engine.currentTimeSec();
    engine.changeAudioTrack(3);
    EXPECT_EQ(engine.audioStreamIndex(), 3);
    EXPECT_EQ(engine.rate(), 0.0);
    EXPECT_FALSE(engine.isRunningOutputUnit());
    EXPECT_NEAR(engine.currentTimeSec(), stoodAt - 1.0, 0.001);
}

TEST_F(AudioPlaybackTest, TrackWithoutDecoderKeepsTheOldTrackAndSaysSo) {
    open("undecodable_audio.mkv");
    int posted = 0;
    ScopedObserver observer(
        kAudioCodecErrorNotification, [&](const Notification &) { ++posted; }, &engine);
    start();
    ASSERT_TRUE(waitForClockPast(0.3));
    engine.changeAudioTrack(2);
    EXPECT_EQ(posted, 1);
    EXPECT_EQ(engine.audioStreamIndex(), 1);
    EXPECT_EQ(engine.rate(), 1.0);
    const double resumedAt = engine.currentTimeSec();
    EXPECT_TRUE(waitForClockPast(resumedAt + 0.1));
}

TEST_F(AudioPlaybackTest, PlanarSurroundAndMonoSourcesPlay) {
    for (const char *fileName : {"surround51.mkv", "mono.mkv"}) {
        SCOPED_TRACE(fileName);
        open(fileName);
        start();
        EXPECT_TRUE(waitForClockPast(0.3));
        engine.cleanBeforeOpenFile();
        EXPECT_FALSE(engine.hasOutputUnit());
        EXPECT_EQ(engine.currentTimeSec(), 0.0);
    }
}

TEST_F(AudioPlaybackTest, OutputStartAndStopAreIdempotentAndVolumeNeedsAnOutput) {
    open("h264_aac.mkv");
    engine.setVolume(0.25f);
    EXPECT_EQ(engine.volume(), 1.0f);  // nothing to set before the output exists
    engine.startOutputUnit();
    EXPECT_FALSE(engine.isRunningOutputUnit());
    ASSERT_TRUE(engine.setDefaultOutputAUWithVolume(0.5f));
    EXPECT_EQ(engine.volume(), 0.5f);
    engine.startOutputUnit();
    engine.startOutputUnit();
    EXPECT_TRUE(engine.isRunningOutputUnit());
    engine.stopOutputUnit();
    engine.stopOutputUnit();
    EXPECT_FALSE(engine.isRunningOutputUnit());
}

TEST_F(AudioPlaybackTest, UndecodablePacketsAreCountedUpToFour) {
    open("h264_aac.mkv");
    engine.setRate(1.0);  // the sample thread idles while paused
    for (int i = 0; i < 6; ++i) {
        PacketPtr packet = makePacket();
        ASSERT_EQ(av_new_packet(packet.get(), 64), 0);
        std::fill(packet->data, packet->data + 64, std::uint8_t(0xFF));
        packet->stream_index = engine.audioStreamIndex();
        packet->dts = packet->pts = i * 1024;
        engine.addAudioPacket(packet.get());
    }
    std::vector<int> counts;
    for (int i = 0; i < 6; ++i) {
        engine.addSampleOneTurn();
        counts.push_back(engine.countAudioDecodingError());
    }
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3, 4, 4, 4}));
    EXPECT_EQ(engine.sampleDataCountForChannel(0), 0);
}

}  // namespace
}  // namespace tolvane
