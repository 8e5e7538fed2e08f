// Decoding throughput of the pixel path (decode, convert, queue) against
// FFmpeg's plain send/receive loop on the same file with the same decoder
// threads, both in every iteration. "vs_plain" is the pixel path's pictures
// per second divided by the plain loop's.

#include <benchmark/benchmark.h>

#include <QString>
#include <chrono>

#include "engine/ffmpeg_handles.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video_decoding_rules.h"

namespace tolvane {
namespace {

using Clock = std::chrono::steady_clock;

const char *const kClips[] = {"h264_1080p.mkv", "h264_1080p_10bit.mkv"};

std::string clipPath(int index) { return std::string(TOLVANE_BENCH_MEDIA_DIR "/") + kClips[index]; }

struct DecodeRun {
    int pictures = 0;
    double seconds = 0.0;
    int packetsBeforeFirstPicture = -1;
    double picturesPerSec() const { return seconds > 0.0 ? pictures / seconds : 0.0; }
};

// The reference: every video packet sent, every picture received, the
// decoder drained at the end.
DecodeRun plainDecode(const std::string &path, int threads) {
    DecodeRun run;
    const auto start = Clock::now();
    OpenedInput input = openInputWithStreamInfo(path.c_str());
    if (!input.context || input.failedStep >= 0) {
        return run;
    }
    const AVCodec *codec = nullptr;
    const int stream =
        av_find_best_stream(input.context.get(), AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (stream < 0) {
        return run;
    }
    CodecContextPtr context(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(context.get(), input.context->streams[stream]->codecpar);
    context->thread_count = threads;
    context->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (avcodec_open2(context.get(), codec, nullptr) < 0) {
        return run;
    }
    PacketPtr packet = makePacket();
    FramePtr frame = makeFrame();
    int packetsSent = 0;
    const auto receiveAll = [&] {
        while (avcodec_receive_frame(context.get(), frame.get()) == 0) {
            if (run.pictures++ == 0) {
                run.packetsBeforeFirstPicture = packetsSent;
            }
            av_frame_unref(frame.get());
        }
    };
    while (av_read_frame(input.context.get(), packet.get()) >= 0) {
        if (packet->stream_index == stream) {
            avcodec_send_packet(context.get(), packet.get());
            ++packetsSent;
            receiveAll();
        }
        av_packet_unref(packet.get());
    }
    avcodec_send_packet(context.get(), nullptr);
    receiveAll();
    run.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return run;
}

// The engine's own path: the packet and pixel passes in turn, as their
// threads run them, every picture taken out as it is queued.
DecodeRun pixelPathDecode(const std::string &path, bool is10bitMode) {
    DecodeRun run;
    const auto start = Clock::now();
    MyCAOpenGLLayer engine;
    engine.setIs10bitMode(is10bitMode);
    if (engine.openMovieFile(QString::fromStdString(path)) != QLatin1String(kOpenSucceeded)) {
        return run;
    }
    engine.setRate(1.0);
    for (;;) {
        const bool endOfFile = engine.addPacketOnePass() == PacketPassAction::Sleep;
        engine.removeAllAudioPackets();
        const PixelPassOutcome outcome = engine.addBitmapDataOnePass();
        while (engine.getBitmapData() != nullptr) {
        }
        run.pictures += int(engine.removeBitmapData().size());
        if (endOfFile &&
            (outcome == PixelPassOutcome::NoUnreadPacket || outcome == PixelPassOutcome::Idle)) {
            break;
        }
    }
    run.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return run;
}

// Arguments: the clip, and whether 10-bit pictures become 16-bit RGBA (1)
// or packed 8-bit 4:2:2 (0).
void BM_PixelPathVsPlainDecode(benchmark::State &state) {
    const std::string path = clipPath(int(state.range(0)));
    const bool is10bitMode = state.range(1) != 0;
    const int threads = videoDecoderThreadCount();
    DecodeRun pixelTotal;
    DecodeRun plainTotal;
    for (auto _ : state) {
        const DecodeRun plain = plainDecode(path, threads);
        const DecodeRun pixel = pixelPathDecode(path, is10bitMode);
        if (plain.pictures == 0 || pixel.pictures == 0) {
            state.SkipWithError("cannot decode the clip; was bench media generated?");
            return;
        }
        plainTotal.pictures += plain.pictures;
        plainTotal.seconds += plain.seconds;
        pixelTotal.pictures += pixel.pictures;
        pixelTotal.seconds += pixel.seconds;
        state.SetIterationTime(pixel.seconds);
    }
    state.SetLabel(kClips[state.range(0)]);
    state.counters["threads"] = threads;
    state.counters["pixel_fps"] = pixelTotal.picturesPerSec();
    state.counters["plain_fps"] = plainTotal.picturesPerSec();
    state.counters["vs_plain"] = pixelTotal.picturesPerSec() / plainTotal.picturesPerSec();
}

// The plain loop at several thread counts: the speed-up that frame threads
// buy and the pictures of delay they add, which the seek preview must absorb.
void BM_PlainDecodeThreads(benchmark::State &state) {
    const std::string path = clipPath(0);
    const int threads = int(state.range(0));
    DecodeRun total;
    for (auto _ : state) {
        const DecodeRun run = plainDecode(path, threads);
        total.pictures += run.pictures;
        total.seconds += run.seconds;
        total.packetsBeforeFirstPicture = run.packetsBeforeFirstPicture;
        state.SetIterationTime(run.seconds);
    }
    state.counters["fps"] = total.picturesPerSec();
    state.counters["packets_before_first_picture"] = total.packetsBeforeFirstPicture;
}

BENCHMARK(BM_PixelPathVsPlainDecode)
    ->Args({0, 1})
    ->Args({1, 1})
    ->Args({1, 0})
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainDecodeThreads)
    ->Arg(1)
    ->Arg(2)
    ->Arg(4)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tolvane
