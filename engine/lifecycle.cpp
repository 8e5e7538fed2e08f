// Creation, the reset before every file, and the rate.

#include "base/log.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

MyCAOpenGLLayer::MyCAOpenGLLayer() {
    static std::once_flag ffmpegSilenced;
    std::call_once(ffmpegSilenced, [] { av_log_set_level(AV_LOG_QUIET); });
}

MyCAOpenGLLayer::~MyCAOpenGLLayer() { cleanBeforeQuit(); }

void MyCAOpenGLLayer::cleanBeforeQuit() { cleanBeforeOpenFile(); }

void MyCAOpenGLLayer::cleanBeforeOpenFile() {
    try {
        isAlsoHaveMovieValue = false;
        // A worker abandoned by the bounded stop may hold its thread lock for
        // ever: the reset then leaves alone what that lock guards rather
        // than wait past the bound.
        const bool isSampleThreadStopped = stopSampleThread();
        const bool isPixelThreadStopped = stopPixelThread();
        stopPacketThread();
        isInterlacedValue = false;
        destroyOutputUnit();
        setAsynchronous(false);

        isSkippingValue = false;
        if (isSampleThreadStopped) {
            resetAudioDecodingStateForNewTrack();
        }
        {
            NamedLockGuard lock(rateMutex);
            rateValue = 0.0;
        }
        {
            const int lists = sampleListCount();
            for (int channel = 0; channel < lists; ++channel) {
                removeAllSampleDatasForChannel(channel);
            }
        }
        removeAllBitmapDatas();
        removeAllHoldingBitmapDatas();
        releasePooledBitmapStorage();
        {
            NamedLockGuard lock(samplePoolMutex);
            samplePool.release();
        }
        {
            NamedLockGuard lock(drawVideoMutex);
            isResized = true;
            countAfterChangeScreen = 1;
        }

        removeAllVideoPackets();
        removeAllAudioPackets();

        if (isPixelThreadStopped) {
            NamedLockGuard lock(bitmapDataThreadMutex);
            vFrame.reset();
        }
        vFrameForSeeking.reset();

        vCodec = nullptr;
        vCodecCtx.reset();
        hardwareDecoding.reset();
        isMacSupportH264AccValue = false;
        hardwareDecodingReasonValue.clear();
        {
            NamedLockGuard lock(holdingBitmapDataQueueMutex);
            flagMessPTSValue = kFlagMessPTSLookingForI;
        }
        aCodec = nullptr;
        if (aCodecCtx) {
            aCodecCtx.reset();
            audioBytesPerChannelValue = 2;
            audioOutputChannelsValue = 2;
            isQuadValue = false;
        }

        if (pFormatCtx) {
            pFormatCtx.reset();
            videoStreamIdx = -1;
            audioStreamIdx = -1;
            videoOnlyStartTimeSec = 0.0;
            fileDurationSecValue = 0.0;
            isUglyKeyframeValue = false;
            isSeekingVideo = false;
            isSeekingAudio = true;  // deliberately the opposite of the video flag
            {
                NamedLockGuard lock(seekMutex);
                countSeek = 0;
            }
            seekingMovieTimeSec = 0.0;
        }

        tracksRecord = Tracks{};

        {
            NamedLockGuard lock(bitmapDataQueueMutex);
            bitmapDataForTemp.clear();
            bitmapDataForTemp.shrink_to_fit();
            hasPictureOnScreen = false;
            hasReadToTheEnd = false;
            frameWidth = 0.0f;
            frameHeight = 0.0f;
        }
    } catch (const std::exception &e) {
        logException("cbof", e.what());
    }
}

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
    NamedLockGuard lock(sampleCountMutex);
    return double(gOutputtedSampleCount.load()) / sampleRate;
}

int MyCAOpenGLLayer::clockSampleRate() const {
    if (aCodecCtx) {
        return aCodecCtx->sample_rate;
    }
    return videoStreamIdx >= 0 ? kSilentClockSampleRate : 0;
}

void MyCAOpenGLLayer::rebaseClockOnTimeSec(double timeSec) {
    const auto rebased = std::int64_t(double(clockSampleRate()) * timeSec);
    NamedLockGuard lock(sampleCountMutex);
    gOutputtedSampleCount = rebased;
    gReadedSampleCount = rebased;
    isAudioDecodingAtEnd = false;
}

}  // namespace tolvane
