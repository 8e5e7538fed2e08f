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
    {
        NamedLockGuard countLock(sampleCountMutex);
        state.hasPlayedAudio = gOutputtedSampleCount.load() > 0;
    }
    state.isSeekingVideo = isSeekingVideo.load();
    state.currentTimeSec = currentTimeSec();

    NamedLockGuard bitmapLock(bitmapDataQueueMutex);
    state.hasCurrentFrame = !bitmapDataForTemp.empty();
    // The next picture is looked at only when neither a resize nor a seek
    // preview decides the refresh.
    if (!state.isResized && !state.isSeekingVideo) {
        if (const BitmapData *next = getBitmapData()) {
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
        isSeekingVideo = false;
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
            bitmapDatas.resetCursor();
            break;
        case NextFrameAction::MakeCurrent: {
            std::vector<BitmapData> taken = removeBitmapData();
            BitmapData &due = taken.back();
            bitmapDataForTemp = std::move(due.data);
            frameWidth = float(due.width);
            frameHeight = float(due.height);
            bitmapLayoutForTemp = due.layout;
            hasPictureOnScreen = true;
            done.kind = PictureDecision::Kind::Shown;
            break;
        }
        case NextFrameAction::Discard:
            removeBitmapData();  // freed here: late pictures are never shown
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
    NamedLockGuard lock(bitmapDataQueueMutex);
    if (bitmapDataForTemp.empty()) {
        return;
    }
    draw(PictureView{bitmapLayoutForTemp, bitmapDataForTemp.data(), bitmapDataForTemp.size(),
                     int(frameWidth), int(frameHeight)});
}

}  // namespace tolvane
