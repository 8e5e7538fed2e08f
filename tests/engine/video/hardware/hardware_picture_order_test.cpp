// The time-stamp rule of hardware pictures, with numbered pictures standing
// in for the device's.

#include "engine/video/hardware/hardware_picture_order.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane {
namespace {

constexpr std::optional<std::int64_t> kUnset = std::nullopt;
constexpr double kTimeBaseSec = 0.01;

struct Arrival {
    int picture;
    std::optional<std::int64_t> pts;
    std::optional<std::int64_t> dts;
};

struct Release {
    int picture;
    double ptsSec;
};

// Feeds the arrivals in order, then drains; every release in order.
std::vector<Release> runOrder(int flagMessPTS, int reorderDepth, double frameRate,
                              const std::vector<Arrival> &arrivals, double startSec = 0.0) {
    HardwarePictureOrder<int> order;
    order.reset(kTimeBaseSec, frameRate, flagMessPTS);
    double next = startSec;
    std::vector<Release> releases;
    const auto take = [&](std::optional<HardwarePictureOrder<int>::Released> released) {
        if (released) {
            releases.push_back({released->picture, released->ptsSec});
            next = released->nextVideoFramePtsSec;
        }
        return released.has_value();
    };
    for (const Arrival &a : arrivals) {
        take(order.properImageBufferAndPTS(a.picture, a.pts, a.dts, reorderDepth, next));
    }
    while (take(order.releaseFirst(next))) {
    }
    return releases;
}

TEST(HardwarePictureOrder, ReleasesInPresentationOrderWithTheSmallestDecodingStamps) {
    struct Case {
        const char *name;
        int flagMessPTS;
        int reorderDepth;
        std::vector<Arrival> arrivals;
        std::vector<Release> expected;
    };
    // clang-format off
    const Case cases[] = {
        // The third picture at depth 2 releases the smallest PTS (picture 2),
        // stamped with the smallest DTS so far (1).
        {"depth 2", 0, 2, {{1, 30, 3}, {2, 10, 1}, {3, 20, 2}, {4, 40, 4}},
         {{2, 0.01}, {3, 0.02}, {1, 0.03}, {4, 0.04}}},
        {"equal PTS leave in arrival order", 0, 1, {{1, 10, 1}, {2, 10, 2}, {3, 10, 3}},
         {{1, 0.01}, {2, 0.02}, {3, 0.03}}},
        {"fewer than two are always held", 0, 0, {{1, 10, 1}, {2, 20, 2}}, {{1, 0.01}, {2, 0.02}}},
        // Stamps that repeat the decoding ones would scramble display order:
        // arrival order is kept, and the DTS list still times the pictures.
        {"unusable PTS keep arrival order", 1, 1, {{1, 3, 3}, {2, 1, 1}, {3, 2, 2}},
         {{1, 0.01}, {2, 0.02}, {3, 0.03}}},
        {"PTS stands in for a missing DTS", 0, 1, {{1, 20, kUnset}, {2, 10, kUnset}, {3, 30, kUnset}},
         {{2, 0.10}, {1, 0.20}, {3, 0.30}}},
        // No stamps: the next expected time, advancing one frame at 25 fps.
        {"no stamps at all", 1, 1, {{1, kUnset, kUnset}, {2, kUnset, kUnset}, {3, kUnset, kUnset}},
         {{1, 5.0}, {2, 5.04}, {3, 5.08}}},
    };
    // clang-format on
    for (const Case &c : cases) {
        const std::vector<Release> releases =
            runOrder(c.flagMessPTS, c.reorderDepth, 25.0, c.arrivals, 5.0);
        ASSERT_EQ(releases.size(), c.expected.size()) << c.name;
        for (std::size_t i = 0; i < releases.size(); ++i) {
            EXPECT_EQ(releases[i].picture, c.expected[i].picture) << c.name << ", release " << i;
            EXPECT_NEAR(releases[i].ptsSec, c.expected[i].ptsSec, 1e-9)
                << c.name << ", release " << i;
        }
    }
}

TEST(HardwarePictureOrder, ReleasesAtTheRightArrivalAndForgetsOnRemoveAll) {
    HardwarePictureOrder<int> order;
    order.reset(kTimeBaseSec, 25.0, 0);
    EXPECT_FALSE(order.properImageBufferAndPTS(1, 30, 3, 2, 0.0));
    EXPECT_FALSE(order.properImageBufferAndPTS(2, 10, 1, 2, 0.0));
    const auto third = order.properImageBufferAndPTS(3, 20, 2, 2, 0.0);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->picture, 2);
    EXPECT_NEAR(third->nextVideoFramePtsSec, 0.02, 1e-9);  // one time-base unit on
    order.removeAll();
    EXPECT_EQ(order.heldCount(), 0);
    EXPECT_FALSE(order.releaseFirst(0.0));
    // The stamps went too: a new picture is not timed by one of before.
    EXPECT_FALSE(order.properImageBufferAndPTS(4, 90, 9, 0, 0.0));
    EXPECT_NEAR(order.properImageBufferAndPTS(5, 100, 10, 0, 0.0)->ptsSec, 0.09, 1e-9);
}

}  // namespace
}  // namespace tolvane
