#include "engine/video/hardware/hardware_decoding.h"

#include <array>
#include <vector>

#include "engine/video/hardware/nv12_bitmap.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace tolvane {

namespace {

// The devices tried, in order: VA-API serves Intel and AMD (and NVIDIA
// through a wrapper), VDPAU older NVIDIA and AMD drivers, CUDA NVIDIA's own.
constexpr std::array kDeviceOrder = {AV_HWDEVICE_TYPE_VAAPI, AV_HWDEVICE_TYPE_VDPAU,
                                     AV_HWDEVICE_TYPE_CUDA};

// Pictures tried at open before the device is trusted with the file.
constexpr int kTrialPacketLimit = 64;

// The surface format `codec` decodes into on a device of `type`, when it
// can use such a device through a device context.
std::optional<AVPixelFormat> surfaceFormatFor(const AVCodec *codec, AVHWDeviceType type) {
    for (int i = 0;; ++i) {
        const AVCodecHWConfig *config = avcodec_get_hw_config(codec, i);
        if (config == nullptr) {
            return std::nullopt;
        }
        if ((config->methods & AV_CODEC_HW_CONFIG_METHOD_HW_DEVICE_CTX) != 0 &&
            config->device_type == type) {
            return config->pix_fmt;
        }
    }
}

std::string pixelFormatName(int format) {
    const char *name = av_get_pix_fmt_name(AVPixelFormat(format));
    return name != nullptr ? name : "none";
}

}  // namespace

std::optional<std::string> hardwareDecodingRefusalFor(const AVCodecParameters &parameters) {
    if (parameters.codec_id != AV_CODEC_ID_H264) {
        return std::string("the video is ") + avcodec_get_name(parameters.codec_id) + ", not H.264";
    }
    // The download gives NV12 without range or matrix: only video-range
    // 8-bit 4:2:0 comes out as the software path would show it.
    if (parameters.format != AV_PIX_FMT_YUV420P) {
        return "the pictures are " + pixelFormatName(parameters.format) + ", not yuv420p";
    }
    return std::nullopt;
}

AVPixelFormat pickHardwareOrSoftwareFormat(const AVPixelFormat *offered,
                                           AVPixelFormat hardwareFormat) {
    AVPixelFormat firstSoftware = AV_PIX_FMT_NONE;
    for (const AVPixelFormat *format = offered; format != nullptr && *format != AV_PIX_FMT_NONE;
         ++format) {
        if (*format == hardwareFormat) {
            return *format;
        }
        const AVPixFmtDescriptor *descriptor = av_pix_fmt_desc_get(*format);
        if (firstSoftware == AV_PIX_FMT_NONE && descriptor != nullptr &&
            (descriptor->flags & AV_PIX_FMT_FLAG_HWACCEL) == 0) {
            firstSoftware = *format;
        }
    }
    return firstSoftware;
}

std::unique_ptr<HardwareVideoDecoding> HardwareVideoDecoding::create(const AVCodec *codec,
                                                                     std::string &reason) {
    reason.clear();
    for (const AVHWDeviceType type : kDeviceOrder) {
        const char *name = av_hwdevice_get_type_name(type);
        const std::string failurePrefix = (reason.empty() ? "" : "; ") + std::string(name) + ": ";
        const std::optional<AVPixelFormat> surfaceFormat = surfaceFormatFor(codec, type);
        if (!surfaceFormat) {
            reason += failurePrefix + "not built into FFmpeg's H.264 decoder";
            continue;
        }
        AVBufferRef *created = nullptr;
        if (const int error = av_hwdevice_ctx_create(&created, type, nullptr, nullptr, 0);
            error < 0) {
            reason += failurePrefix + ffmpegErrorText(error);
            continue;
        }
        return std::make_unique<HardwareVideoDecoding>(ConstructionKey{}, BufferRefPtr(created),
                                                       type, *surfaceFormat);
    }
    return nullptr;
}

HardwareVideoDecoding::HardwareVideoDecoding(ConstructionKey, BufferRefPtr device,
                                             AVHWDeviceType type, AVPixelFormat format)
    : device(std::move(device)), deviceType(type), hardwareFormat(format) {}

const char *HardwareVideoDecoding::deviceName() const {
    return av_hwdevice_get_type_name(deviceType);
}

AVPixelFormat HardwareVideoDecoding::getFormat(AVCodecContext *context,
                                               const AVPixelFormat *offered) {
    const auto *self = static_cast<const HardwareVideoDecoding *>(context->opaque);
    // A profile or size the device refuses makes FFmpeg offer the list again
    // without the surface format: decoding then goes on in software.
    return pickHardwareOrSoftwareFormat(offered, self->hardwareFormat);
}

void HardwareVideoDecoding::attachTo(AVCodecContext &context) {
    context.hw_device_ctx = av_buffer_ref(device.get());
    context.opaque = this;
    context.get_format = &HardwareVideoDecoding::getFormat;
    // The device decodes; frame threads would only hold more surfaces.
    context.thread_count = 1;
}

bool HardwareVideoDecoding::transferToNv12(const AVFrame &frame, std::uint8_t *nv12,
                                           std::string &reason) {
    if (!downloaded) {
        downloaded = makeFrame();
    }
    av_frame_unref(downloaded.get());
    downloaded->format = AV_PIX_FMT_NV12;
    int error = av_hwframe_transfer_data(downloaded.get(), &frame, 0);
    if (error < 0) {
        // Some devices download only into a format of their own choosing.
        av_frame_unref(downloaded.get());
        error = av_hwframe_transfer_data(downloaded.get(), &frame, 0);
    }
    if (error < 0) {
        reason = "download failed: " + ffmpegErrorText(error);
        return false;
    }
    const bool copied = copyFrameToNv12Bitmap(*downloaded, nv12);
    if (!copied) {
        reason = "the device downloads " + pixelFormatName(downloaded->format) + ", not NV12";
    }
    av_frame_unref(downloaded.get());
    return copied;
}

std::optional<std::string> tryFirstPicturesInHardware(const char *utf8Path, int streamIndex,
                                                      HardwareVideoDecoding &decoding) {
    const OpenedInput input = openInputWithStreamInfo(utf8Path);
    if (input.failedStep >= 0) {
        return "the file could not be read again: " + ffmpegErrorText(input.errorCode);
    }
    AVFormatContext *format = input.context.get();
    if (streamIndex < 0 || unsigned(streamIndex) >= format->nb_streams) {
        return std::string("the video stream is missing");
    }
    const AVStream *stream = format->streams[streamIndex];
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    CodecContextPtr context = codecContextForStream(codec, stream);
    if (!context) {
        return std::string("no decoder context");
    }
    decoding.attachTo(*context);
    if (const int error = avcodec_open2(context.get(), codec, nullptr); error < 0) {
        return "the decoder did not open on the device: " + ffmpegErrorText(error);
    }
    const PacketPtr packet = makePacket();
    const FramePtr frame = makeFrame();
    int videoPackets = 0;
    bool gotPicture = false;
    bool isDraining = false;
    while (!gotPicture) {
        if (!isDraining) {
            const int read = av_read_frame(format, packet.get());
            if (read >= 0 && packet->stream_index != streamIndex) {
                av_packet_unref(packet.get());
                continue;
            }
            isDraining = read < 0 || ++videoPackets > kTrialPacketLimit;
            // Errors of single packets are judged by whether a picture comes.
            avcodec_send_packet(context.get(), isDraining ? nullptr : packet.get());
            av_packet_unref(packet.get());
        }
        const int received = avcodec_receive_frame(context.get(), frame.get());
        if (received == 0) {
            gotPicture = true;
        } else if (received != AVERROR(EAGAIN) || isDraining) {
            return "no picture came out of the first " + std::to_string(videoPackets) + " packets";
        }
    }
    if (!decoding.isHardwareFrame(*frame)) {
        return "the device refused the stream (" + pixelFormatName(frame->format) + " came out)";
    }
    std::vector<std::uint8_t> nv12(nv12ByteCountFor(frame->width, frame->height));
    std::string reason;
    if (!decoding.transferToNv12(*frame, nv12.data(), reason)) {
        return reason;
    }
    return std::nullopt;
}

}  // namespace tolvane
