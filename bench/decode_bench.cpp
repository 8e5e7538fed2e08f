// Decoding throughput of the pixel path (decode, convert, queue) against
// FFmpeg's plain send/receive loop on the same file with the same decoder
// threads, both in every iteration. "vs_plain" is the pixel path's pictures
// per second divided by the plain loop's.

#include <benchmark/benchmark.h>

#include <QString>
#include <chrono>

#include "engine/ffmpeg_handles.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/video_decoding_rules.h"

namespace tolvane {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The reference: every video packet sent, every picture received, the
// decoder drained at the end. Returns the pictures decoded.
int plainDecode(const std::string &path, int threads) {
    OpenedInput input = openInputWithStreamInfo(path.c_str());
    const AVCodec *codec = nullptr;
    const int stream =
        input.context && input.failedStep < 0
            ? av_find_best_stream(input.context.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0)
            : -1;
    if (stream < 0) {
        return 0;
    }
    CodecContextPtr context(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(context.get(), input.context->streams[stream]->codecpar);
    context->thread_count = threads;
    context->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (avcodec_open2(context.get(), codec, nullptr) < 0) {
        return 0;
    }
    PacketPtr packet = makePacket();
    FramePtr frame = makeFrame();
    int pictures = 0;
    const auto receiveAll = [&] {
        for (; avcodec_receive_frame(context.get(), frame.get()) == 0; ++pictures) {
            av_frame_unref(frame.get());
        }
    };
    while (av_read_frame(input.context.get(), packet.get()) >= 0) {
        if (packet->stream_index == stream) {
            avcodec_send_packet(context.get(), packet.get());
            receiveAll();
        }
        av_packet_unref(packet.get());
    }
    avcodec_send_packet(context.get(), nullptr);
    receiveAll();
    return pictures;
}

// The engine's own path: the packet and pixel passes in turn, as their
// threads run them, every picture taken out as it is queued.
int pixelPathDecode(const std::string &path, bool is10bitMode) {
    MyCAOpenGLLayer engine;
    engine.setIs10bitMode(is10bitMode);
    if (engine.openMovieFile(QString::fromStdString(path)) != QLatin1String(kOpenSucceeded)) {
        return 0;
    }
    engine.setRate(1.0);
    int pictures = 0;
    for (;;) {
        const bool endOfFile = engine.addPacketOnePass() == PacketPassAction::Sleep;
        engine.removeAllAudioPackets();
        const PixelPassOutcome outcome = engine.addBitmapDataOnePass();
        while (engine.getBitmapData() != nullptr) {
        }
        pictures += int(engine.removeBitmapData().size());
        if (endOfFile &&
            (outcome == PixelPassOutcome::NoUnreadPacket || outcome == PixelPassOutcome::Idle)) {
            return pictures;
        }
    }
}

// Arguments: the clip, and whether 10-bit pictures become 16-bit RGBA (1) or
// packed 8-bit 4:2:2 (0).
void BM_PixelPathVsPlainDecode(benchmark::State &state) {
    const char *const clips[] = {"h264_1080p.mkv", "h264_1080p_10bit.mkv"};
    const std::string path = std::string(TOLVANE_BENCH_MEDIA_DIR "/") + clips[state.range(0)];
    const bool is10bitMode = state.range(1) != 0;
    const int threads = videoDecoderThreadCount();
    double plainPictures = 0.0, plainSec = 0.0, pixelPictures = 0.0, pixelSec = 0.0;
    for (auto _ : state) {
        Clock::time_point start = Clock::now();
        const int plain = plainDecode(path, threads);
        plainSec += secondsSince(start);
        start = Clock::now();
        const int pixel = pixelPathDecode(path, is10bitMode);
        const double iterationSec = secondsSince(start);
        if (plain == 0 || pixel == 0) {
            state.SkipWithError("cannot decode the clip; was bench media generated?");
            return;
        }
        plainPictures += plain;
        pixelPictures += pixel;
        pixelSec += iterationSec;
        state.SetIterationTime(iterationSec);
    }
    state.counters["threads"] = threads;
    state.counters["pixel_fps"] = pixelPictures / pixelSec;
    state.counters["plain_fps"] = plainPictures / plainSec;
    state.counters["vs_plain"] = (pixelPictures / pixelSec) / (plainPictures / plainSec);
}

BENCHMARK(BM_PixelPathVsPlainDecode)
    ->Args({0, 1})
    ->Args({1, 1})
    ->Args({1, 0})
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tolvane
