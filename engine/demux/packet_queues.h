#pragma once

#include "base/named_mutex.h"
#include "engine/cursor_queue.h"
#include "engine/ffmpeg_handles.h"

namespace tolvane {

// The video and audio packet lists between the packet thread and the two
// decoders. A packet read is lent: it stays owned by its list until the
// matching remove, which frees it with every packet read before it.
//
// Thread-safety: any thread. Each list has its lock (videoPacketQueueMutex,
// audioPacketQueueMutex), taken by every operation on it and never both at
// once; the counts are atomic reads for the pacing made without them.
class PacketQueues {
public:
    PacketQueues() = default;
    PacketQueues(const PacketQueues &) = delete;
    PacketQueues &operator=(const PacketQueues &) = delete;

    void addVideo(PacketPtr packet) { videoPackets.add(std::move(packet)); }
    AVPacket *readVideo() { return borrowed(videoPackets.read()); }
    void removeReadVideo() { videoPackets.removeThroughCursor(); }
    void removeAllVideo() { videoPackets.removeAll(); }
    int videoCount() const { return videoPackets.count(); }

    void addAudio(PacketPtr packet) { audioPackets.add(std::move(packet)); }
    AVPacket *readAudio() { return borrowed(audioPackets.read()); }
    void removeReadAudio() { audioPackets.removeThroughCursor(); }
    void removeAllAudio() { audioPackets.removeAll(); }
    int audioCount() const { return audioPackets.count(); }

private:
    static AVPacket *borrowed(PacketPtr *packet) {
        return packet != nullptr ? packet->get() : nullptr;
    }

    mutable NamedRecursiveMutex videoPacketQueueMutex{"videoPacketQueue"};
    mutable NamedRecursiveMutex audioPacketQueueMutex{"audioPacketQueue"};
    CursorQueue<PacketPtr> videoPackets{videoPacketQueueMutex};
    CursorQueue<PacketPtr> audioPackets{audioPacketQueueMutex};
};

}  // namespace tolvane
