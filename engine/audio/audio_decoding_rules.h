#pragma once

#include <cstdint>

namespace tolvane {

// The inputs of the sample thread's queue limit.
struct SampleQueueLimitInputs {
    double fileDurationSec = 0.0;
    double startTimeSec = 0.0;
    int sampleRate = 0;
    std::int64_t readedSampleCount = 0;
    int frameSize = 0;  // samples per channel in one decoded frame
    int channels = 0;
    int audioBytesPerChannel = 2;
};

// How many decoded frames channel 0's list may hold before the thread waits:
// 50 when one frame across all channels is larger than 383999 bytes, else
// 80, and never more than the frames still to come. Below 1 the end of the
// audio has been reached.
int sampleQueueLimitFor(const SampleQueueLimitInputs &inputs);

// The frame size assumed for a codec that reports none, until the first
// decoded frame tells the true one.
inline constexpr int defaultAudioFrameSizeFor(bool isPlanar) { return isPlanar ? 512 : 1024; }

// The decode-error count after one more failure: it climbs to 3, then jumps
// to 4 and stays there.
inline constexpr int nextAudioDecodingErrorCount(int count) { return count < 3 ? count + 1 : 4; }

}  // namespace tolvane
