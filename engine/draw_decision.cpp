#include "draw_decision.h"

namespace tolvane {

DrawDecision decideDraw(const DrawDecisionState &state) {
    DrawDecision decision;
    decision.isResized = state.isResized;
    decision.countAfterChangeScreen = state.countAfterChangeScreen;

    if (state.isResized) {
        if (decision.countAfterChangeScreen > 0) {
            decision.rebuildDrawingState = true;
            --decision.countAfterChangeScreen;
        }
        decision.stopAsynchronous = state.rate == 0.0;
    }
    decision.clearBuffers = !state.hasPlayedAudio && !state.hasCurrentFrame;

    if (state.isResized) {
        // Redraw the current frame at the new size.
        if (decision.countAfterChangeScreen == 0) {
            decision.isResized = false;
        }
        decision.answer = state.hasCurrentFrame;
        return decision;
    }
    if (state.isSeekingVideo) {
        decision.isSeekingVideoCleared = true;
        decision.answer = state.hasCurrentFrame;
        return decision;
    }
    if (!state.nextFrameTimeSec) {
        return decision;
    }
    const double behindSec = state.currentTimeSec - *state.nextFrameTimeSec;
    if (behindSec < 0.0) {
        decision.frameAction = NextFrameAction::OfferAgain;
        return decision;
    }
    if (behindSec <= kLatestDueFrameSec) {
        decision.frameAction = NextFrameAction::MakeCurrent;
        decision.isSkipping = false;
        decision.answer = true;
        return decision;
    }
    decision.frameAction = NextFrameAction::Discard;
    decision.isSkipping = true;
    return decision;
}

}  // namespace tolvane
