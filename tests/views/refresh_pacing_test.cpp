#include "views/refresh_pacing.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using namespace std::chrono_literals;

RefreshPacing judgedWithIntervals(double refreshRateHz, std::chrono::microseconds interval) {
    RefreshPacing pacing(refreshRateHz);
    auto at = RefreshPacing::Clock::time_point{};
    for (int i = 0; i <= RefreshPacing::kSwapsToJudge; ++i) {
        pacing.noteSwap(at);
        at += interval;
    }
    return pacing;
}

TEST(RefreshPacing, JudgesSwapsAgainstTheRefreshPeriod) {
    struct Case {
        double rateHz;
        std::chrono::microseconds interval;
        bool swapPaced;
    };
    const Case cases[] = {
        {60.0, 16667us, true},  // vsync-blocked swaps
        {60.0, 33333us, true},  // every other vblank still waits
        {60.0, 1500us, false},  // Xvfb and software GL return at once
        {144.0, 6944us, true}, {144.0, 2000us, false},
        {0.0, 16667us, true},  // unknown rate falls back to 60 Hz
    };
    for (const Case &c : cases) {
        const RefreshPacing pacing = judgedWithIntervals(c.rateHz, c.interval);
        EXPECT_TRUE(pacing.hasJudged());
        EXPECT_EQ(pacing.isSwapPaced(), c.swapPaced)
            << c.rateHz << " Hz, interval " << c.interval.count() << " us";
    }
}

TEST(RefreshPacing, NoJudgementBeforeEnoughSwapsAndOutliersDoNotDecide) {
    RefreshPacing pacing(60.0);
    auto at = RefreshPacing::Clock::time_point{};
    for (int i = 0; i < RefreshPacing::kSwapsToJudge; ++i) {
        pacing.noteSwap(at);
        // Fast swaps with a few long stalls: still not paced by the display.
        at += (i % 5 == 0) ? 40ms : 1ms;
    }
    EXPECT_FALSE(pacing.hasJudged());
    pacing.noteSwap(at);
    EXPECT_TRUE(pacing.hasJudged());
    EXPECT_FALSE(pacing.isSwapPaced());
}

}  // namespace
}  // namespace tolvane
