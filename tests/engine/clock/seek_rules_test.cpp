#include "engine/clock/seek_rules.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane {
namespace {

TEST(SeekRules, TargetsNearEitherEndOfTheIndexAreMovedInside) {
    // A 10 s file with a key frame every second, time base 1/1000.
    const std::vector<std::int64_t> index = {0,    1000, 2000, 3000, 4000,
                                             5000, 6000, 7000, 8000, 9000};
    const std::vector<std::int64_t> shortIndex = {0, 1000, 2000};
    struct Case {
        const char *what;
        double target;
        bool isUgly;
        bool hasShortIndex;
        double current;
        double expectedTarget;
        std::int64_t expectedTimestamp;
        int expectedFlags;
        std::optional<std::int64_t> lastKeyFrame = std::nullopt;
    };
    const Case cases[] = {
        {"to the current time is backward", 4.5, false, false, 4.5, 4.5, 4500, kSeekFlagsBackward},
        {"first two seconds go to the first entry", 2.0, false, false, 5.0, 0.0, 0,
         kSeekFlagsBackward},
        {"ugly key frames start at the third entry", 1.5, true, false, 5.0, 0.0, 2000,
         kSeekFlagsBackward},
        {"last two seconds land two seconds before the end", 9.5, false, false, 1.0, 8.0, 7000,
         kSeekFlagsForward},
        {"exactly two seconds before the end", 8.0, false, false, 1.0, 8.0, 7000,
         kSeekFlagsForward},
        {"short index keeps the target", 1.0, false, true, 0.0, 1.0, 1000, kSeekFlagsForward},
        {"short index keeps a late target", 9.5, false, true, 0.0, 9.5, 9500, kSeekFlagsForward},
        {"forward past the last key frame goes backward", 6.5, false, false, 1.0, 6.5, 6500,
         kSeekFlagsBackward, 3000},
        {"forward to the last key frame stays forward", 3.0, false, false, 1.0, 3.0, 3000,
         kSeekFlagsForward, 3000},
    };
    for (const Case &c : cases) {
        SeekRuleInputs inputs;
        inputs.targetSec = c.target;
        inputs.timeBase = AVRational{1, 1000};
        inputs.indexTimestamps = c.hasShortIndex ? shortIndex : index;
        inputs.isUglyKeyframe = c.isUgly;
        inputs.fileDurationSec = 10.0;
        inputs.currentTimeSec = c.current;
        inputs.lastKeyFrameTimestamp = c.lastKeyFrame;
        const SeekAttempt attempt = seekAttemptFor(inputs);
        EXPECT_DOUBLE_EQ(attempt.targetSec, c.expectedTarget) << c.what;
        EXPECT_EQ(attempt.timestamp, c.expectedTimestamp) << c.what;
        EXPECT_EQ(attempt.flags, c.expectedFlags) << c.what;
    }
}

}  // namespace
}  // namespace tolvane
