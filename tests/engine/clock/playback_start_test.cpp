// How playback starts: the clock on the streams' start, waiting for the first
// picture, and a video without sound timed by the silent output. Played
// through the real threads.

#include <gtest/gtest.h>

#include <cstdlib>

#include "engine/clock/clock_start_rules.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::waitUntil;

struct StartCase {
    const char *file;
    double startSec;  // of the stream that times playback
};

const StartCase kStartCases[] = {
    {"h264_aac.mkv", 0.0},
    {"broadcast_late.ts", 10801.378667},  // three hours in, as a recording from the air
    {"video_only.mkv", 0.0},
};

class PlaybackStartTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { setenv("SDL_AUDIODRIVER", "dummy", 1); }

    // Plays until the first picture is shown; its decision, or nothing.
    std::optional<PictureDecision> firstShownPicture() {
        std::optional<PictureDecision> shown;
        waitUntil([&] {
            PictureDecision decision;
            engine.canDrawInCGLContext(&decision);
            if (decision.kind == PictureDecision::Kind::Shown) {
                shown = decision;
            }
            return shown.has_value();
        });
        return shown;
    }

    MyCAOpenGLLayer engine;
};

// A clock left at 0 for a stream starting later plays the sound that much
// ahead of the pictures and holds back the first picture as long; hours of
// it leave the screen black.
TEST_F(PlaybackStartTest, TheClockStartsOnTheStreamsStartAndTheFirstPictureIsShownAtOnce) {
    for (const StartCase &c : kStartCases) {
        SCOPED_TRACE(c.file);
        ASSERT_EQ(engine.openMovieFile(test::mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        EXPECT_NEAR(engine.startTimeSec(), c.startSec, 1e-3);
        EXPECT_NEAR(engine.currentTimeSec(), c.startSec, 1e-3);
        ASSERT_TRUE(engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f));
        engine.setRate(1.0);
        const std::optional<PictureDecision> first = firstShownPicture();
        ASSERT_TRUE(first.has_value()) << "no picture shown";
        EXPECT_LT(first->ptsSec - c.startSec, 0.1);
        EXPECT_LT(std::abs(first->ptsSec - first->clockSec), 0.1);
        // The output ran meanwhile, but the clock waited for the picture.
        EXPECT_NEAR(first->clockSec, c.startSec, 1e-3);
        engine.cleanBeforeOpenFile();
    }
}

TEST(ClockStart, TheClockWaitsForTheFirstPictureAsLongAsOneMayCome) {
    // Video, a picture on screen, pictures left to show, frames held, at 48 kHz.
    const std::tuple<const char *, ClockHoldInputs, bool> cases[] = {
        {"opened, nothing decoded yet", {true, false, true, 0, 48000}, true},
        {"first picture on screen", {true, true, true, 0, 48000}, false},
        {"held almost half a second", {true, false, true, 23999, 48000}, true},
        {"held half a second: sound without pictures", {true, false, true, 24000, 48000}, false},
        {"the video gives no picture at all", {true, false, false, 0, 48000}, false},
        {"no video", {false, false, false, 0, 48000}, false},
    };
    for (const auto &[name, inputs, holds] : cases) {
        EXPECT_EQ(shouldHoldClockForFirstPicture(inputs), holds) << name;
    }
}

// Screen recordings and clips have no sound: the silent output times them,
// from open to the end of the last picture, through a seek as well.
TEST_F(PlaybackStartTest, AVideoWithoutSoundPlaysToItsEnd) {
    ASSERT_EQ(engine.openMovieFile(test::mediaPath("video_only.mkv")),
              QLatin1String(kOpenSucceeded));
    EXPECT_EQ(engine.audioStreamIndex(), -1);
    EXPECT_TRUE(engine.tracks().audiotrack.empty());
    engine.setCurrentTimeSec(1.0, true);
    EXPECT_NEAR(engine.currentTimeSec(), 1.0, 1e-3);
    ASSERT_TRUE(engine.setDefaultOutputAndTimersBeforeStartWithVolume(1.0f));
    EXPECT_EQ(engine.outputDriverName(), QLatin1String("silent"));
    engine.setRate(1.0);
    int shown = 0;
    EXPECT_TRUE(waitUntil([&] {
        PictureDecision decision;
        engine.canDrawInCGLContext(&decision);
        shown += decision.kind == PictureDecision::Kind::Shown ? 1 : 0;
        return !engine.isRunningOutputUnit() && engine.currentTimeSec() > 1.9;
    })) << "clock stopped at "
        << engine.currentTimeSec();
    EXPECT_GT(shown, 0);
    EXPECT_LT(engine.currentTimeSec(), 2.1);
}

}  // namespace
}  // namespace tolvane
