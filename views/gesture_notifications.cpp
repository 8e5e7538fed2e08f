#include "views/gesture_notifications.h"

#include <cstdlib>

namespace tolvane {

namespace {

void takeSteps(int &accumulated, int perStep, const char *positiveName, const char *negativeName,
               std::vector<const char *> &names) {
    while (std::abs(accumulated) >= perStep) {
        names.push_back(accumulated > 0 ? positiveName : negativeName);
        accumulated += accumulated > 0 ? -perStep : perStep;
    }
}

}  // namespace

std::vector<const char *> GestureAccumulator::scroll(QPoint angleDelta, QPoint pixelDelta) {
    const bool isTouchpad = !pixelDelta.isNull();
    const QPoint delta = isTouchpad ? pixelDelta : angleDelta;
    const int perStep = isTouchpad ? kPixelsPerStep : kAngleUnitsPerStep;
    // One direction per event: a mostly vertical swipe does not also seek.
    if (std::abs(delta.x()) > std::abs(delta.y())) {
        horizontal += delta.x();
        vertical = 0;
    } else {
        vertical += delta.y();
        horizontal = 0;
    }
    std::vector<const char *> names;
    takeSteps(horizontal, perStep, "MYScrollGestureLeft", "MYScrollGestureRight", names);
    takeSteps(vertical, perStep, "MYScrollGestureUp", "MYScrollGestureDown", names);
    return names;
}

std::vector<const char *> GestureAccumulator::magnify(double scaleDelta) {
    scale += scaleDelta;
    std::vector<const char *> names;
    while (scale >= kScalePerMagnifyStep || scale <= -kScalePerMagnifyStep) {
        names.push_back(scale > 0 ? "MYMagnifyInc" : "MYMagnifyDec");
        scale += scale > 0 ? -kScalePerMagnifyStep : kScalePerMagnifyStep;
    }
    return names;
}

void GestureAccumulator::reset() {
    horizontal = 0;
    vertical = 0;
    scale = 0.0;
}

}  // namespace tolvane
