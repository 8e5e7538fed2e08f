// What the audio output needs of the video path (pictures left, a picture on
// screen), and the draw decision without drawing for window-less consumers.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

namespace {

// A picture more than this late at its decision is discarded, not shown.
constexpr double kLatePictureSec = 0.16;

}  // namespace

bool MyCAOpenGLLayer::hasPicturesLeftToShow() const {
    // Before the packet thread has read anything (playback just started or
    // resumed after a seek) the lists are empty too; that is not the end.
    // Nor is the end reached while the decoder still gives back the pictures
    // it held when the last packet was read, as long as the pixel thread
    // still asks for pictures (it stops at the last frame time of the file).
    const VideoDecoderDrainState drainState = videoDecoderDrainState.load();
    const bool decoderHoldsPictures =
        (drainState == VideoDecoderDrainState::EndOfFileRead ||
         drainState == VideoDecoderDrainState::Draining) &&
        wantedBitmapQueueLength(fileDurationSecValue, startTimeSec(), currentTimeSec(),
                                videoFrameRate()) > 0;
    return bitmapDatas.count() > 0 || videoPackets.count() > 0 || !hasReadToTheEnd.load() ||
           decoderHoldsPictures;
}

bool MyCAOpenGLLayer::isPictureOnScreen() const {
    return hasPictureOnScreen.load();
}

PictureDecision MyCAOpenGLLayer::decidePictureWithoutDrawing() {
    PictureDecision decision;
    if (isSeekingVideo.exchange(false)) {
        decision.kind = PictureDecision::Kind::SeekPreview;
        return decision;
    }
    NamedLockGuard lock(bitmapDataQueueMutex);
    const BitmapData *next = getBitmapData();
    if (next == nullptr) {
        return decision;
    }
    decision.ptsSec = next->ptsSec;
    decision.clockSec = currentTimeSec();
    if (decision.ptsSec > decision.clockSec) {
        // Early: offered again at the next decision.
        bitmapDatas.resetCursor();
        return decision;
    }
    std::vector<BitmapData> taken = removeBitmapData();
    if (decision.clockSec - decision.ptsSec > kLatePictureSec) {
        isSkippingValue = true;
        decision.kind = PictureDecision::Kind::Late;
        return decision;
    }
    isSkippingValue = false;
    BitmapData &current = taken.back();
    bitmapDataForTemp = std::move(current.data);
    frameWidth = float(current.width);
    frameHeight = float(current.height);
    hasPictureOnScreen = true;
    decision.kind = PictureDecision::Kind::Shown;
    return decision;
}

}  // namespace tolvane
