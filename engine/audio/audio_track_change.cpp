// Changing the audio track during playback, with the way back to the old
// track when the new one cannot be decoded.

#include <QString>

#include "base/log.h"
#include "base/notification_center.h"
#include "base/operation_boundary.h"
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

std::optional<QString> MyCAOpenGLLayer::openAudioDecoderForStream(int streamIndex) {
    if (!pFormatCtx || streamIndex < 0 || unsigned(streamIndex) >= pFormatCtx->nb_streams) {
        return QStringLiteral("-2005");
    }
    const AVStream *stream = pFormatCtx->streams[streamIndex];
    if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO) {
        return QStringLiteral("-2005");
    }
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    if (codec == nullptr) {
        return QStringLiteral("-2005");
    }
    CodecContextPtr context = codecContextForStream(codec, stream);
    const int error = context ? avcodec_open2(context.get(), codec, nullptr) : int(AVERROR(ENOMEM));
    if (error < 0) {
        return QStringLiteral("-2007: %1.").arg(QString::fromStdString(ffmpegErrorText(error)));
    }
    if (context->ch_layout.nb_channels < 1) {
        return QStringLiteral("-2008");
    }
    aCodec = codec;
    aCodecCtx = std::move(context);
    audioStreamIdx = streamIndex;
    audioBytesPerChannelValue = audioBytesPerChannelFor(aCodecCtx->sample_fmt);
    isQuadValue = false;
    runAtOperationBoundary("cat(q)", [&] { isQuadValue = isQuadLayoutOf(stream); });
    return std::nullopt;
}

void MyCAOpenGLLayer::changeAudioTrack(int newAudioStreamIdx) {
    runAtOperationBoundary("cat", [&] {
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

        const double targetSec = std::max(0.0, stoodAtSec - kResumeEarlierAfterTrackChangeSec);
        emptyQueues(QueueEmptying::AudioButClock);
        avcodec_flush_buffers(aCodecCtx.get());
        const int oldAudioStreamIdx = audioStreamIdx;
        aCodecCtx.reset();
        aCodec = nullptr;
        if (openAudioDecoderForStream(newAudioStreamIdx)) {
            NotificationCenter::defaultCenter().post(kAudioCodecErrorNotification, this);
            if (const std::optional<QString> failure =
                    openAudioDecoderForStream(oldAudioStreamIdx)) {
                logWarning(QStringLiteral("the audio track %1 could not be opened again (%2)")
                               .arg(oldAudioStreamIdx)
                               .arg(*failure));
            }
        }

        const float rememberedVolume = output.volume();
        destroyOutputUnit();
        resetAudioDecodingStateForNewTrack();

        setDefaultOutputAUWithVolume(rememberedVolume);
        setCurrentTimeSec(targetSec - startTimeSec(), true);
        restartTimers();
        if (rememberedRate == 1.0) {
            setRate(1.0);
        }
    });
}

}  // namespace tolvane
