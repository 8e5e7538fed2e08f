#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/ffmpeg_handles.h"
#include "engine/video/bitmap_data.h"
#include "engine/video/hardware/hardware_decoding.h"

namespace tolvane {

// A picture out of the video decoder. A hardware picture comes downloaded:
// `nv12` holds it in the layout of BitmapLayout::Nv12From420p8, black where
// the device refused (`downloadFailure` then says why), and `frame` keeps
// its size and time stamps.
struct DecodedVideoPicture {
    FramePtr frame;
    std::optional<BitmapBytes> nv12;
    std::string downloadFailure;
};

// The video decoder of the open file: the codec context, the hardware device
// it decodes on when it does, and whether the end of the stream was sent.
// decode() is the one send/receive routine of the feed, the drain after the
// end of the packets and the seek's picture.
//
// Thread-safety: one thread at a time: the pixel thread, or the main thread
// while none runs. A pixel thread abandoned by the bounded stop keeps the
// decoder it shares, and the engine lets it go.
class VideoDecoder {
public:
    // `context` is open, and attached to `hardware` when one is given.
    VideoDecoder(CodecContextPtr context, std::unique_ptr<HardwareVideoDecoding> hardware);
    VideoDecoder(const VideoDecoder &) = delete;
    VideoDecoder &operator=(const VideoDecoder &) = delete;

    const AVCodecContext &context() const { return *codecContext; }
    // For tests that make the decoder stall; not while another thread decodes.
    AVCodecContext &contextForTesting() { return *codecContext; }
    bool isHardware() const { return hardware != nullptr; }

    // Feeds `packet` and returns the pictures that came out: every picture
    // taken to make room while the decoder answered EAGAIN (the packet is
    // offered again after each), or else at most one after it took the
    // packet. A packet it refuses yields at most a picture it still held.
    // With a null `packet`, the drain after the last packet: sends the end
    // of the stream the first time, then gives at most one picture per call,
    // none once the decoder is empty.
    std::vector<DecodedVideoPicture> decode(const AVPacket *packet);
    // Empties the decoder after a seek, ready for packets again.
    void flush();

private:
    bool receivePictureInto(std::vector<DecodedVideoPicture> &pictures);

    // Declared before the context, which refers to it through its `opaque`,
    // so that it is destroyed after it.
    const std::unique_ptr<HardwareVideoDecoding> hardware;
    const CodecContextPtr codecContext;
    FramePtr receiving;
    bool isEndOfStreamSent = false;
};

}  // namespace tolvane
