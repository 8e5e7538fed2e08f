// Each conversion against libswscale doing the closest conversion on the same
// 1920×1080 frame, both in every iteration so that a busy machine slows both
// alike. The reported time is ours; "vs_swscale" is ours divided by theirs.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <random>

#include "engine/ffmpeg_handles.h"
#include "engine/video/bitmap_conversion.h"
#include "engine/video/bitmap_data.h"

extern "C" {
#include <libswscale/swscale.h>
}

namespace tolvane {
namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

FramePtr allocatedFrame(AVPixelFormat format) {
    FramePtr frame = makeFrame();
    frame->format = format;
    frame->width = kWidth;
    frame->height = kHeight;
    return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

struct ConversionPair {
    AVPixelFormat source;
    bool isTenBit;
    BitmapLayout layout;
    AVPixelFormat swscaleTarget;
    int swscaleFlags;
};

void conversionVsSwscale(benchmark::State &state, const ConversionPair &pair) {
    const FramePtr frame = allocatedFrame(pair.source);
    FramePtr theirs = allocatedFrame(pair.swscaleTarget);
    const std::unique_ptr<SwsContext, decltype(&sws_freeContext)> swscale(
        sws_getContext(kWidth, kHeight, pair.source, kWidth, kHeight, pair.swscaleTarget,
                       pair.swscaleFlags, nullptr, nullptr, nullptr),
        &sws_freeContext);
    if (!frame || !theirs || !swscale) {
        state.SkipWithError("cannot set up the frames or libswscale");
        return;
    }
    // Noise, padding included, leaves no shortcut that a flat picture would.
    std::mt19937 random(7);
    for (AVBufferRef *buffer : frame->buf) {
        for (std::size_t at = 0; buffer != nullptr && at + 1 < buffer->size; at += 2) {
            const auto sample = std::uint16_t(random() & (pair.isTenBit ? 0x3FF : 0xFFFF));
            std::memcpy(buffer->data + at, &sample, 2);
        }
    }
    PlanarPictureView view;
    std::copy(frame->data, frame->data + 3, view.planes);
    std::copy(frame->linesize, frame->linesize + 3, view.strides);
    view.width = kWidth;
    view.height = kHeight;
    BitmapBytes ours(bitmapByteCountFor(pair.layout, kWidth, kHeight));

    using Clock = std::chrono::steady_clock;
    double oursSec = 0.0;
    double theirsSec = 0.0;
    for (auto _ : state) {
        const auto start = Clock::now();
        convertPictureToBitmap(pair.layout, view, true, ours.data());
        benchmark::ClobberMemory();
        const auto middle = Clock::now();
        sws_scale(swscale.get(), frame->data, frame->linesize, 0, kHeight, theirs->data,
                  theirs->linesize);
        benchmark::ClobberMemory();
        const double oursIteration = std::chrono::duration<double>(middle - start).count();
        oursSec += oursIteration;
        theirsSec += std::chrono::duration<double>(Clock::now() - middle).count();
        state.SetIterationTime(oursIteration);
    }
    state.counters["ours_ms"] = 1000.0 * oursSec / double(state.iterations());
    state.counters["swscale_ms"] = 1000.0 * theirsSec / double(state.iterations());
    state.counters["vs_swscale"] = oursSec / theirsSec;
}

BENCHMARK_CAPTURE(conversionVsSwscale, Yuv420pToPacked422VsUyvy422,
                  ConversionPair{AV_PIX_FMT_YUV420P, false, BitmapLayout::Packed422From420p8,
                                 AV_PIX_FMT_UYVY422, SWS_POINT})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(conversionVsSwscale, Yuv420p10ToRgba16VsRgba64le,
                  ConversionPair{AV_PIX_FMT_YUV420P10LE, true, BitmapLayout::Rgba16From420p10,
                                 AV_PIX_FMT_RGBA64LE, SWS_POINT})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
// Full chroma: libswscale otherwise halves the chroma before converting.
BENCHMARK_CAPTURE(conversionVsSwscale, Yuv444p10ToArgb8VsArgb,
                  ConversionPair{AV_PIX_FMT_YUV444P10LE, true, BitmapLayout::Argb8From444p10,
                                 AV_PIX_FMT_ARGB, SWS_POINT | SWS_FULL_CHR_H_INT})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tolvane
