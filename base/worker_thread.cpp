#include "worker_thread.h"

#include <pthread.h>

#include "log.h"

namespace tolvane {

namespace {
constexpr auto kIdleSleep = std::chrono::milliseconds(10);
}

void sleepForIdleTurn() { std::this_thread::sleep_for(kIdleSleep); }

WorkerThread::WorkerThread(std::string name, Body body)
    : name_(std::move(name)), body_(std::move(body)) {}

WorkerThread::~WorkerThread() {
    if (thread_.joinable()) {
        stop();
    }
}

void WorkerThread::start() {
    if (thread_.joinable()) {
        return;
    }
    thread_ = std::thread([state = state_, body = body_, name = name_] {
        pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
        try {
            body([&state] { return state->cancelled.load(std::memory_order_acquire); });
        } catch (const std::exception &e) {
            logException(name, e.what());
        } catch (...) {
            logException(name, "unknown");
        }
        state->finished.store(true, std::memory_order_release);
    });
}

void WorkerThread::cancel() { state_->cancelled.store(true, std::memory_order_release); }

bool WorkerThread::isCancelled() const { return state_->cancelled.load(std::memory_order_acquire); }

bool WorkerThread::isFinished() const { return state_->finished.load(std::memory_order_acquire); }

bool WorkerThread::stop(std::chrono::milliseconds timeout) {
    if (!thread_.joinable()) {
        return true;
    }
    cancel();
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!isFinished() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(kStopPollInterval);
    }
    if (isFinished()) {
        thread_.join();
        return true;
    }
    logWarning(QStringLiteral("thread '%1' did not stop within %2 ms; abandoning it")
                   .arg(QString::fromStdString(name_))
                   .arg(timeout.count()));
    thread_.detach();
    return false;
}

}  // namespace tolvane
