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
        if (decision.countAfterChangeScreen == 0) {
            decision.isResized = false;
        }
        // Redraw the current frame at the new size. With none yet (the
        // window's first sizing comes as a file starts) the next picture is
        // judged as usual: it is drawn at the new size all the same.
        if (state.hasCurrentFrame) {
            decision.answer = true;
            return decision;
        }
    }
    if (state.isSeekingVideo) {
        decision.isSeekingVideoCleared = true;
        decision.answer = state.hasCurrentFrame;
        return decision;
    }
    if (!state.nextFrameTimeSec) {
        return decision;
    }
    // The first picture is shown as soon as it is decoded, whatever its time,
    // as a paused picture is: the clock waits for it (the audio output holds
    // its count until a picture is on screen), so waiting for the clock would
    // leave the screen black for good; and should the clock have run on (a
    // machine too busy to draw within the hold), a late first picture is
    // still better than black until a due one comes.
    if (!state.hasCurrentFrame) {
        decision.frameAction = NextFrameAction::MakeCurrent;
        decision.isSkipping = false;
        decision.answer = true;
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
