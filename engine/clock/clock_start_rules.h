#pragma once

#include <cstdint>

namespace tolvane {

// Sound and picture start together: until the first picture of a file is on
// screen the output plays silence and its count, the clock, stands still,
// however long that picture takes to decode and draw. A video that gives no
// picture holds the clock this long at most, in the output's own frames, and
// then plays its sound without one.
inline constexpr double kLongestClockHoldForFirstPictureSec = 0.5;

struct ClockHoldInputs {
    bool hasVideo = false;
    bool isPictureOnScreen = false;
    bool hasPicturesLeftToShow = false;
    std::int64_t framesHeld = 0;  // by the output so far, for this file
    int sampleRate = 0;           // of the clock
};

constexpr bool shouldHoldClockForFirstPicture(const ClockHoldInputs &inputs) {
    return inputs.hasVideo && !inputs.isPictureOnScreen && inputs.hasPicturesLeftToShow &&
           double(inputs.framesHeld) <
               kLongestClockHoldForFirstPictureSec * double(inputs.sampleRate);
}

}  // namespace tolvane
