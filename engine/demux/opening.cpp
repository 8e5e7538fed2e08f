// Opening a media file: stream choice, decoders and the tracks record.

#include <QFile>
#include <vector>

#include "base/localized_strings.h"
#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/clock/stream_time.h"
#include "engine/demux/media_description.h"
#include "engine/demux/media_end.h"
#include "engine/my_ca_opengl_layer.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/pixdesc.h>
}

namespace tolvane {

namespace {

constexpr double kMicrosecondsPerSecond = 1000000.0;

QString codeWithError(const char *code, int errorCode) {
    return QStringLiteral("%1: %2.").arg(QLatin1String(code),
                                         QString::fromStdString(ffmpegErrorText(errorCode)));
}

double ratioOrZero(AVRational rational) {
    // A zero denominator gives inf or nan, as the record has always stored it.
    return double(rational.num) / double(rational.den);
}

QString languageOf(const AVStream *stream) {
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = av_dict_get(stream->metadata, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
        if (qstrcmp(entry->key, "language") == 0) {
            return QString::fromUtf8(entry->value);
        }
    }
    return QStringLiteral("und");
}

QString layoutTextOf(const AVChannelLayout &layout) {
    char buffer[60] = {};
    av_channel_layout_describe(&layout, buffer, sizeof buffer);
    return QString::fromUtf8(buffer);
}

double secondsOfStreamStart(const AVStream *stream) {
    return stream->start_time == AV_NOPTS_VALUE
               ? 0.0
               : secondsOfStreamTimestamp(stream->start_time, stream->time_base);
}

std::vector<IndexEntrySummary> indexEntriesOf(const AVStream *stream) {
    std::vector<IndexEntrySummary> entries;
    const int count = avformat_index_get_entries_count(stream);
    entries.reserve(std::size_t(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        const AVIndexEntry *entry = avformat_index_get_entry(const_cast<AVStream *>(stream), i);
        entries.push_back({entry->flags, entry->min_distance});
    }
    return entries;
}

}  // namespace

CodecContextPtr codecContextForStream(const AVCodec *codec, const AVStream *stream) {
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (context && avcodec_parameters_to_context(context.get(), stream->codecpar) >= 0) {
        context->pkt_timebase = stream->time_base;
        return context;
    }
    return nullptr;
}

OpenedInput openInputWithStreamInfo(const char *utf8Path) {
    OpenedInput result;
    AVFormatContext *raw = avformat_alloc_context();
    // On failure avformat_open_input frees the context itself.
    const int openError = avformat_open_input(&raw, utf8Path, nullptr, nullptr);
    if (openError < 0) {
        result.errorCode = openError;
        result.failedStep = 0;
        return result;
    }
    result.context.reset(raw);
    const int infoError = avformat_find_stream_info(result.context.get(), nullptr);
    if (infoError < 0) {
        result.errorCode = infoError;
        result.failedStep = 1;
    }
    return result;
}

QString MyCAOpenGLLayer::nameOfCodecID(AVCodecID codecID) {
    const char *name = avcodec_get_name(codecID);
    return name != nullptr ? QString::fromUtf8(name).toUpper() : QStringLiteral("NONE");
}

QString MyCAOpenGLLayer::nameOfPixelFormat(AVPixelFormat pixelFormat) {
    const char *name = av_get_pix_fmt_name(pixelFormat);
    QString text = name != nullptr ? QString::fromUtf8(name).toUpper() : QStringLiteral("NONE");
    if (text == QLatin1String("YUV420P10LE")) {
        return QStringLiteral("YUV420P 10-bit");
    }
    if (text == QLatin1String("YUV444P10LE")) {
        return QStringLiteral("YUV444P 10-bit");
    }
    return text;
}

QString MyCAOpenGLLayer::openMovieFile(const QString &path) {
    return resultAtOperationBoundary(
        "omf",
        [&]() -> QString {
            cleanBeforeOpenFile();

            OpenedInput input = openInputWithStreamInfo(QFile::encodeName(path).constData());
            if (input.failedStep == 0) {
                return codeWithError("-2000", input.errorCode);
            }
            pFormatCtx = std::move(input.context);
            if (input.failedStep == 1) {
                return codeWithError("-2001", input.errorCode);
            }

            std::vector<int> audioStreams;
            for (unsigned i = 0; i < pFormatCtx->nb_streams; ++i) {
                const AVMediaType type = pFormatCtx->streams[i]->codecpar->codec_type;
                if (type == AVMEDIA_TYPE_VIDEO && videoStreamIdx < 0) {
                    videoStreamIdx = int(i);
                } else if (type == AVMEDIA_TYPE_AUDIO) {
                    if (audioStreamIdx < 0) {
                        audioStreamIdx = int(i);
                    }
                    audioStreams.push_back(int(i));
                }
            }
            if (videoStreamIdx < 0) {
                return QStringLiteral("-2002");
            }
            // A video without sound plays, timed by the silent output over its
            // known length; without one nothing could tell where it ends.
            if (audioStreamIdx < 0 && pFormatCtx->duration <= 0) {
                return QStringLiteral("-2003");
            }

            const AVStream *videoStream = pFormatCtx->streams[videoStreamIdx];
            const AVStream *audioStream =
                audioStreamIdx >= 0 ? pFormatCtx->streams[audioStreamIdx] : nullptr;
            // The displayed height: the coded one (1088 for a 1080p H.264 stream)
            // includes the rows the encoder padded to whole macroblocks.
            const int heightBeforeOpen = videoStream->codecpar->height;

            const std::vector<IndexEntrySummary> indexEntries = indexEntriesOf(videoStream);
            isUglyKeyframeValue = isUglyKeyframeFromIndexEntries(indexEntries);

            vCodec = avcodec_find_decoder(videoStream->codecpar->codec_id);
            if (vCodec == nullptr) {
                return QStringLiteral("-2004");
            }
            // Looked for here so that a missing audio decoder is told before the
            // video decoder's failures, as the codes are ordered.
            if (audioStream != nullptr &&
                avcodec_find_decoder(audioStream->codecpar->codec_id) == nullptr) {
                return QStringLiteral("-2005");
            }
            CodecContextPtr videoContext = codecContextForStream(vCodec, videoStream);
            if (!videoContext) {
                return codeWithError("-2006", AVERROR(ENOMEM));
            }
            configureVideoDecoderThreads(*videoContext);
            std::unique_ptr<HardwareVideoDecoding> hardware =
                openHardwareDecodingForVideoDecoder(path, *videoContext);
            if (const int error = avcodec_open2(videoContext.get(), vCodec, nullptr); error < 0) {
                isMacSupportH264AccValue = false;
                return codeWithError("-2006", error);
            }
            videoDecoder =
                std::make_shared<VideoDecoder>(std::move(videoContext), std::move(hardware));
            const AVCodecContext &videoCodec = videoDecoder->context();
            if (audioStream != nullptr) {
                if (std::optional<QString> failure = openAudioDecoderForStream(audioStreamIdx)) {
                    return *failure;
                }
            }

            VideoTrack video;
            video.idx = videoStreamIdx;
            video.codecname = nameOfCodecID(videoCodec.codec_id);
            video.width = videoCodec.width;
            video.height = heightBeforeOpen;
            video.sourceHeight = heightBeforeOpen;
            video.pixelformat = nameOfPixelFormat(videoCodec.pix_fmt);
            pixelFormatModeValue = pixelFormatModeFor(videoCodec.pix_fmt);
            if (pixelFormatModeValue == kPixelFormatUnsupported) {
                showAlert(localizedString("NOPXFMT"), video.pixelformat);
            }
            video.fps = ratioOrZero(videoStream->avg_frame_rate);
            video.tbr = ratioOrZero(videoStream->r_frame_rate);

            Tracks opened;
            opened.videotrack = video;
            for (const int index : audioStreams) {
                const AVStream *stream = pFormatCtx->streams[index];
                AudioTrack audio;
                audio.idx = index;
                audio.codecname = nameOfCodecID(stream->codecpar->codec_id);
                bool isQuadLayout = false;
                audio.channel = channelDescriptionFromLayoutText(
                    layoutTextOf(stream->codecpar->ch_layout), &isQuadLayout);
                isQuadValue = isQuadLayout;  // the last audio stream decides, as it always has
                const char *formatName =
                    av_get_sample_fmt_name(AVSampleFormat(stream->codecpar->format));
                audio.sampleformat = formatName != nullptr ? QString::fromUtf8(formatName).toUpper()
                                                           : QStringLiteral("NONE");
                audio.samplerate = stream->codecpar->sample_rate;
                audio.starttimesec = secondsOfStreamStart(stream);
                audio.language = languageOf(stream);
                opened.audiotrack.emplace(index, audio);
            }
            tracksRecord = std::move(opened);

            fileDurationSecValue =
                pFormatCtx->duration == AV_NOPTS_VALUE || pFormatCtx->duration < 0
                    ? kNoDurationSec
                    : double(pFormatCtx->duration) / kMicrosecondsPerSecond;
            videoOnlyStartTimeSec = secondsOfStreamStart(videoStream);
            putClockOnStreamStart();
            return QString::fromLatin1(kOpenSucceeded);
        },
        [](std::string_view what) {
            return QStringLiteral("-2000: %1.")
                .arg(QString::fromUtf8(what.data(), qsizetype(what.size())));
        });
}

double MyCAOpenGLLayer::durationSecOfMovieFile(const QString &path) {
    return resultAtOperationBoundary(
        "dsomf",
        [&] {
            const OpenedInput input = openInputWithStreamInfo(QFile::encodeName(path).constData());
            if (input.failedStep >= 0) {
                return kNoDurationSec;
            }
            bool hasVideo = false;
            bool hasAudio = false;
            bool hasBadAudio = false;
            for (unsigned i = 0; i < input.context->nb_streams; ++i) {
                const AVCodecParameters *parameters = input.context->streams[i]->codecpar;
                if (parameters->codec_type == AVMEDIA_TYPE_VIDEO) {
                    hasVideo = true;
                } else if (parameters->codec_type == AVMEDIA_TYPE_AUDIO) {
                    hasAudio = true;
                    if (avcodec_find_decoder(parameters->codec_id) == nullptr ||
                        parameters->ch_layout.nb_channels < 1) {
                        hasBadAudio = true;
                    }
                }
            }
            if (!hasVideo || hasBadAudio || (!hasAudio && input.context->duration <= 0)) {
                return kNoDurationSec;
            }
            return input.context->duration == AV_NOPTS_VALUE || input.context->duration < 0
                       ? kNoDurationSec
                       : double(input.context->duration) / kMicrosecondsPerSecond;
        },
        [](std::string_view) { return kNoDurationSec; });
}

void MyCAOpenGLLayer::showAlert(const QString &message, const QString &informativeText) {
    if (alertPresenter != nullptr) {
        alertPresenter->showAlert(message, informativeText);
    } else {
        fallbackAlerts.showAlert(message, informativeText);
    }
}

}  // namespace tolvane
