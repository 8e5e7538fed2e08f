// A seek into the last group of pictures, where no key frame follows the target.

#include <gtest/gtest.h>

#include "engine/clock/seek_rules.h"
#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// Key frames at 0 and 2 s of 8 s. Each seek must land on the key frame at
// 2 s with the clock on the target and a preview to show, not fail its tries
// and end playback with nothing on screen.
TEST(SeekIntoLastGroupOfPictures, LandsOnTheKeyFrameBeforeTheTargetWithAPreview) {
    struct Case {
        const char *file;
        double targetSec;
    };
    const Case cases[] = {
        {"late_last_keyframe.mkv", 5.0},
        {"late_last_keyframe.mp4", 5.0},
        {"late_last_keyframe.mkv", 3.0},
        {"late_last_keyframe.mp4", 4.0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.file) + " to " + std::to_string(c.targetSec));
        MyCAOpenGLLayer engine;
        ASSERT_EQ(engine.openMovieFile(test::mediaPath(c.file)), QLatin1String(kOpenSucceeded));
        engine.setCurrentTimeSec(c.targetSec, true);
        EXPECT_EQ(engine.lastSeekFlags(), kSeekFlagsBackward);
        EXPECT_NEAR(engine.currentTimeSec(), c.targetSec, 1e-3);
        EXPECT_NEAR(engine.seekingMovieTime(), 2.0, 0.1) << "the key frame decoded";
        bool hasPreview = false;
        engine.readSeekPreview(
            [&](const BitmapBytes &bytes, float, float) { hasPreview = !bytes.empty(); });
        EXPECT_TRUE(hasPreview);
    }
}

}  // namespace
}  // namespace tolvane
