#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace tolvane {

// SIGTERM, SIGINT and SIGHUP turned into terminationRequested on the main
// thread, so that a killed or logged-out player quits in order (position,
// records and window frames stored). The handler only writes one byte to a
// self-pipe; a QSocketNotifier reads it on the main thread. One object at a
// time; the default handlers come back when it is destroyed.
// Thread-safety: construct and destroy on the main thread.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    void readSignalByte();

    std::unique_ptr<QSocketNotifier> notifier;
};

}  // namespace tolvane
