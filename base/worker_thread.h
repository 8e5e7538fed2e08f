#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace tolvane {

// One worker thread with cooperative cancellation. The body polls
// isCancelled() at the top of each pass and returns when asked to.
//
// stop() asks for cancellation and waits at most a bounded time, polling
// every 10 ms; a thread that has not finished by then is abandoned (detached)
// rather than blocking the caller. The cancel and finished flags live in a
// block shared with the thread, so an abandoned thread never touches freed
// memory of this object.
//
// Thread-safety: start/stop/isFinished from the owning thread; isCancelled from
// the worker (and anyone else).
class WorkerThread {
public:
    static constexpr std::chrono::milliseconds kStopPollInterval{10};
    static constexpr std::chrono::seconds kStopTimeout{5};

    // The body receives a cancellation probe it may call at any time.
    using Body = std::function<void(const std::function<bool()> &isCancelled)>;

    WorkerThread(std::string name, Body body);
    ~WorkerThread();
    WorkerThread(const WorkerThread &) = delete;
    WorkerThread &operator=(const WorkerThread &) = delete;

    void start();
    void cancel();
    bool isCancelled() const;
    bool isFinished() const;
    // Cancels and waits up to `timeout`; returns whether the thread finished.
    bool stop(std::chrono::milliseconds timeout = kStopTimeout);

    const std::string &name() const { return name_; }

private:
    struct SharedState {
        std::atomic<bool> cancelled{false};
        std::atomic<bool> finished{false};
    };

    const std::string name_;
    Body body_;
    std::shared_ptr<SharedState> state_ = std::make_shared<SharedState>();
    std::thread thread_;
};

// Sleep used by every idle turn of the engine's workers.
void sleepForIdleTurn();

}  // namespace tolvane
