#include "engine/video/video_decoder.h"

#include <algorithm>

#include "engine/video/decoder_feed.h"
#include "engine/video/hardware/nv12_bitmap.h"

namespace tolvane {

namespace {

constexpr std::uint8_t kBlackLuma = 16;
constexpr std::uint8_t kNeutralChroma = 128;

}  // namespace

VideoDecoder::VideoDecoder(CodecContextPtr context,
                           std::unique_ptr<HardwareVideoDecoding> hardwareDecoding)
    : hardware(std::move(hardwareDecoding)), codecContext(std::move(context)) {}

bool VideoDecoder::receivePictureInto(std::vector<DecodedVideoPicture> &pictures) {
    if (!receiving) {
        receiving = makeFrame();
        if (!receiving) {
            return false;
        }
    }
    if (avcodec_receive_frame(codecContext.get(), receiving.get()) != 0) {
        return false;
    }
    DecodedVideoPicture picture{std::move(receiving), std::nullopt, {}};
    const AVFrame &frame = *picture.frame;
    if (hardware && hardware->isHardwareFrame(frame)) {
        BitmapBytes nv12(nv12ByteCountFor(frame.width, frame.height));
        if (!hardware->transferToNv12(frame, nv12.data(), picture.downloadFailure)) {
            // Black, keeping the picture's time slot.
            const auto chroma = std::ptrdiff_t(nv12ChromaOffsetFor(frame.width, frame.height));
            std::fill(nv12.begin(), nv12.begin() + chroma, kBlackLuma);
            std::fill(nv12.begin() + chroma, nv12.end(), kNeutralChroma);
            if (picture.downloadFailure.empty()) {
                picture.downloadFailure = "the device refused the download";
            }
        }
        picture.nv12 = std::move(nv12);
    }
    pictures.push_back(std::move(picture));
    return true;
}

std::vector<DecodedVideoPicture> VideoDecoder::decode(const AVPacket *packet) {
    std::vector<DecodedVideoPicture> pictures;
    AVCodecContext *context = codecContext.get();
    if (packet == nullptr) {
        if (!isEndOfStreamSent) {
            avcodec_send_packet(context, nullptr);
            isEndOfStreamSent = true;
        }
        receivePictureInto(pictures);
        return pictures;
    }
    if (hardware) {
        // Comes back on the packet's own picture, for the time-stamp rule.
        context->reordered_opaque = packet->dts;
    }
    sendPacketTakingWaitingPictures([&] { return avcodec_send_packet(context, packet); },
                                    [&] { return receivePictureInto(pictures); });
    if (pictures.empty()) {
        receivePictureInto(pictures);
    }
    return pictures;
}

void VideoDecoder::flush() {
    avcodec_flush_buffers(codecContext.get());
    isEndOfStreamSent = false;
}

}  // namespace tolvane
