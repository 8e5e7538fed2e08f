// The clock: the rate, and the position counted in samples played, put on a
// time by every seek and by the first open.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

double MyCAOpenGLLayer::rate() const {
    NamedLockGuard lock(rateMutex);
    return rateValue.load();
}

void MyCAOpenGLLayer::setRate(double newRate) {
    NamedLockGuard lock(rateMutex);
    // The engine has no fast or slow playback: any other value is ignored.
    if (newRate == 1.0) {
        rateValue = 1.0;
        startOutputUnit();
        setAsynchronous(true);
    } else if (newRate == 0.0) {
        rateValue = 0.0;
        stopOutputUnit();
        setAsynchronous(false);
    }
}

double MyCAOpenGLLayer::startTimeSec() const {
    const auto found = tracksRecord.audiotrack.find(audioStreamIdx);
    return found != tracksRecord.audiotrack.end() ? found->second.starttimesec
                                                  : videoOnlyStartTimeSec;
}

double MyCAOpenGLLayer::currentTimeSec() const {
    // Sources sampled at 8 kHz or less are timed as 8 kHz.
    constexpr double kLowestClockSampleRate = 8000.0;
    const auto found = tracksRecord.audiotrack.find(audioStreamIdx);
    double sampleRate = 0.0;
    if (found != tracksRecord.audiotrack.end()) {
        sampleRate = found->second.samplerate <= 8000 ? kLowestClockSampleRate
                                                      : double(found->second.samplerate);
    } else if (videoStreamIdx >= 0) {
        sampleRate = double(kSilentClockSampleRate);
    } else {
        return 0.0;
    }
    return double(sampleClock.outputtedSampleCount()) / sampleRate;
}

int MyCAOpenGLLayer::clockSampleRate() const {
    if (aCodecCtx) {
        return aCodecCtx->sample_rate;
    }
    return videoStreamIdx >= 0 ? kSilentClockSampleRate : 0;
}

void MyCAOpenGLLayer::rebaseClockOnTimeSec(double timeSec) {
    sampleClock.rebaseOnSampleCount(std::int64_t(double(clockSampleRate()) * timeSec));
    isAudioDecodingAtEnd = false;
}

void MyCAOpenGLLayer::putClockOnStreamStart() {
    // As after a seek: the clock starts on the stream's start, and the first
    // audio decoded sets it to the exact time of its packet. A clock left at 0
    // would hold back every picture of a stream that starts later (hours, for
    // a broadcast recording) and play the sound that much ahead of them.
    const double startSec = startTimeSec();
    rebaseClockOnTimeSec(startSec);
    gNextVideoFramePtsSec = startSec;
    isSeekingAudio = true;
}

}  // namespace tolvane
