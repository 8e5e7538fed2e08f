// The video and audio packet lists and the packet thread that fills them.

#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

namespace {

constexpr int kMaxQueuedAudioPackets = 100;
constexpr int kMaxQueuedVideoPackets = 100;
// Below this many audio packets the video list may grow past its limit, so
// that sparse audio never starves.
constexpr int kMinAudioPacketsBeforeVideoLimit = 10;

PacketPtr takePacket(AVPacket *packet) {
    PacketPtr owned = makePacket();
    av_packet_move_ref(owned.get(), packet);
    return owned;
}

}  // namespace

void MyCAOpenGLLayer::addVideoPacket(AVPacket *packet) { packets.addVideo(takePacket(packet)); }

AVPacket *MyCAOpenGLLayer::getVideoPacket() { return packets.readVideo(); }

void MyCAOpenGLLayer::removeVideoPacket() { packets.removeReadVideo(); }

void MyCAOpenGLLayer::removeAllVideoPackets() {
    packets.removeAllVideo();
    gNextVideoFramePtsSec = 0.0;
    videoDecoderDrainState = VideoDecoderDrainState::Feeding;
}

void MyCAOpenGLLayer::addAudioPacket(AVPacket *packet) { packets.addAudio(takePacket(packet)); }

AVPacket *MyCAOpenGLLayer::getAudioPacket() { return packets.readAudio(); }

void MyCAOpenGLLayer::removeAudioPacket() { packets.removeReadAudio(); }

void MyCAOpenGLLayer::removeAllAudioPackets() { packets.removeAllAudio(); }

void MyCAOpenGLLayer::startPacketThread() {
    // The thread shares the file, which a read abandoned by the stop may
    // still use when it returns.
    packetThread.start(
        "tolvane-packet", *this,
        [formatContext = pFormatCtx](WorkerLink &link, const std::function<bool()> &isCancelled) {
            addPacketOnThreadOnlyOne(link, formatContext.get(), isCancelled);
        });
}

void MyCAOpenGLLayer::stopPacketThread() { packetThread.stop(workerStopBound); }

PacketPassAction MyCAOpenGLLayer::packetPassActionFor(double rate, int videoCount, int audioCount) {
    if (rate == 0.0) {
        return PacketPassAction::Sleep;
    }
    if (audioCount >= kMaxQueuedAudioPackets) {
        return PacketPassAction::Sleep;
    }
    if (videoCount >= kMaxQueuedVideoPackets && audioCount >= kMinAudioPacketsBeforeVideoLimit) {
        return PacketPassAction::Sleep;
    }
    return PacketPassAction::Read;
}

bool MyCAOpenGLLayer::isPacketReadDue() const {
    // Once a read has failed nothing more is read until a seek: a demuxer
    // that hit damage or the cut end of a partial download may not give a
    // packet again, and whatever was read before must still play out.
    return packetPassActionFor(rateValue.load(), packets.videoCount(), packets.audioCount()) ==
               PacketPassAction::Read &&
           pFormatCtx && !hasReadToTheEnd.load();
}

PacketPassAction MyCAOpenGLLayer::takeReadResult(int readResult, PacketPtr packet) {
    if (readResult < 0) {
        if (readResult != AVERROR(EAGAIN)) {
            hasReadToTheEnd = true;
            noteVideoPacketReadFailure();
        }
        return PacketPassAction::Sleep;
    }
    if (packet->stream_index == videoStreamIdx) {
        packets.addVideo(std::move(packet));
    } else if (packet->stream_index == audioStreamIdx) {
        packets.addAudio(std::move(packet));
    }
    return PacketPassAction::Read;
}

PacketPassAction MyCAOpenGLLayer::addPacketOnePass() {
    if (!isPacketReadDue()) {
        return PacketPassAction::Sleep;
    }
    PacketPtr packet = makePacket();
    const int readResult = av_read_frame(pFormatCtx.get(), packet.get());
    return takeReadResult(readResult, std::move(packet));
}

void MyCAOpenGLLayer::addPacketOnThreadOnlyOne(WorkerLink &link, AVFormatContext *formatContext,
                                               const std::function<bool()> &isCancelled) {
    // The engine is reached only through the link, and never during the
    // read, which may stall for longer than the engine waits for this thread.
    while (!isCancelled()) {
        bool isReadDue = false;
        if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                NamedLockGuard threadLock(engine.packetThreadMutex);
                isReadDue = engine.isPacketReadDue();
            })) {
            return;
        }
        if (!isReadDue) {
            sleepForIdleTurn();
            continue;
        }
        PacketPtr packet = makePacket();
        const int readResult = av_read_frame(formatContext, packet.get());
        PacketPassAction action = PacketPassAction::Sleep;
        if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                NamedLockGuard threadLock(engine.packetThreadMutex);
                action = engine.takeReadResult(readResult, std::move(packet));
            })) {
            return;
        }
        if (action == PacketPassAction::Sleep) {
            sleepForIdleTurn();
        }
    }
}

}  // namespace tolvane
