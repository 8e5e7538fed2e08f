#include "views/refresh_pacing.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// Runs the timer as the view does for `span`: each decision waits the
// milliseconds the pacing asked for, plus `lateness` of a busy main thread.
int decisionsDuring(RefreshPacing &pacing, std::chrono::milliseconds span,
                    std::chrono::microseconds lateness = 0us) {
    auto now = RefreshPacing::Clock::time_point{} + 1s;
    const auto end = now + span;
    pacing.restart(now);
    int decisions = 0;
    while (now < end) {
        ++decisions;
        now += std::chrono::milliseconds(pacing.millisecondsToNextDecision(now)) + lateness;
    }
    return decisions;
}

TEST(RefreshPacing, OneDecisionPerRefreshWithoutDrift) {
    struct Case {
        double rateHz;
        std::chrono::microseconds lateness;
        int expected;  // over ten seconds
    };
    const Case cases[] = {
        {60.0, 0us, 600},  // whole-millisecond timers must not drift to 17 ms (588)
        {59.94, 0us, 600},    {144.0, 0us, 1440}, {0.0, 0us, 600},  // unknown rate: 60 Hz
        {60.0, 400us, 600},    // small lateness is absorbed by the next wait
        {60.0, 20000us, 271},  // late by more than a period: one every 37 ms, no bursts
    };
    for (const Case &c : cases) {
        RefreshPacing pacing(c.rateHz);
        EXPECT_NEAR(decisionsDuring(pacing, 10s, c.lateness), c.expected, 1)
            << c.rateHz << " Hz, late " << c.lateness.count() << " us";
    }
}

TEST(RefreshPacing, SwapSetsThePhaseOfTheNextDecision) {
    RefreshPacing pacing(60.0);
    const auto start = RefreshPacing::Clock::time_point{} + 1s;
    pacing.restart(start);
    EXPECT_EQ(pacing.millisecondsToNextDecision(start), 17);
    // The picture reached the screen 5 ms later: the next decision is a
    // period after that, not after the decision.
    EXPECT_EQ(pacing.noteSwap(start + 5ms), 17);
    EXPECT_EQ(pacing.millisecondsToNextDecision(start + 5ms + 17ms), 17);
}

}  // namespace
}  // namespace tolvane
