#pragma once

#include <memory>
#include <optional>
#include <string>

#include "engine/ffmpeg_handles.h"

extern "C" {
#include <libavutil/buffer.h>
#include <libavutil/hwcontext.h>
}

namespace tolvane {

// Owner of an FFmpeg reference-counted buffer: the hardware device and
// frames contexts are such buffers.
struct BufferRefDeleter {
    void operator()(AVBufferRef *buffer) const { av_buffer_unref(&buffer); }
};
using BufferRefPtr = std::unique_ptr<AVBufferRef, BufferRefDeleter>;

// Why the video stream described by `parameters` is not decoded in
// hardware (not H.264, or not 8-bit 4:2:0), or nothing when it may be.
std::optional<std::string> hardwareDecodingRefusalFor(const AVCodecParameters &parameters);

// The pixel format to decode into, from those the decoder offers: the
// hardware one when offered, else the first software one. AV_PIX_FMT_NONE
// when the list holds neither.
AVPixelFormat pickHardwareOrSoftwareFormat(const AVPixelFormat *offered,
                                           AVPixelFormat hardwareFormat);

// One hardware device opened for H.264 decoding, with the surface format
// the decoder writes into it.
//
// Thread-safety: create and attach on the opening thread; isHardwareFrame()
// and transferToNv12() on the one thread that decodes (the pixel thread, or
// the main thread while it is stopped).
class HardwareVideoDecoding {
public:
    // Opens the first device that works, in the order VA-API, VDPAU,
    // CUDA (those of them that FFmpeg's H.264 decoder supports); null with
    // `reason` naming each failure when none does.
    static std::unique_ptr<HardwareVideoDecoding> create(const AVCodec *codec, std::string &reason);

    HardwareVideoDecoding(const HardwareVideoDecoding &) = delete;
    HardwareVideoDecoding &operator=(const HardwareVideoDecoding &) = delete;

    // Makes `context`, not yet opened, decode on the device. The context
    // refers to this object through its `opaque`: this object must outlive
    // every decoding call on the context.
    void attachTo(AVCodecContext &context);

    // "vaapi", "vdpau" or "cuda".
    const char *deviceName() const;
    bool isHardwareFrame(const AVFrame &frame) const { return frame.format == hardwareFormat; }

    // Downloads the surface of `frame` into `nv12`, laid out as
    // BitmapLayout::Nv12From420p8 for the frame's size. False, with
    // `reason`, when the device refuses.
    bool transferToNv12(const AVFrame &frame, std::uint8_t *nv12, std::string &reason);

private:
    // Only create() can name it, and so construct.
    struct ConstructionKey {
        explicit ConstructionKey() = default;
    };

public:
    HardwareVideoDecoding(ConstructionKey, BufferRefPtr device, AVHWDeviceType type,
                          AVPixelFormat format);

private:
    static AVPixelFormat getFormat(AVCodecContext *context, const AVPixelFormat *offered);

    BufferRefPtr device;
    AVHWDeviceType deviceType;
    AVPixelFormat hardwareFormat;
    FramePtr downloaded;
};

// Decodes the first pictures of video stream `streamIndex` of `utf8Path`,
// opened a second time, on `decoding`: nothing when a picture came out of
// the device and could be downloaded, else why not.
std::optional<std::string> tryFirstPicturesInHardware(const char *utf8Path, int streamIndex,
                                                      HardwareVideoDecoding &decoding);

}  // namespace tolvane
