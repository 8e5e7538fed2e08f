#pragma once

#include <optional>

namespace tolvane {

// What the per-refresh draw decision sees of the engine.
struct DrawDecisionState {
    bool isResized = false;
    int countAfterChangeScreen = 0;
    double rate = 0.0;
    bool hasPlayedAudio = false;             // the output has played at least one frame
    bool isSeekingVideo = false;             // a seek preview is waiting to be drawn
    std::optional<double> nextFrameTimeSec;  // the next unread picture, if any
    double currentTimeSec = 0.0;
    bool hasCurrentFrame = false;
};

// What to do with the next unread picture.
enum class NextFrameAction {
    None,         // not looked at (resize or seek preview), or there was none
    OfferAgain,   // early: rewind the read cursor so it comes up next time
    MakeCurrent,  // due: it replaces the current frame
    Discard,      // late: free it and remember that frames are being skipped
};

struct DrawDecision {
    bool answer = false;               // draw this refresh
    bool clearBuffers = false;         // nothing played, nothing to show: black
    bool rebuildDrawingState = false;  // after a change of screen
    bool stopAsynchronous = false;     // resized while paused: no more refreshes
    bool isResized = false;            // the flag's value after this decision
    int countAfterChangeScreen = 0;    // the counter's value after this decision
    NextFrameAction frameAction = NextFrameAction::None;
    std::optional<bool> isSkipping;  // set when the decision changes it
    bool isSeekingVideoCleared = false;
};

// A picture this far behind the clock is still shown; later ones are dropped
// one per refresh until a due one comes up.
inline constexpr double kLatestDueFrameSec = 0.16;

DrawDecision decideDraw(const DrawDecisionState &state);

}  // namespace tolvane
