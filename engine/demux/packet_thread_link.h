#pragma once

#include <memory>
#include <mutex>

extern "C" {
#include <libavformat/avformat.h>
}

namespace tolvane {

class MyCAOpenGLLayer;

// What the packet thread may touch, shared between the thread and the
// engine: the open file, and the way back to the engine. A thread abandoned
// by the bounded stop (a read stalled on a network share) still owns the
// file when its read returns, and finds the way back cut.
//
// Thread-safety: any thread. withEngine() holds the link's lock while `use`
// runs, so cut() waits at most for one short hand-over, never for a read.
class PacketThreadLink {
public:
    PacketThreadLink(std::shared_ptr<AVFormatContext> formatContext, MyCAOpenGLLayer *engine)
        : formatContext_(std::move(formatContext)), engine_(engine) {}

    AVFormatContext *formatContext() const { return formatContext_.get(); }

    // Calls `use` with the engine; false, without calling, once cut.
    template <typename Use>
    bool withEngine(Use &&use) {
        std::lock_guard lock(mutex_);
        if (engine_ == nullptr) {
            return false;
        }
        use(*engine_);
        return true;
    }
    void cut() {
        std::lock_guard lock(mutex_);
        engine_ = nullptr;
    }

private:
    const std::shared_ptr<AVFormatContext> formatContext_;
    std::mutex mutex_;
    MyCAOpenGLLayer *engine_;  // guarded by mutex_
};

}  // namespace tolvane
