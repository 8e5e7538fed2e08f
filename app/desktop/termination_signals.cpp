#include "app/desktop/termination_signals.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <csignal>

#include "base/log.h"

namespace tolvane {
namespace {

constexpr int kHandledSignals[] = {SIGTERM, SIGINT, SIGHUP};

// The self-pipe: [0] read on the main thread, [1] written by the handler.
int signalSocket[2] = {-1, -1};
std::atomic<bool> isInstalled{false};

extern "C" void writeSignalByte(int) {
    const int savedErrno = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSocket[1], &byte, 1);
    errno = savedErrno;
}

}  // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent) {
    if (isInstalled.exchange(true)) {
        logWarning(QStringLiteral("termination signals are already handled"));
        return;
    }
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalSocket) != 0) {
        logWarning(QStringLiteral("no self-pipe for the termination signals"));
        isInstalled = false;
        return;
    }
    ::fcntl(signalSocket[1], F_SETFL, ::fcntl(signalSocket[1], F_GETFL) | O_NONBLOCK);
    notifier = std::make_unique<QSocketNotifier>(signalSocket[0], QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::readSignalByte);
    struct sigaction action = {};
    action.sa_handler = writeSignalByte;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : kHandledSignals) {
        ::sigaction(signalNumber, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (!notifier) {
        return;
    }
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    for (const int signalNumber : kHandledSignals) {
        ::sigaction(signalNumber, &action, nullptr);
    }
    notifier.reset();
    ::close(signalSocket[0]);
    ::close(signalSocket[1]);
    signalSocket[0] = signalSocket[1] = -1;
    isInstalled = false;
}

void TerminationSignals::readSignalByte() {
    char bytes[16];
    [[maybe_unused]] const ssize_t read = ::read(signalSocket[0], bytes, sizeof bytes);
    Q_EMIT terminationRequested();
}

}  // namespace tolvane
