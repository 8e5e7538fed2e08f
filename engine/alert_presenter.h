#pragma once

#include <QString>
#include <mutex>
#include <vector>

namespace tolvane {

// Where the engine sends a modal alert (message and informative text). The
// application shows a dialog and returns when it is dismissed; tests and the
// probe record the alerts instead.
// Thread-safety: called on the thread that opens the file (the main thread).
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    virtual void showAlert(const QString &message, const QString &informativeText) = 0;
};

struct RecordedAlert {
    QString message;
    QString informativeText;
};

class RecordingAlertPresenter final : public AlertPresenter {
public:
    void showAlert(const QString &message, const QString &informativeText) override {
        std::lock_guard lock(mutex_);
        alerts_.push_back({message, informativeText});
    }
    std::vector<RecordedAlert> alerts() const {
        std::lock_guard lock(mutex_);
        return alerts_;
    }
    void clear() {
        std::lock_guard lock(mutex_);
        alerts_.clear();
    }

private:
    mutable std::mutex mutex_;
    std::vector<RecordedAlert> alerts_;  // guarded by mutex_
};

}  // namespace tolvane
