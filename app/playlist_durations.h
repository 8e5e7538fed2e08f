#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

// The running times of playlist files, for the played fraction of their
// rows. Asking never blocks: a file not read yet answers nothing and is read
// on a worker thread of this object's own, one file at a time in the order
// asked; durationsArrived() follows once answers are in (one signal for all
// that arrived during one turn of the event loop). Answers are kept per path
// for the life of the object.
//
// A file on a stuck mount can hold the worker, never the caller: at
// destruction the worker is waited for at most kStopBound and then left to
// finish alone, reporting to nobody.
// Thread-safety: main thread only; the reader runs on the worker.
class PlaylistDurations final : public QObject {
    Q_OBJECT
public:
    // Seconds, or a negative value when the file has no known duration.
    using Reader = std::function<double(const QString &path)>;
    static constexpr std::chrono::milliseconds kStopBound{2000};

    explicit PlaylistDurations(Reader reader, QObject *parent = nullptr);
    ~PlaylistDurations() override;

    std::optional<double> durationSecOf(const QString &path);

Q_SIGNALS:
    void durationsArrived();

private:
    struct Shared;
    static void readDurationsOnThreadOnlyOne(std::shared_ptr<Shared> state);
    void takeArrivedDurations();

    std::shared_ptr<Shared> shared;
    QHash<QString, double> durationSecByPath;
};

}  // namespace tolvane
