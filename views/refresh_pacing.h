#pragma once

#include <chrono>
#include <vector>

namespace tolvane {

// Decides how the video view is woken once per display refresh: by the
// buffer swap when swaps are paced by vertical sync, otherwise by a timer at
// the screen's refresh rate. Swaps count as paced once most of the recent
// intervals are at least two thirds of a refresh period.
// Thread-safety: main thread only.
class RefreshPacing {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int kSwapsToJudge = 12;

    explicit RefreshPacing(double refreshRateHz);

    void setRefreshRate(double refreshRateHz);
    double refreshRateHz() const { return rateHz; }
    // The timer period at the refresh rate, in whole milliseconds (at least 1).
    int timerIntervalMs() const;

    void noteSwap(Clock::time_point at);
    // Until enough swaps were seen the answer is false (timer pacing).
    bool isSwapPaced() const { return swapPaced; }
    bool hasJudged() const { return judged; }

private:
    double rateHz;
    std::vector<double> intervalsSec;
    Clock::time_point lastSwap{};
    bool hasLastSwap = false;
    bool swapPaced = false;
    bool judged = false;
};

}  // namespace tolvane
