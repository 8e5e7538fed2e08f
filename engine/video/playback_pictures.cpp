// What the audio output needs of the video path: pictures left, a picture on
// screen.

#include "engine/demux/media_end.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

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
    return pictures.count() > 0 || packets.videoCount() > 0 || !hasReadToTheEnd.load() ||
           decoderHoldsPictures;
}

bool MyCAOpenGLLayer::isPlaybackAtItsEnd() const {
    // Damaged time stamps can put a picture far past the end; the clock, which
    // runs over the pictures once the audio is over, stops at the end all the same.
    const bool isClockAtTheEnd = isKnownDurationSec(fileDurationSecValue) &&
                                 currentTimeSec() >= startTimeSec() + fileDurationSecValue;
    return !hasPicturesLeftToShow() || isClockAtTheEnd;
}

bool MyCAOpenGLLayer::isPictureOnScreen() const { return hasPictureOnScreen.load(); }

}  // namespace tolvane
