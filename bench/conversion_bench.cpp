// Each conversion against libswscale doing the closest conversion on the same
// 1920×1080 frame. Both run in every iteration, one after the other, so that
// a busy machine slows both alike; the reported time is ours and the
// "vs_swscale" counter is our time divided by libswscale's.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <random>

#include "engine/bitmap_conversion.h"
#include "engine/bitmap_data.h"
#include "engine/ffmpeg_handles.h"

extern "C" {
#include <libswscale/swscale.h>
}

namespace tolvane {
namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

struct SwsContextDeleter {
    void operator()(SwsContext *context) const { sws_freeContext(context); }
};
using SwsContextPtr = std::unique_ptr<SwsContext, SwsContextDeleter>;

// A frame of noise in `format`, with FFmpeg's own line-size padding. Noise
// keeps the work free of any shortcut a flat picture would allow.
FramePtr noiseFrame(AVPixelFormat format, int maxSample) {
    FramePtr frame = makeFrame();
    frame->format = format;
    frame->width = kWidth;
    frame->height = kHeight;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        return nullptr;
    }
    std::mt19937 random(7);
    std::uniform_int_distribution<int> sample(0, maxSample);
    const bool tenBit = maxSample > 255;
    const int chromaShift = format == AV_PIX_FMT_YUV444P10LE ? 0 : 1;
    for (int plane = 0; plane < 3; ++plane) {
        const int width = plane == 0 ? kWidth : kWidth >> chromaShift;
        const int height = plane == 0 ? kHeight : kHeight >> chromaShift;
        for (int y = 0; y < height; ++y) {
            std::uint8_t *row = frame->data[plane] + y * frame->linesize[plane];
            for (int x = 0; x < width; ++x) {
                if (tenBit) {
                    reinterpret_cast<std::uint16_t *>(row)[x] = std::uint16_t(sample(random));
                } else {
                    row[x] = std::uint8_t(sample(random));
                }
            }
        }
    }
    return frame;
}

struct ConversionPair {
    AVPixelFormat source;
    int maxSample;
    BitmapLayout layout;
    AVPixelFormat swscaleTarget;
    int swscaleFlags;
};

void runConversionAgainstSwscale(benchmark::State &state, const ConversionPair &pair) {
    const FramePtr frame = noiseFrame(pair.source, pair.maxSample);
    const SwsContextPtr swscale(sws_getContext(kWidth, kHeight, pair.source, kWidth, kHeight,
                                               pair.swscaleTarget, pair.swscaleFlags, nullptr,
                                               nullptr, nullptr));
    if (!frame || !swscale) {
        state.SkipWithError("cannot set up the frame or libswscale");
        return;
    }
    PlanarPictureView view;
    for (int plane = 0; plane < 3; ++plane) {
        view.planes[plane] = frame->data[plane];
        view.strides[plane] = frame->linesize[plane];
    }
    view.width = kWidth;
    view.height = kHeight;
    BitmapBytes ours(bitmapByteCountFor(pair.layout, kWidth, kHeight));
    FramePtr theirs = makeFrame();
    theirs->format = pair.swscaleTarget;
    theirs->width = kWidth;
    theirs->height = kHeight;
    av_frame_get_buffer(theirs.get(), 0);

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
        const auto end = Clock::now();
        const double oursIteration = std::chrono::duration<double>(middle - start).count();
        oursSec += oursIteration;
        theirsSec += std::chrono::duration<double>(end - middle).count();
        state.SetIterationTime(oursIteration);
    }
    state.counters["ours_ms"] = 1000.0 * oursSec / double(state.iterations());
    state.counters["swscale_ms"] = 1000.0 * theirsSec / double(state.iterations());
    state.counters["vs_swscale"] = oursSec / theirsSec;
}

void BM_Yuv420pToPacked422VsUyvy422(benchmark::State &state) {
    runConversionAgainstSwscale(state, {AV_PIX_FMT_YUV420P, 255, BitmapLayout::Packed422From420p8,
                                        AV_PIX_FMT_UYVY422, SWS_POINT});
}
void BM_Yuv420p10ToRgba16VsRgba64le(benchmark::State &state) {
    runConversionAgainstSwscale(
        state, {AV_PIX_FMT_YUV420P10LE, 1023, BitmapLayout::Rgba16From420p10, AV_PIX_FMT_RGBA64LE,
                SWS_POINT});
}
void BM_Yuv444p10ToArgb8VsArgb(benchmark::State &state) {
    // Full chroma: libswscale otherwise halves the chroma before converting.
    runConversionAgainstSwscale(state, {AV_PIX_FMT_YUV444P10LE, 1023, BitmapLayout::Argb8From444p10,
                                        AV_PIX_FMT_ARGB, SWS_POINT | SWS_FULL_CHR_H_INT});
}

BENCHMARK(BM_Yuv420pToPacked422VsUyvy422)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Yuv420p10ToRgba16VsRgba64le)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Yuv444p10ToArgb8VsArgb)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tolvane
