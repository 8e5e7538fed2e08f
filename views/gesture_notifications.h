#pragma once

#include <QPoint>
#include <vector>

namespace tolvane {

// Turns wheel, touchpad and pinch input into the gesture notifications the
// controller observes ("MYScrollGestureLeft", "MYMagnifyInc", ...). Small
// touchpad movements add up until they make one step, so a slow swipe and a
// wheel notch each post one notification per step.
// Thread-safety: main thread only (one per view).
class GestureAccumulator {
public:
    // One wheel notch, or this many touchpad pixels, make one scroll step.
    static constexpr int kAngleUnitsPerStep = 120;
    static constexpr int kPixelsPerStep = 40;
    // A pinch that changes the scale by this much makes one magnify step.
    static constexpr double kScalePerMagnifyStep = 0.1;

    // `pixelDelta` is null for a wheel; Qt's convention: positive y away from
    // the user (up), positive x to the left.
    std::vector<const char *> scroll(QPoint angleDelta, QPoint pixelDelta);
    std::vector<const char *> magnify(double scaleDelta);
    // A gesture ended: a fraction of a step is forgotten.
    void reset();

private:
    int horizontal = 0;
    int vertical = 0;
    double scale = 0.0;
};

}  // namespace tolvane
