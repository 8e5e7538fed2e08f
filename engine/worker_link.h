#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "base/worker_thread.h"

namespace tolvane {

class MyCAOpenGLLayer;

// The way from a worker thread back to the engine, cut when the engine stops
// the thread. A thread abandoned by the bounded stop (a read stalled on a
// network share, a decode stalled in a driver) owns what it still works on,
// and finds the way back cut when it returns.
//
// Thread-safety: any thread. withEngine() holds the link's lock while `use`
// runs, so cut() waits at most for one short hand-over: a worker calls it
// around its hand-overs, never around a read or a decode.
class WorkerLink {
public:
    explicit WorkerLink(MyCAOpenGLLayer &engine) : engine_(&engine) {}
    WorkerLink(const WorkerLink &) = delete;
    WorkerLink &operator=(const WorkerLink &) = delete;

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
    std::mutex mutex_;
    MyCAOpenGLLayer *engine_;  // guarded by mutex_
};

// One of the engine's worker threads with its link: the body reaches the
// engine only through the link it is handed, and stop() cuts the link after
// the bounded stop, whether the thread finished or was abandoned.
//
// Thread-safety: the engine's main thread only.
class LinkedWorkerThread {
public:
    using Body = std::function<void(WorkerLink &link, const std::function<bool()> &isCancelled)>;

    LinkedWorkerThread() = default;
    ~LinkedWorkerThread() { stop(); }
    LinkedWorkerThread(const LinkedWorkerThread &) = delete;
    LinkedWorkerThread &operator=(const LinkedWorkerThread &) = delete;

    // Does nothing while a thread runs.
    void start(std::string name, MyCAOpenGLLayer &engine, Body body) {
        if (thread_) {
            return;
        }
        link_ = std::make_shared<WorkerLink>(engine);
        thread_ = std::make_unique<WorkerThread>(
            std::move(name),
            [link = link_, body = std::move(body)](const std::function<bool()> &isCancelled) {
                body(*link, isCancelled);
            });
        thread_->start();
    }
    // Waits at most `bound`; false when the thread was abandoned.
    bool stop(std::chrono::milliseconds bound = WorkerThread::kStopTimeout) {
        if (!thread_) {
            return true;
        }
        const bool stopped = thread_->stop(bound);
        link_->cut();
        link_.reset();
        thread_.reset();
        return stopped;
    }
    bool isRunning() const { return thread_ != nullptr; }

private:
    std::shared_ptr<WorkerLink> link_;
    std::unique_ptr<WorkerThread> thread_;
};

}  // namespace tolvane
