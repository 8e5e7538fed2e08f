#pragma once

#include <atomic>
#include <cstdint>

#include "base/named_mutex.h"

namespace tolvane {

// The clock's two counts, in samples of the clock's rate: those the output
// has played, which are the playback position, and those decoded so far,
// which bound the audio queue. The seek and the first audio after it put
// both on a time at once.
//
// Thread-safety: any thread. Every write takes sampleCountMutex, so that
// the render callback's advance never interleaves with a rebase; reads are
// atomic loads without it.
class SampleClock {
public:
    SampleClock() = default;
    SampleClock(const SampleClock &) = delete;
    SampleClock &operator=(const SampleClock &) = delete;

    std::int64_t outputtedSampleCount() const { return gOutputtedSampleCount.load(); }
    std::int64_t readedSampleCount() const { return gReadedSampleCount.load(); }

    void rebaseOnSampleCount(std::int64_t sampleCount) {
        NamedLockGuard lock(sampleCountMutex);
        gOutputtedSampleCount = sampleCount;
        gReadedSampleCount = sampleCount;
    }
    // The render callback, as it plays samples (or runs over pictures).
    void addOutputtedSamples(std::int64_t samples) {
        NamedLockGuard lock(sampleCountMutex);
        gOutputtedSampleCount += samples;
    }
    // The sample thread, as it decodes.
    void addReadedSamples(std::int64_t samples) {
        NamedLockGuard lock(sampleCountMutex);
        gReadedSampleCount += samples;
    }

private:
    mutable NamedRecursiveMutex sampleCountMutex{"sampleCount"};
    std::atomic<std::int64_t> gOutputtedSampleCount{0};
    std::atomic<std::int64_t> gReadedSampleCount{0};
};

}  // namespace tolvane
