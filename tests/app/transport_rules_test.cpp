#include "app/transport_rules.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

TEST(TransportRules, SkipForwardStepKeepsTheOddBounds) {
    const struct {
        double duration, position, step;
    } cases[] = {
        {599.9, 0, 25},  {600, 900, 65},     {600, 900.5, 60}, {1410.9, 0, 65},  {1411, 0, 85},
        {1411, 901, 80}, {2399.9, 0, 85},    {2400, 0, 25},    {2400, 1000, 25}, {2699.9, 0, 25},
        {2700, 0, 85},   {3599.9, 1000, 80}, {3600, 0, 30},    {7200, 5000, 30},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(skipForwardStepSec(c.duration, c.position), c.step)
            << "D " << c.duration << " t " << c.position;
    }
}

TEST(TransportRules, SeekTargetsStayInsideTheFile) {
    const struct {
        const char *name;
        double (*target)(double, double);
        double position, duration, expected;
    } cases[] = {
        {"forward", forwardTargetSec, 10, 100, 13},
        {"forward near the end stops at the duration", forwardTargetSec, 98.5, 100, 100},
        {"backward", [](double t, double) { return backwardTargetSec(t); }, 10, 100, 7},
        {"backward near 0 stops at 0", [](double t, double) { return backwardTargetSec(t); }, 2,
         100, 0},
        {"skip", skipForwardTargetSec, 100, 1500, 185},
        {"skip past the end lands 5 s before it", skipForwardTargetSec, 1400, 1410, 1405},
        {"skip in a file shorter than 5 s", skipForwardTargetSec, 1, 3, 0},
    };
    for (const auto &c : cases) {
        EXPECT_DOUBLE_EQ(c.target(c.position, c.duration), c.expected) << c.name;
    }
}

TEST(TransportRules, VolumeIsRoundedToOneDecimalAndClamped) {
    const struct {
        double slider;
        double (*change)(double);
        double expected;
        const char *message;
    } cases[] = {
        {4.95, volumeUp, 5.0, "100"},  // rounded to 5.0 first, then clamped
        {5.0, volumeUp, 5.0, "100"},  {1.0, volumeUp, 1.1, "22"},   {1.04, volumeUp, 1.1, "22"},
        {1.1, volumeUp, 1.2, "24"},   {1.0, volumeDown, 0.9, "18"}, {0.04, volumeDown, 0.0, "0"},
        {0.1, volumeDown, 0.0, "0"},
    };
    for (const auto &c : cases) {
        const double volume = c.change(c.slider);
        EXPECT_EQ(volume, c.expected) << c.slider;  // exact: the value is stored as it is
        EXPECT_EQ(volumePercentageMessage(volume), QString::fromLatin1(c.message)) << c.slider;
    }
    EXPECT_EQ(roundedVolume(2.349), 2.3);
    EXPECT_EQ(roundedVolume(2.35), 2.4);
}

TEST(TransportRules, MuteReturnsToTheStoredLevel) {
    const struct {
        double slider, stored, expected;
    } cases[] = {{1.5, 1.5, 0.0}, {0.0, 3.0, 3.0}, {0.0, 0.0, 2.0}, {0.3, 0.0, 0.0}};
    for (const auto &c : cases) {
        EXPECT_EQ(mutedVolume(c.slider, c.stored), c.expected) << c.slider << " " << c.stored;
    }
}

TEST(TransportRules, RepresentHMSfromSEC) {
    const struct {
        double sec;
        const char *text;
    } cases[] = {{0, "00:00:00"},  {59.999, "00:00:59"},  {3661.5, "01:01:01"},
                 {-1, "00:00:00"}, {360000, "100:00:00"}, {std::nan(""), "00:00:00"}};
    for (const auto &c : cases) {
        EXPECT_EQ(representHMSfromSEC(c.sec), QString::fromLatin1(c.text)) << c.sec;
    }
    EXPECT_EQ(shownPositionSec(10.5, 1.5), 9.0);
    EXPECT_EQ(shownPositionSec(0.2, 1.5), 0.0);
}

TEST(TransportRules, PlayAtTheEndRewindsFirst) {
    EXPECT_TRUE(isRewindBeforePlay(99.8, 100, false));
    EXPECT_TRUE(isRewindBeforePlay(100, 100, false));
    EXPECT_TRUE(isRewindBeforePlay(40, 100, true));
    EXPECT_FALSE(isRewindBeforePlay(99.6, 100, false));
}

TEST(TransportRules, PreviousAndNextStepOverMarkedBlurayStreams) {
    const QList<PlaylistStepItem> folder = {
        {"/v/a.mkv", false}, {"/v/b.mkv", true}, {"/v/c.mkv", false}};
    const QList<PlaylistStepItem> disc = {
        {"/d/BDMV/STREAM/00001.m2ts", true},  {"/d/BDMV/STREAM/00002.m2ts", false},
        {"/d/bdmv/stream/00003.m2ts", true},  {"/d/BDMV/STREAM/00004.m2ts", true},
        {"/d/BDMV/STREAM/00005.m2ts", false}, {"/d/BDMV/STREAM/00006.m2ts", true}};
    const struct {
        const char *name;
        const QList<PlaylistStepItem> &items;
        int index, direction, expected;
    } cases[] = {
        {"plain next", folder, 0, +1, 1},  // the mark means nothing outside a disc
        {"plain previous at the start", folder, 0, -1, 0},
        {"plain next at the end", folder, 2, +1, 2},
        {"next over marked streams, any case", disc, 1, +1, 4},
        {"previous over marked streams", disc, 4, -1, 1},
        {"previous runs past the start", disc, 1, -1, 1},
        {"next runs past the end", disc, 4, +1, 4},
        {"from a marked stream", disc, 0, +1, 1},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(steppedPlaylistIndex(c.items, c.index, c.direction), c.expected) << c.name;
    }
}

}  // namespace
}  // namespace tolvane
