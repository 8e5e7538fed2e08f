#include "engine/clock/stream_time.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct StreamTimeCase {
    AVRational timeBase;
    std::int64_t timestamp;
    double seconds;
};

// Time bases of MPEG-TS, Matroska, MP4 at 24000/1001 and audio at 44.1 kHz.
const StreamTimeCase kStreamTimeCases[] = {
    {{1, 90000}, 128700, 1.43},
    {{1, 1000}, 10801378, 10801.378},
    {{1001, 24000}, 48, 2.002},
    {{1, 44100}, 441000, 10.0},
};

TEST(StreamTimeTest, TimeStampsAndSecondsConvertBothWays) {
    for (const StreamTimeCase &c : kStreamTimeCases) {
        SCOPED_TRACE(testing::Message() << c.timeBase.num << "/" << c.timeBase.den);
        EXPECT_NEAR(secondsOfStreamTimestamp(c.timestamp, c.timeBase), c.seconds, 1e-9);
        // Truncated toward zero, so a hair more than the stamp's time gives the stamp.
        EXPECT_EQ(streamTimestampOfSeconds(c.seconds + 1e-9, c.timeBase), c.timestamp);
    }
}

TEST(StreamTimeTest, AZeroDenominatorGivesZeroInsteadOfOverflowing) {
    EXPECT_EQ(secondsOfStreamTimestamp(1000, AVRational{1, 0}), 0.0);
    EXPECT_EQ(streamTimestampOfSeconds(5.0, AVRational{1, 0}), 0);
    EXPECT_EQ(streamTimestampOfSeconds(5.0, AVRational{0, 1}), 0);
}

}  // namespace
}  // namespace tolvane
