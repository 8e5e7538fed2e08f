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

RefreshPacing::Clock::duration RefreshPacing::period() const {
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / rateHz));
}

void RefreshPacing::restart(Clock::time_point now) { deadline = now; }

int RefreshPacing::millisecondsToNextDecision(Clock::time_point now) {
    deadline += period();
    if (deadline <= now) {
        deadline = now + period();
    }
    return millisecondsUntilDeadline(now);
}

int RefreshPacing::noteSwap(Clock::time_point at) {
    deadline = at + period();
    return millisecondsUntilDeadline(at);
}

int RefreshPacing::millisecondsUntilDeadline(Clock::time_point now) const {
    // Rounded up: a timer never fires early, so a decision is never taken
    // before its refresh.
    const double milliseconds = std::chrono::duration<double, std::milli>(deadline - now).count();
    return std::max(0, int(std::ceil(milliseconds)));
}

}  // namespace tolvane
