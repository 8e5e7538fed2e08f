#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
}

#include <memory>
#include <string>

namespace tolvane {

// Owners for the FFmpeg handles the engine holds. Each frees through the
// matching FFmpeg call; none is ever freed by hand.

struct FormatContextDeleter {
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};
using FormatContextPtr = std::unique_ptr<AVFormatContext, FormatContextDeleter>;

struct CodecContextDeleter {
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
};
using CodecContextPtr = std::unique_ptr<AVCodecContext, CodecContextDeleter>;

struct FrameDeleter {
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;

struct PacketDeleter {
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;

inline FramePtr makeFrame() { return FramePtr(av_frame_alloc()); }
inline PacketPtr makePacket() { return PacketPtr(av_packet_alloc()); }

// FFmpeg's text for an error code, as av_strerror writes it into 64 bytes.
inline std::string ffmpegErrorText(int errorCode) {
    char buffer[64] = {};
    av_strerror(errorCode, buffer, sizeof buffer);
    return buffer;
}

// Opens `path` for demuxing and reads the stream information; the context is
// null and `errorCode` says why when either step fails. `failedStep` is 0 for
// the open and 1 for the stream information.
struct OpenedInput {
    FormatContextPtr context;
    int errorCode = 0;
    int failedStep = -1;
};
OpenedInput openInputWithStreamInfo(const char *utf8Path);

// A decoder context for `stream`'s parameters, not yet opened; null when it
// cannot be made.
CodecContextPtr codecContextForStream(const AVCodec *codec, const AVStream *stream);

}  // namespace tolvane
