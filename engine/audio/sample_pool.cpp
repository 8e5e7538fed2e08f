// The sample lists and the staging pool that the output callback drains them through.

#include "engine/audio/sample_pool.h"

#include <algorithm>
#include <cstring>

namespace tolvane {

SampleLists::SampleLists(NamedRecursiveMutex &mutex)
    : lists_{{CursorQueue<SampleNode>(mutex), CursorQueue<SampleNode>(mutex),
              CursorQueue<SampleNode>(mutex), CursorQueue<SampleNode>(mutex),
              CursorQueue<SampleNode>(mutex), CursorQueue<SampleNode>(mutex),
              CursorQueue<SampleNode>(mutex), CursorQueue<SampleNode>(mutex)}} {}

void SamplePool::allocate(int bufferCount) {
    bufferCount_ = std::clamp(bufferCount, 1, kMaxSampleChannels);
    for (int k = 0; k < kMaxSampleChannels; ++k) {
        std::vector<std::uint8_t> &buffer = buffers_[std::size_t(k)];
        if (k < bufferCount_) {
            buffer.assign(std::size_t(kPoolBytesPerBuffer), 0);
        } else {
            buffer.clear();
            buffer.shrink_to_fit();
        }
    }
    bytesSamplePool_ = 0;
    offsetSamplePool_ = 0;
    headNodeOffset_ = 0;
}

void SamplePool::release() {
    for (std::vector<std::uint8_t> &buffer : buffers_) {
        buffer.clear();
        buffer.shrink_to_fit();
    }
    bufferCount_ = 0;
    bytesSamplePool_ = 0;
    offsetSamplePool_ = 0;
    headNodeOffset_ = 0;
}

bool SamplePool::refillFromNodes(int target, SampleNodeSource &source) {
    const std::vector<std::uint8_t> *nodes[kMaxSampleChannels] = {};
    while (bytesSamplePool_ < target) {
        // A round takes one node of every channel or none, so that a channel
        // whose frame is not queued yet never falls out of step with the others.
        for (int k = 0; k < bufferCount_; ++k) {
            nodes[k] = source.readNode(k);
            if (nodes[k] == nullptr) {
                return false;
            }
        }
        // A node larger than the room left (seconds of PCM in one frame) is
        // taken in parts: it stays in the list, read on from headNodeOffset_
        // by the next refill, which resets the read cursor first. The pool is
        // then full, so this refill is over.
        const int bytesLeftInNode = int(nodes[0]->size()) - headNodeOffset_;
        const int nodeBytes = std::min(bytesLeftInNode, kPoolBytesPerBuffer - bytesSamplePool_);
        for (int k = 0; k < bufferCount_; ++k) {
            const int bytes = std::clamp(int(nodes[k]->size()) - headNodeOffset_, 0, nodeBytes);
            std::memcpy(buffers_[std::size_t(k)].data() + bytesSamplePool_,
                        nodes[k]->data() + headNodeOffset_, std::size_t(bytes));
        }
        bytesSamplePool_ += nodeBytes;
        if (nodeBytes < bytesLeftInNode) {
            headNodeOffset_ += nodeBytes;
            return true;
        }
        headNodeOffset_ = 0;
        for (int k = 0; k < bufferCount_; ++k) {
            source.removeReadNodes(k);
        }
    }
    return true;
}

bool SamplePool::gather(int need, std::span<std::uint8_t *const> scratch,
                        SampleNodeSource &source) {
    if (!isAllocated() || need > kMaxGatherBytes || int(scratch.size()) < bufferCount_) {
        return false;
    }
    for (int k = 0; k < bufferCount_; ++k) {
        source.resetReadCursor(k);
        std::memset(scratch[std::size_t(k)], 0, std::size_t(need));
    }
    const int avail = bytesSamplePool_ - offsetSamplePool_;
    if (need <= avail) {
        for (int k = 0; k < bufferCount_; ++k) {
            std::memcpy(scratch[std::size_t(k)],
                        buffers_[std::size_t(k)].data() + offsetSamplePool_, std::size_t(need));
        }
        offsetSamplePool_ += need;
        return true;
    }

    for (int k = 0; k < bufferCount_; ++k) {
        if (avail > 0) {
            std::memcpy(scratch[std::size_t(k)],
                        buffers_[std::size_t(k)].data() + offsetSamplePool_, std::size_t(avail));
        }
        std::memset(buffers_[std::size_t(k)].data(), 0, std::size_t(bytesSamplePool_));
    }
    bytesSamplePool_ = 0;
    offsetSamplePool_ = 0;

    if (refillFromNodes(need - avail, source)) {
        for (int k = 0; k < bufferCount_; ++k) {
            std::memcpy(scratch[std::size_t(k)] + avail, buffers_[std::size_t(k)].data(),
                        std::size_t(need - avail));
        }
        offsetSamplePool_ = need - avail;
        return true;
    }

    if (avail > 0) {
        for (int k = 0; k < bufferCount_; ++k) {
            std::memcpy(buffers_[std::size_t(k)].data(), scratch[std::size_t(k)],
                        std::size_t(avail));
        }
        bytesSamplePool_ = avail;
    }
    return false;
}

}  // namespace tolvane
