// The per-refresh draw decision over the bitmap list, and the current picture.

#include "engine/draw_decision.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

void MyCAOpenGLLayer::setIsResized(bool resized) {
    NamedLockGuard lock(drawVideoMutex);
    isResized = resized;
}

bool MyCAOpenGLLayer::canDrawInCGLContext(PictureDecision *outcome) {
    NamedLockGuard drawLock(drawVideoMutex);
    DrawDecisionState state;
    state.isResized = isResized;
    state.countAfterChangeScreen = countAfterChangeScreen;
    state.rate = rateValue.load();
    state.hasPlayedAudio = sampleClock.outputtedSampleCount() > 0;
    state.isSeekingVideo = pictures.isSeekingVideo();
    state.currentTimeSec = currentTimeSec();

    NamedLockGuard bitmapLock(pictures.mutex());
    state.hasCurrentFrame = pictures.hasCurrentPicture();
    // The next picture is looked at only when neither a resize (with a
    // picture to redraw) nor a seek preview decides the refresh.
    if ((!state.isResized || !state.hasCurrentFrame) && !state.isSeekingVideo) {
        if (const BitmapData *next = pictures.read()) {
            state.nextFrameTimeSec = next->ptsSec;
        }
    }

    const DrawDecision decision = decideDraw(state);
    isResized = decision.isResized;
    countAfterChangeScreen = decision.countAfterChangeScreen;
    clearBeforeDrawing = decision.clearBuffers;
    if (decision.stopAsynchronous) {
        isAsynchronousValue = false;
    }
    if (decision.isSeekingVideoCleared) {
        pictures.endSeekPreview();
        // Taken by the drawing only now: the clock, held for a first picture,
        // starts with it rather than at the seek.
        if (state.hasCurrentFrame) {
            hasPictureOnScreen = true;
        }
    }
    if (decision.isSkipping) {
        isSkippingValue = *decision.isSkipping;
    }
    PictureDecision done;
    done.ptsSec = state.nextFrameTimeSec.value_or(0.0);
    done.clockSec = state.currentTimeSec;
    if (decision.isSeekingVideoCleared) {
        done.kind = PictureDecision::Kind::SeekPreview;
    }
    switch (decision.frameAction) {
        case NextFrameAction::None:
            break;
        case NextFrameAction::OfferAgain:
            pictures.offerReadAgain();
            break;
        case NextFrameAction::MakeCurrent: {
            std::vector<BitmapData> taken = pictures.takeRead();
            pictures.makeCurrent(std::move(taken.back()));
            hasPictureOnScreen = true;
            done.kind = PictureDecision::Kind::Shown;
            break;
        }
        case NextFrameAction::Discard:
            pictures.takeRead();  // freed here: late pictures are never shown
            done.kind = PictureDecision::Kind::Late;
            break;
    }
    if (outcome != nullptr) {
        *outcome = done;
    }
    return decision.answer;
}

void MyCAOpenGLLayer::drawInCGLContext(
    const std::function<void(const PictureView &picture)> &draw) const {
    pictures.drawCurrent(draw);
}

}  // namespace tolvane
