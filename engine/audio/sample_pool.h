#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/audio/sample_conversion.h"
#include "engine/cursor_queue.h"

namespace tolvane {

// One decoded frame of one channel (planar) or of all channels interleaved
// (packed, list 0 only), with the time of the packet it came from.
struct SampleNode {
    std::vector<std::uint8_t> data;
    double ptsSec = 0.0;
};

// The per-channel sample lists. All of them share one lock, so that a
// producer can append one frame to every channel as a single step.
class SampleLists {
public:
    explicit SampleLists(NamedRecursiveMutex &mutex);
    CursorQueue<SampleNode> &channel(int index) { return lists_[std::size_t(index)]; }
    const CursorQueue<SampleNode> &channel(int index) const { return lists_[std::size_t(index)]; }
    NamedRecursiveMutex &mutex() const { return lists_[0].mutex(); }

private:
    std::array<CursorQueue<SampleNode>, kMaxSampleChannels> lists_;
};

// What the pool draws from: the sample lists, or a test's stand-in.
class SampleNodeSource {
public:
    virtual ~SampleNodeSource() = default;
    virtual void resetReadCursor(int channel) = 0;
    // The next unread node's bytes, or null when the channel has none.
    virtual const std::vector<std::uint8_t> *readNode(int channel) = 0;
    // Frees the nodes read so far.
    virtual void removeReadNodes(int channel) = 0;
};

// The staging buffers between the sample lists and the output: one buffer
// (packed) or one per channel (planar) of a fixed size, from which each
// request takes the bytes it needs and which is refilled from the lists when
// it runs short. Allocated once per output set-up; gather() allocates nothing.
//
// Thread-safety: none of its own; the engine guards it with samplePoolMutex.
class SamplePool {
public:
    static constexpr int kPoolBytesPerBuffer = 384000;
    // The largest request the pool serves, so that a refill always fits.
    // Nodes may be of any size.
    static constexpr int kMaxGatherBytes = kPoolBytesPerBuffer / 2;

    void allocate(int bufferCount);
    void release();
    bool isAllocated() const { return bufferCount_ > 0; }
    int bufferCount() const { return bufferCount_; }
    int bytesSamplePool() const { return bytesSamplePool_; }
    int offsetSamplePool() const { return offsetSamplePool_; }
    const std::uint8_t *buffer(int index) const { return buffers_[std::size_t(index)].data(); }

    // Copies `need` bytes per buffer into `scratch` (one pointer per pool
    // buffer), taking nodes from `source` when the pool runs short. Returns
    // false when the lists ran dry first. On that underrun, bytes left over
    // from earlier requests are kept and the nodes moved in during this
    // attempt are dropped; when nothing was left over, the moved nodes stay in
    // the pool for the next request. The asymmetry is deliberate.
    bool gather(int need, std::span<std::uint8_t *const> scratch, SampleNodeSource &source);

private:
    // Moves whole nodes into the pool until it holds `target` bytes; false
    // when a list has no node left.
    bool refillFromNodes(int target, SampleNodeSource &source);

    std::array<std::vector<std::uint8_t>, kMaxSampleChannels> buffers_;
    int bufferCount_ = 0;
    int bytesSamplePool_ = 0;
    int offsetSamplePool_ = 0;
    // The bytes of the first unremoved node already in the pool.
    int headNodeOffset_ = 0;
};

}  // namespace tolvane
