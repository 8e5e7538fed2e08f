// A packet thread stalled in a read past the bounded stop: the reset gives up
// on it within the bound, and when the read returns the thread finds its
// file still open and the engine out of its reach.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <thread>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

TEST(AbandonedPacketThreadTest, ResetWithinTheBoundWhileAReadStallsOnAPipe) {
    QFile source(test::mediaPath("h264_aac.mkv"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray bytes = source.readAll();
    QTemporaryDir folder;
    const QByteArray pipePath = QFile::encodeName(folder.filePath(QStringLiteral("stalled.mkv")));
    ASSERT_EQ(mkfifo(pipePath.constData(), 0600), 0);

    // A share that stops answering: the first part comes, then nothing
    // until the test lets the rest through.
    const qsizetype firstPart = bytes.size() * 3 / 4;
    std::atomic<bool> isFirstPartWritten{false};
    std::atomic<bool> mayWriteTheRest{false};
    std::thread feeder([&] {
        const int writer = ::open(pipePath.constData(), O_WRONLY);
        ::write(writer, bytes.constData(), std::size_t(firstPart));
        isFirstPartWritten = true;
        while (!mayWriteTheRest) {
            std::this_thread::sleep_for(10ms);
        }
        ::write(writer, bytes.constData() + firstPart, std::size_t(bytes.size() - firstPart));
        ::close(writer);
    });
    MyCAOpenGLLayer engine;
    engine.setWorkerStopBoundForTesting(100ms);
    ASSERT_EQ(engine.openMovieFile(QFile::decodeName(pipePath)), QLatin1String(kOpenSucceeded));
    engine.setRate(1.0);
    engine.startPacketThread();
    ASSERT_TRUE(test::waitUntil([&] { return isFirstPartWritten.load(); }));
    std::this_thread::sleep_for(300ms);  // into the read that stalls

    engine.cleanBeforeOpenFile();
    EXPECT_FALSE(engine.hasPacketThread());
    EXPECT_EQ(engine.videoPacketCount(), 0);

    // The stalled read returns now; under the sanitizers a use of the closed
    // file or of the engine's lists would be reported here.
    mayWriteTheRest = true;
    feeder.join();
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(engine.videoPacketCount(), 0);
    EXPECT_EQ(engine.audioPacketCount(), 0);

    // The engine itself is unharmed by the thread it left behind.
    ASSERT_EQ(engine.openMovieFile(test::mediaPath("long_h264_aac.mkv")),
              QLatin1String(kOpenSucceeded));
}

}  // namespace
}  // namespace tolvane
