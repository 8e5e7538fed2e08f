#pragma once

#include <chrono>

namespace tolvane {

// When the video view asks its next draw decision: once per display refresh,
// on deadlines one refresh period apart. A buffer swap moves the next
// deadline to one period after it, so that where swaps wait for the vertical
// blank the decisions follow the display's own phase; where they do not
// (Xvfb, software GL) nothing is lost. Nothing here repaints: a refresh whose
// decision has nothing new costs the decision only.
// Thread-safety: main thread only.
class RefreshPacing {
public:
    using Clock = std::chrono::steady_clock;

    explicit RefreshPacing(double refreshRateHz);

    void setRefreshRate(double refreshRateHz);
    double refreshRateHz() const { return rateHz; }
    Clock::duration period() const;

    // The first decision is due at `now`.
    void restart(Clock::time_point now);
    // A decision was taken at `now`: the whole milliseconds to wait for the
    // next one. A late decision (a busy main thread) does not bring a burst
    // of catching-up decisions: the next one is a period after it.
    int millisecondsToNextDecision(Clock::time_point now);
    // A buffer swap at `at` sets the next deadline one period later; the
    // milliseconds from `at` to it.
    int noteSwap(Clock::time_point at);

private:
    int millisecondsUntilDeadline(Clock::time_point now) const;

    double rateHz;
    Clock::time_point deadline{};
};

}  // namespace tolvane
