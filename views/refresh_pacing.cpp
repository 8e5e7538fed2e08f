#include "refresh_pacing.h"

#include <algorithm>
#include <cmath>

namespace tolvane {

namespace {
constexpr double kFallbackRefreshRateHz = 60.0;
}

RefreshPacing::RefreshPacing(double refreshRateHz) { setRefreshRate(refreshRateHz); }

void RefreshPacing::setRefreshRate(double refreshRateHz) {
    rateHz = refreshRateHz >= 1.0 ? refreshRateHz : kFallbackRefreshRateHz;
}

int RefreshPacing::timerIntervalMs() const {
    return std::max(1, int(std::lround(1000.0 / rateHz)));
}

void RefreshPacing::noteSwap(Clock::time_point at) {
    if (judged) {
        return;
    }
    if (hasLastSwap) {
        intervalsSec.push_back(std::chrono::duration<double>(at - lastSwap).count());
    }
    lastSwap = at;
    hasLastSwap = true;
    if (int(intervalsSec.size()) < kSwapsToJudge) {
        return;
    }
    std::vector<double> sorted = intervalsSec;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    const double median = sorted[sorted.size() / 2];
    swapPaced = median >= (2.0 / 3.0) / rateHz;
    judged = true;
}

}  // namespace tolvane
