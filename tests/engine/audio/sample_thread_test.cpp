// The sample thread's turns, driven by hand.

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// The packet and sample threads' turns by hand, the video thrown away, until `isDone`.
void runSampleTurnsUntil(MyCAOpenGLLayer &engine, const std::function<bool()> &isDone) {
    for (int pass = 0; pass < 1000 && !isDone(); ++pass) {
        if (engine.audioPacketCount() == 0) {
            engine.addPacketOnePass();
            engine.removeAllVideoPackets();
        } else {
            engine.addSampleOneTurn();
        }
    }
}

// PCM in frames of 1.25 s: 60,000 stereo 16-bit samples, 240,000 bytes. A
// frame cut to what the output pool once took loses a quarter of a second of
// every frame, and the sound runs ahead of the pictures from then on.
TEST(SampleThread, FramesLargerThanThePoolAreQueuedWhole) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(test::mediaPath("pcm_long_frames.mkv")),
              QLatin1String(kOpenSucceeded));
    engine.setRate(1.0);
    runSampleTurnsUntil(engine, [&] { return engine.readedSampleCount() != 0; });
    EXPECT_EQ(engine.readedSampleCount(), 60000);
    ASSERT_EQ(engine.sampleDataCountForChannel(0), 1);
    EXPECT_EQ(engine.getSampleData(0)->data.size(), 240000u);
}

// A pause that falls between the sample thread's look at the rate and its
// start of the output must win: the output stays stopped. The pause is asked
// from another thread at that very moment; setRate() may only go through once
// the start is done, or it would be undone by it.
TEST(SampleThread, APauseWhileTheOutputStartsKeepsItStopped) {
    MyCAOpenGLLayer engine;
    ASSERT_EQ(engine.openMovieFile(test::mediaPath("pcm_long_frames.mkv")),
              QLatin1String(kOpenSucceeded));
    // Playing, with the output stopped, as after the queue ran dry.
    engine.setRate(1.0);
    ASSERT_TRUE(engine.setDefaultOutputAUWithVolume(1.0f));
    ASSERT_FALSE(engine.isRunningOutputUnit());
    std::future<void> pause;
    engine.setBeforeSampleThreadStartsOutputForTesting([&] {
        if (!pause.valid()) {
            pause = std::async(std::launch::async, [&] { engine.setRate(0.0); });
            pause.wait_for(std::chrono::milliseconds(200));
        }
    });
    runSampleTurnsUntil(engine, [&] { return pause.valid(); });
    ASSERT_TRUE(pause.valid()) << "the sample thread never started the output";
    pause.get();
    EXPECT_EQ(engine.rate(), 0.0);
    EXPECT_FALSE(engine.isRunningOutputUnit());
}

}  // namespace
}  // namespace tolvane
