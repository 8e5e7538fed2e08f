#include "engine/video/video_decoding_rules.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "engine/clock/stream_time.h"
#include "engine/demux/media_end.h"

namespace tolvane {

namespace {

// Two frame threads roughly double the decoding rate and add one picture of
// delay. More would add more: the paused seek preview gives up after four
// packets without a picture, and a B-frame stream already holds two back.
constexpr int kMaxVideoDecoderThreads = 2;

double ratioOf(AVRational rational) {
    return rational.den != 0 ? double(rational.num) / double(rational.den) : 0.0;
}

}  // namespace

double videoFrameRateFor(AVRational averageFrameRate, AVRational realBaseFrameRate) {
    const double average = ratioOf(averageFrameRate);
    if (average > 0.0) {
        return average;
    }
    const double realBase = ratioOf(realBaseFrameRate);
    return realBase > 0.0 ? realBase : 0.0;
}

int wantedBitmapQueueLength(double fileDurationSec, double startTimeSec, double currentTimeSec,
                            double framesPerSec) {
    if (!(framesPerSec > 0.0) || !std::isfinite(framesPerSec)) {
        return 0;
    }
    if (!isKnownDurationSec(fileDurationSec)) {
        return kMaxQueuedBitmaps;
    }
    const double framesToEnd = std::trunc((fileDurationSec + startTimeSec) * framesPerSec);
    const double framesPlayed = std::trunc(currentTimeSec * framesPerSec);
    const double wanted = framesToEnd - framesPlayed;
    if (!std::isfinite(wanted)) {
        return 0;
    }
    return int(std::clamp(wanted, 0.0, double(kMaxQueuedBitmaps)));
}

int bitmapQueueLimitForPictureBytes(std::size_t bytesPerPicture) {
    if (bytesPerPicture == 0) {
        return kMaxQueuedBitmaps;
    }
    const std::size_t fitting = kMaxQueuedBitmapBytes / bytesPerPicture;
    return int(std::clamp(fitting, std::size_t(kMinQueuedBitmaps), std::size_t(kMaxQueuedBitmaps)));
}

PixelPassAction pixelPassActionFor(double rate, int wantedQueueLength, int bitmapCount,
                                   int videoPacketCount, int audioPacketCount,
                                   bool decoderHoldsPictures) {
    if (rate == 0.0 || wantedQueueLength <= 0 || bitmapCount >= wantedQueueLength) {
        return PixelPassAction::Sleep;
    }
    if (bitmapCount == 0 && videoPacketCount == 0 && audioPacketCount == 0 &&
        !decoderHoldsPictures) {
        return PixelPassAction::Sleep;
    }
    return PixelPassAction::Decode;
}

LateVideoPacketJudgement judgeLateVideoPacket(std::optional<double> packetTimeSec, bool isKeyFrame,
                                              double currentTimeSec, int queuedVideoPackets,
                                              double seekingMovieTimeSec) {
    LateVideoPacketJudgement judgement{false, seekingMovieTimeSec};
    if (!packetTimeSec) {
        return judgement;
    }
    double latenessSec = currentTimeSec - *packetTimeSec;
    if (latenessSec <= kLateVideoPacketSec ||
        queuedVideoPackets < kMinQueuedVideoPacketsToDropLate) {
        return judgement;
    }
    // Just after a seek the clock may still trail the seek target; the packet
    // is judged against the target instead, once.
    if (seekingMovieTimeSec != 0.0) {
        latenessSec = seekingMovieTimeSec - *packetTimeSec;
        judgement.seekingMovieTimeSec = 0.0;
    }
    judgement.drop = latenessSec > kLateVideoPacketSec && !isKeyFrame;
    return judgement;
}

PictureTime pictureTimeFor(std::int64_t frameBestEffortTimestamp, std::int64_t packetPts,
                           std::int64_t packetDts, AVRational timeBase,
                           double nextVideoFramePtsSec) {
    const double unitSec = secondsPerStreamUnit(timeBase);
    if (frameBestEffortTimestamp != AV_NOPTS_VALUE) {
        const double ptsSec = double(frameBestEffortTimestamp) * unitSec;
        return {ptsSec, ptsSec + unitSec};
    }
    const double packetPtsSec =
        packetPts == AV_NOPTS_VALUE ? 0.0 : double(std::uint64_t(packetPts)) * unitSec;
    if (packetPtsSec != 0.0) {
        return {packetPtsSec, packetPtsSec + unitSec};
    }
    if (packetDts == AV_NOPTS_VALUE) {
        return {nextVideoFramePtsSec, nextVideoFramePtsSec + unitSec};
    }
    return {double(packetDts) * unitSec, nextVideoFramePtsSec + unitSec};
}

int videoDecoderThreadCount() {
#if defined(__SANITIZE_THREAD__)
    // FFmpeg hands pictures between its frame threads through atomics that
    // ThreadSanitizer cannot see; every byte of every picture would then be
    // reported, slowing the pixel thread past its stop bound.
    return 1;
#endif
    const int cores = int(std::thread::hardware_concurrency());
    return std::clamp(cores, 1, kMaxVideoDecoderThreads);
}

void configureVideoDecoderThreads(AVCodecContext &context) {
    context.thread_count = videoDecoderThreadCount();
    // Frame threads where the codec has them, slice threads otherwise.
    context.thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
}

}  // namespace tolvane
