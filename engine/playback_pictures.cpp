// What the audio output and the seek need of the video path: the pixel
// thread's start and stop, the pictures still to show, and the one-picture
// preview. The software pixel thread and its bitmap lists live on their own
// branch; until they are joined here these answer from the packet lists alone.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

void MyCAOpenGLLayer::startPixelThreadForPlayback() {}

void MyCAOpenGLLayer::stopPixelThreadForPlayback() {}

void MyCAOpenGLLayer::removeAllPicturesForSeek() {}

bool MyCAOpenGLLayer::hasPicturesLeftToShow() const {
    return videoPackets.count() > 0;
}

bool MyCAOpenGLLayer::isPictureOnScreen() const {
    return false;
}

double MyCAOpenGLLayer::videoFrameRateForSeekPreview() const {
    if (!pFormatCtx || videoStreamIdx < 0) {
        return 0.0;
    }
    const AVStream *stream = pFormatCtx->streams[videoStreamIdx];
    const double average = av_q2d(stream->avg_frame_rate);
    return average > 0.0 ? average : av_q2d(stream->r_frame_rate);
}

std::optional<double> MyCAOpenGLLayer::takeDuePictureForClock(double /*clockSec*/) {
    return std::nullopt;
}

bool MyCAOpenGLLayer::decodeVideoPacketForSeekPreview(AVPacket * /*packet*/, double /*fps*/) {
    return false;
}

}  // namespace tolvane
