#include "app/playlist_durations.h"

#include <QList>
#include <QMetaObject>
#include <QSet>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "base/log.h"

namespace tolvane {

struct PlaylistDurations::Shared {
    explicit Shared(Reader reader) : reader(std::move(reader)) {}

    const Reader reader;
    std::mutex mutex;
    std::condition_variable changed;
    // --- The following fields are guarded by mutex.
    PlaylistDurations *owner = nullptr;  // null once the owner is going
    QList<QString> waiting;
    QSet<QString> requested;  // waiting, being read, or arrived and not yet taken
    QList<std::pair<QString, double>> arrived;
    bool isWorkerRunning = false;
};

PlaylistDurations::PlaylistDurations(Reader reader, QObject *parent)
    : QObject(parent), shared(std::make_shared<Shared>(std::move(reader))) {
    shared->owner = this;
}

PlaylistDurations::~PlaylistDurations() {
    std::unique_lock lock(shared->mutex);
    shared->owner = nullptr;
    shared->waiting.clear();
    shared->changed.notify_all();
    if (!shared->changed.wait_for(lock, kStopBound,
                                  [state = shared.get()] { return !state->isWorkerRunning; })) {
        logWarning(QStringLiteral("a playlist duration was still being read and was abandoned"));
    }
}

std::optional<double> PlaylistDurations::durationSecOf(const QString &path) {
    if (const auto known = durationSecByPath.constFind(path); known != durationSecByPath.cend()) {
        return *known;
    }
    const std::lock_guard lock(shared->mutex);
    if (shared->requested.contains(path)) {
        return std::nullopt;
    }
    shared->requested.insert(path);
    shared->waiting.append(path);
    if (!shared->isWorkerRunning) {
        shared->isWorkerRunning = true;
        // Detached: it holds a share of the state and nothing else, so that
        // one abandoned at destruction can finish after this object is gone.
        std::thread(&PlaylistDurations::readDurationsOnThreadOnlyOne, shared).detach();
    }
    return std::nullopt;
}

void PlaylistDurations::readDurationsOnThreadOnlyOne(std::shared_ptr<Shared> state) {
    std::unique_lock lock(state->mutex);
    while (state->owner != nullptr && !state->waiting.isEmpty()) {
        const QString next = state->waiting.takeFirst();
        lock.unlock();
        double durationSec = -1.0;
        try {
            durationSec = state->reader(next);
        } catch (const std::exception &error) {
            logException("rdotoo", error.what());
        }
        lock.lock();
        if (state->owner == nullptr) {
            break;
        }
        // One delivery for everything that arrives before the main thread
        // takes it; posted under the lock, so never after the owner went.
        const bool isFirstArrival = state->arrived.isEmpty();
        state->arrived.append({next, durationSec});
        if (isFirstArrival) {
            QMetaObject::invokeMethod(state->owner, &PlaylistDurations::takeArrivedDurations,
                                      Qt::QueuedConnection);
        }
    }
    state->isWorkerRunning = false;
    state->changed.notify_all();
}

void PlaylistDurations::takeArrivedDurations() {
    QList<std::pair<QString, double>> arrived;
    {
        const std::lock_guard lock(shared->mutex);
        arrived.swap(shared->arrived);
        for (const auto &[path, durationSec] : arrived) {
            shared->requested.remove(path);
        }
    }
    for (const auto &[path, durationSec] : arrived) {
        durationSecByPath.insert(path, durationSec);
    }
    if (!arrived.isEmpty()) {
        Q_EMIT durationsArrived();
    }
}

}  // namespace tolvane
