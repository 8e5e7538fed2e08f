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

using namespace std::chrono_literals;
using test::waitUntil;

class AudioPlaybackTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    void open(const char *fileName) {
        path = test::mediaPath(fileName);
        ASSERT_EQ(engine.openMovieFile(path), QLatin1String(kOpenSucceeded));
    }
    void start() {
        ASSERT_TRUE(engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f));
        engine.setRate(1.0);
    }
    bool waitForClockPast(double sec) {
        return waitUntil([&] { return engine.currentTimeSec() > sec; });
    }

    QString path;
    MyCAOpenGLLayer engine;
};

TEST_F(AudioPlaybackTest, PauseFreezesTheClockAndStopsReadingAndOtherRatesAreIgnored) {
    open("long_h264_aac.mkv");
    engine.setVolume(0.25f);
    EXPECT_EQ(engine.volume(), 1.0f);  // nothing to set before the output exists
    start();
    ASSERT_TRUE(waitForClockPast(0.3));
    for (const double ignored : {0.5, 2.0, -1.0}) {
        engine.setRate(ignored);
        EXPECT_EQ(engine.rate(), 1.0);
    }
    engine.setRate(0.0);
    engine.setRate(2.0);
    EXPECT_EQ(engine.rate(), 0.0);
    EXPECT_FALSE(engine.isRunningOutputUnit());
    std::this_thread::sleep_for(100ms);  // a callback already under way may still finish
    const double pausedAt = engine.currentTimeSec();
    const int videoPackets = engine.videoPacketCount();
    const int audioPackets = engine.audioPacketCount();
    const std::int64_t readed = engine.readedSampleCount();
    std::this_thread::sleep_for(400ms);
    EXPECT_EQ(engine.currentTimeSec(), pausedAt);
    EXPECT_EQ(engine.videoPacketCount(), videoPackets);
    EXPECT_EQ(engine.audioPacketCount(), audioPackets);
    EXPECT_EQ(engine.readedSampleCount(), readed);

    engine.setRate(1.0);
    EXPECT_TRUE(waitForClockPast(pausedAt + 0.1));
    engine.cleanBeforeOpenFile();
    EXPECT_FALSE(engine.hasOutputUnit());
    EXPECT_EQ(engine.currentTimeSec(), 0.0);
}

TEST_F(AudioPlaybackTest, OutputStopsItselfAfterTheLastPicture) {
    // The 8 s file leaves an audio packet past the end that is never decoded;
    // short_audio has one second of sound under two of pictures.
    for (const char *file :
         {"h264_aac.mkv", "h264_aac_8s.mkv", "short_audio.mkv", "surround51.mkv", "mono.mkv"}) {
        SCOPED_TRACE(file);
        open(file);
        start();
        // Draw decisions as a display makes them, until the output has stayed
        // stopped for half a second.
        double lastShownSec = -1.0;
        for (int polls = 0, stoppedPolls = 0; polls < 4000 && stoppedPolls < 100; ++polls) {
            PictureDecision decision;
            engine.canDrawInCGLContext(&decision);
            if (decision.kind == PictureDecision::Kind::Shown) {
                lastShownSec = decision.ptsSec;
            }
            stoppedPolls = engine.isRunningOutputUnit() ? 0 : stoppedPolls + 1;
            std::this_thread::sleep_for(5ms);
        }
        EXPECT_FALSE(engine.isRunningOutputUnit());
        EXPECT_EQ(engine.rate(), 1.0);
        EXPECT_EQ(engine.bitmapDataCount(), 0);
        EXPECT_EQ(engine.videoPacketCount(), 0);
        EXPECT_EQ(engine.sampleDataCountForChannel(0), 0);
        // The last picture, the ones the decoder held back included.
        EXPECT_GT(lastShownSec, engine.fileDurationSec() - 0.1);
        EXPECT_GE(engine.currentTimeSec(), lastShownSec);
    }
}

TEST_F(AudioPlaybackTest, SeekRebasesTheClockOnTheFirstAudioPacketAtTheTarget) {
    open("long_h264_aac.mkv");
    const int sampleRate = engine.tracks().audiotrack.at(engine.audioStreamIndex()).samplerate;
    const double targetSec = engine.startTimeSec() + 4.3;
    engine.setCurrentTimeSec(4.3, true);
    // Until the first frame is decoded the clock stands at the target.
    EXPECT_NEAR(engine.currentTimeSec(), targetSec, 1.0 / sampleRate);
    start();
    ASSERT_TRUE(waitForClockPast(targetSec));
    ASSERT_TRUE(waitForClockPast(engine.currentTimeSec() + 0.1));
    engine.setRate(0.0);

    // The engine's seek repeated on a demuxer of the test's own. The decoder
    // may keep its first packet to prime itself, so the clock, which moves in
    // whole callbacks, re-bases on one of the first three packets at the target.
    OpenedInput input = openInputWithStreamInfo(QFile::encodeName(path).constData());
    ASSERT_GE(av_seek_frame(input.context.get(), engine.videoStreamIndex(),
                            engine.lastSeekTimestamp(), engine.lastSeekFlags()),
              0);
    const AVStream *audio = input.context->streams[engine.audioStreamIndex()];
    PacketPtr packet = makePacket();
    int found = 0;
    bool isRebasedOnOne = false;
    while (found < 3 && av_read_frame(input.context.get(), packet.get()) >= 0) {
        const double sec = av_q2d(audio->time_base) * double(packet->dts);
        if (packet->stream_index == audio->index && sec >= targetSec) {
            ++found;
            const std::int64_t played =
                engine.outputtedSampleCount() - std::int64_t(double(sampleRate) * sec);
            isRebasedOnOne |= played >= 0 && played % engine.outputFramesPerCallback() == 0;
        }
        av_packet_unref(packet.get());
    }
    EXPECT_EQ(found, 3);
    EXPECT_TRUE(isRebasedOnOne) << "played " << engine.outputtedSampleCount();
}

TEST_F(AudioPlaybackTest, ChangingTrackResumesOneSecondEarlierPlayingOrPaused) {
    for (const bool isPaused : {false, true}) {
        SCOPED_TRACE(isPaused ? "paused" : "playing");
        open("three_audio.mkv");
        start();
        ASSERT_TRUE(waitForClockPast(1.4));
        engine.setRate(isPaused ? 0.0 : 1.0);
        const double stoodAt = engine.currentTimeSec();
        const int track = isPaused ? 3 : 2;
        engine.changeAudioTrack(track);
        EXPECT_EQ(engine.audioStreamIndex(), track);
        EXPECT_EQ(engine.rate(), isPaused ? 0.0 : 1.0);
        EXPECT_EQ(engine.countAudioDecodingError(), 0);
        if (isPaused) {
            EXPECT_FALSE(engine.isRunningOutputUnit());
            EXPECT_NEAR(engine.currentTimeSec(), stoodAt - 1.0, 0.001);
            continue;
        }
        ASSERT_TRUE(waitUntil([&] { return engine.isRunningOutputUnit(); }));
        const double resumedAt = engine.currentTimeSec();
        EXPECT_GE(resumedAt, stoodAt - 1.0 - 0.05);
        EXPECT_LT(resumedAt, stoodAt - 0.5);
        EXPECT_TRUE(waitForClockPast(resumedAt + 0.1));
    }
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
    EXPECT_TRUE(waitForClockPast(engine.currentTimeSec() + 0.1));
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
