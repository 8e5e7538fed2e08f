// Where a seek lands and what it leaves to show.

#include <gtest/gtest.h>

#include "engine/clock/seek_rules.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// A seek asked for one picture decodes it at once as the preview; a forward
// seek goes to the next key frame, and its landing follows the packet whose
// picture came out, the decoder's delay included. late_last_keyframe has key
// frames at 0 and 2 s of 8 s: a seek into its last group of pictures must
// land on the key frame at 2 s with the clock on the target and a preview to
// show, not fail its tries and end playback with nothing on screen.
TEST(SeekLanding, KeyFrameFlagsClockAndPreview) {
    struct Case {
        const char *file;
        double targetSec;
        bool isOneFrame;
        int flags;
        double landedFromSec, landedBeforeSec;  // where the decoded key frame lies
    };
    const Case cases[] = {
        {"long_h264_aac.mkv", 4.3, false, kSeekFlagsForward, 0.0, 0.0},
        {"long_h264_aac.mkv", 6.5, true, kSeekFlagsForward, 7.021, 7.2},
        {"late_last_keyframe.mkv", 5.0, true, kSeekFlagsBackward, 1.9, 2.1},
        {"late_last_keyframe.mp4", 5.0, true, kSeekFlagsBackward, 1.9, 2.1},
        {"late_last_keyframe.mkv", 3.0, true, kSeekFlagsBackward, 1.9, 2.1},
        {"late_last_keyframe.mp4", 4.0, true, kSeekFlagsBackward, 1.9, 2.1},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.file) + " to " + std::to_string(c.targetSec));
        MyCAOpenGLLayer engine;
        ASSERT_EQ(engine.openMovieFile(test::mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        // The first decision after opening belongs to the view's new size.
        engine.canDrawInCGLContext();
        engine.setCurrentTimeSec(c.targetSec, c.isOneFrame);
        EXPECT_EQ(engine.lastSeekFlags(), c.flags);
        EXPECT_NEAR(engine.currentTimeSec(), engine.startTimeSec() + c.targetSec, 1e-3);
        float previewWidth = 0.0f;
        engine.readSeekPreview([&](const BitmapBytes &bytes, float width, float) {
            previewWidth = bytes.empty() ? 0.0f : width;
        });
        if (!c.isOneFrame) {
            EXPECT_EQ(previewWidth, 0.0f);
            continue;
        }
        EXPECT_EQ(previewWidth, 160.0f);
        EXPECT_GE(engine.seekingMovieTime(), c.landedFromSec);
        EXPECT_LT(engine.seekingMovieTime(), c.landedBeforeSec);
        PictureDecision decision;
        EXPECT_TRUE(engine.canDrawInCGLContext(&decision));
        EXPECT_EQ(decision.kind, PictureDecision::Kind::SeekPreview);
    }
}

}  // namespace
}  // namespace tolvane
