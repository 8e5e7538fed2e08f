#include "test_media.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <chrono>
#include <thread>

namespace tolvane::test {

QString mediaPath(const char *fileName) {
    return QStringLiteral(TOLVANE_TEST_MEDIA_DIR "/") + QString::fromUtf8(fileName);
}

bool waitUntil(const std::function<bool()> &condition, int timeoutMs) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool processEventsUntil(const std::function<bool()> &condition, int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(5);
    }
    return true;
}

void processEventsFor(int milliseconds) {
    processEventsUntil([] { return false; }, milliseconds);
}

}  // namespace tolvane::test
