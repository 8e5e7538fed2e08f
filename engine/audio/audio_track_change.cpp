// Changing the audio track during playback, with the way back to the old
// track when the new one cannot be decoded.

#include <QString>

#include "base/log.h"
#include "base/notification_center.h"
#include "engine/demux/media_description.h"
#include "engine/my_ca_opengl_layer.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace tolvane {

namespace {

constexpr double kResumeEarlierAfterTrackChangeSec = 1.0;

bool isQuadLayoutOf(const AVStream *stream) {
    char buffer[60] = {};
    av_channel_layout_describe(&stream->codecpar->ch_layout, buffer, sizeof buffer);
    return QString::fromUtf8(buffer).toLower().startsWith(QLatin1String("quad"));
}

}  // namespace

bool MyCAOpenGLLayer::openAudioDecoderForStream(int streamIndex) {
    if (!pFormatCtx || streamIndex < 0 || unsigned(streamIndex) >= pFormatCtx->nb_streams) {
        return false;
    }
    const AVStream *stream = pFormatCtx->streams[streamIndex];
    if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO) {
        return false;
    }
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    if (codec == nullptr) {
        return false;
    }
    CodecContextPtr context = codecContextForStream(codec, stream);
    if (!context || avcodec_open2(context.get(), codec, nullptr) < 0 ||
        context->ch_layout.nb_channels < 1) {
        return false;
    }
    aCodec = codec;
    aCodecCtx = std::move(context);
    audioStreamIdx = streamIndex;
    audioBytesPerChannelValue = audioBytesPerChannelFor(aCodecCtx->sample_fmt);
    try {
        isQuadValue = isQuadLayoutOf(stream);
    } catch (const std::exception &e) {
        logException("cat(q)", e.what());
        isQuadValue = false;
    }
    return true;
}

void MyCAOpenGLLayer::changeAudioTrack(int newAudioStreamIdx) {
    try {
        NamedLockGuard changeLock(changeAudioMutex);
        if (!pFormatCtx || !aCodecCtx || newAudioStreamIdx == audioStreamIdx) {
            return;
        }
        const double rememberedRate = rate();
        setRate(0.0);
        const double stoodAtSec = currentTimeSec();
        stopSampleThread();
        stopPixelThread();
        stopPacketThread();

        {
            NamedLockGuard lock(sampleDataQueueMutex);
            const int lists = sampleListCount();
            for (int channel = 0; channel < lists; ++channel) {
                sampleLists.channel(channel).removeAll();
            }
        }
        const double targetSec = std::max(0.0, stoodAtSec - kResumeEarlierAfterTrackChangeSec);
        {
            NamedLockGuard lock(samplePoolMutex);
            samplePool.release();
        }

        removeAllAudioPackets();
        avcodec_flush_buffers(aCodecCtx.get());
        const int oldAudioStreamIdx = audioStreamIdx;
        aCodecCtx.reset();
        aCodec = nullptr;
        if (!openAudioDecoderForStream(newAudioStreamIdx)) {
            NotificationCenter::defaultCenter().post(kAudioCodecErrorNotification, this);
            if (!openAudioDecoderForStream(oldAudioStreamIdx)) {
                logWarning(QStringLiteral("the audio track %1 could not be opened again")
                               .arg(oldAudioStreamIdx));
            }
        }

        const float rememberedVolume = outputVolume.load();
        destroyOutputUnit();
        resetAudioDecodingStateForNewTrack();

        setDefaultOutputAUWithVolume(rememberedVolume);
        setCurrentTimeSec(targetSec - startTimeSec(), true);
        restartTimers();
        if (rememberedRate == 1.0) {
            setRate(1.0);
        }
    } catch (const std::exception &e) {
        logException("cat", e.what());
    }
}

}  // namespace tolvane
