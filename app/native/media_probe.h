#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>

namespace tolvane {

// What GStreamer's own discovery finds in a file: its streams as the
// platform sees them, and which of its audio streams no installed decoder
// takes. Qt Multimedia lists only the tracks it could decode, so this is
// where Native mode learns about the others.
struct MediaProbe {
    enum class Verdict {
        discovered,  // its streams are known (some may lack a decoder)
        unreadable,  // the file cannot be opened or read
        unplayable,  // read, but holds nothing GStreamer can play
        unknown,     // the probe failed or ran out of time: no opinion
    };
    Verdict verdict = Verdict::unknown;
    QString errorDescription;
    int audioStreamCount = 0;
    QStringList undecodableAudioCodecs;  // codec descriptions, e.g. "Dolby TrueHD"
    bool isProtected = false;            // an encrypted stream (CENC, WebM encryption)
    QSize naturalSize;                   // the picture with its pixel aspect applied
};

// Blocks for at most `timeout` (and the time to open the file).
// Thread-safety: any thread; each call has its own discoverer.
MediaProbe probeMediaFile(const QString &path, std::chrono::milliseconds timeout);

// Runs probeMediaFile() on a thread of its own. The stop waits a bounded
// time and then abandons the thread, which finishes alone and reports to
// nobody: a file on a stuck mount can hold it, never the caller.
// Thread-safety: start and stop on one thread; `done` runs on the worker.
class MediaProbeThread {
public:
    using Done = std::function<void(const MediaProbe &probe)>;
    static constexpr std::chrono::milliseconds kStopBound{5000};

    MediaProbeThread() = default;
    ~MediaProbeThread();
    MediaProbeThread(const MediaProbeThread &) = delete;
    MediaProbeThread &operator=(const MediaProbeThread &) = delete;

    // Stops a probe still running first (waiting at most kStopBound).
    void start(const QString &path, std::chrono::milliseconds timeout, Done done);
    // Makes sure `done` will not run any more; true when the thread ended
    // within `bound`, false when it was abandoned.
    bool stopAndWait(std::chrono::milliseconds bound);

private:
    struct Shared;
    std::shared_ptr<Shared> shared;
};

}  // namespace tolvane
