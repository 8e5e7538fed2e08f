// Creation and the reset before every file.

#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

MyCAOpenGLLayer::MyCAOpenGLLayer() {
    static std::once_flag ffmpegSilenced;
    std::call_once(ffmpegSilenced, [] { av_log_set_level(AV_LOG_QUIET); });
}

MyCAOpenGLLayer::~MyCAOpenGLLayer() { cleanBeforeQuit(); }

void MyCAOpenGLLayer::cleanBeforeQuit() { cleanBeforeOpenFile(); }

void MyCAOpenGLLayer::cleanBeforeOpenFile() {
    runAtOperationBoundary("cbof", [&] {
        isAlsoHaveMovieValue = false;
        // A worker abandoned by the bounded stop keeps what it works on and
        // can no longer reach the engine: the reset frees the rest at once.
        stopSampleThread();
        stopPixelThread();
        stopPacketThread();
        isInterlacedValue = false;
        destroyOutputUnit();
        setAsynchronous(false);

        isSkippingValue = false;
        resetAudioDecodingStateForNewTrack();
        {
            NamedLockGuard lock(rateMutex);
            rateValue = 0.0;
        }
        emptyQueues(QueueEmptying::Everything);
        releasePooledBitmapStorage();
        {
            NamedLockGuard lock(drawVideoMutex);
            isResized = true;
            countAfterChangeScreen = 1;
        }

        vCodec = nullptr;
        videoDecoder.reset();
        isMacSupportH264AccValue = false;
        hardwareDecodingReasonValue.clear();
        {
            NamedLockGuard lock(hardwarePictureOrderMutex);
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
            pictures.endSeekPreview();
            isSeekingAudio = true;  // deliberately the opposite of the video flag
            {
                NamedLockGuard lock(seekMutex);
                countSeek = 0;
            }
            seekingMovieTimeSec = 0.0;
        }

        tracksRecord = Tracks{};

        pictures.forgetCurrentPicture();
        hasPictureOnScreen = false;
        framesHeldForFirstPicture = 0;
        hasReadToTheEnd = false;
    });
}

void MyCAOpenGLLayer::emptyQueues(QueueEmptying emptying) {
    {
        // One lock over every channel, as the callback reads them.
        NamedLockGuard lock(sampleDataQueueMutex);
        const int lists = sampleListCount();
        for (int channel = 0; channel < lists; ++channel) {
            sampleLists.channel(channel).removeAll();
        }
    }
    {
        NamedLockGuard lock(samplePoolMutex);
        samplePool.release();
    }
    removeAllAudioPackets();
    if (emptying == QueueEmptying::Everything) {
        sampleClock.rebaseOnSampleCount(0);
    }
    {
        // Not nested in sampleCountMutex: the callback takes enoughMutex first.
        NamedLockGuard lock(enoughMutex);
        isEnoughSampleValue = false;
    }
    if (emptying == QueueEmptying::AudioButClock) {
        return;
    }
    removeAllVideoPackets();
    removeAllBitmapDatas();
    removeAllHeldHardwarePictures();
}

}  // namespace tolvane
