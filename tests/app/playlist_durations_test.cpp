#include "app/playlist_durations.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStringList>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "app_test_support.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

constexpr int kEventBoundMs = 60000;  // a bound against hangs, never a measure of speed

// A reader held at a gate until the test opens it, as a file on a slow or
// stuck mount holds the real one. It outlives the object it serves, as an
// abandoned worker may.
struct GatedReader {
    std::mutex mutex;
    std::condition_variable opened;
    bool isOpen = false;    // guarded by mutex
    int entered = 0;        // guarded by mutex: reads begun
    QStringList readPaths;  // guarded by mutex

    void open() {
        const std::lock_guard lock(mutex);
        isOpen = true;
        opened.notify_all();
    }
    QStringList paths() {
        const std::lock_guard lock(mutex);
        return readPaths;
    }
    void waitUntilEntered() {
        std::unique_lock lock(mutex);
        opened.wait(lock, [this] { return entered > 0; });
    }
    static PlaylistDurations::Reader readerOf(const std::shared_ptr<GatedReader> &gate) {
        return [gate](const QString &path) {
            std::unique_lock lock(gate->mutex);
            ++gate->entered;
            gate->opened.notify_all();
            gate->opened.wait(lock, [&] { return gate->isOpen; });
            gate->readPaths.append(path);
            return path == QStringLiteral("/broken.mkv") ? -100.0 : 60.0 * path.size();
        };
    }
};

TEST(PlaylistDurations, AskingNeverWaitsForTheFileAndEachIsReadOnce) {
    const auto gate = std::make_shared<GatedReader>();
    PlaylistDurations durations(GatedReader::readerOf(gate));
    int arrivals = 0;
    QObject::connect(&durations, &PlaylistDurations::durationsArrived, [&] { ++arrivals; });

    const QStringList paths = {"/a.mkv", "/bb.mkv", "/broken.mkv"};
    for (int round = 0; round < 2; ++round) {
        for (const QString &path : paths) {
            EXPECT_EQ(durations.durationSecOf(path), std::nullopt) << path.toStdString();
        }
    }
    gate->open();
    ASSERT_TRUE(test::processEventsUntil(
        [&] { return durations.durationSecOf("/broken.mkv").has_value(); }));
    EXPECT_EQ(durations.durationSecOf("/a.mkv"), 360.0);
    EXPECT_EQ(durations.durationSecOf("/bb.mkv"), 420.0);
    EXPECT_EQ(durations.durationSecOf("/broken.mkv"), -100.0);
    EXPECT_EQ(gate->paths(), paths) << "in the order asked, each once";
    EXPECT_GE(arrivals, 1);
    EXPECT_LE(arrivals, 3);
}

TEST(PlaylistDurations, AReaderStuckOnAFileIsLeftBehindAtDestruction) {
    const auto gate = std::make_shared<GatedReader>();
    {
        PlaylistDurations durations(GatedReader::readerOf(gate));
        EXPECT_EQ(durations.durationSecOf("/stuck.mkv"), std::nullopt);
        EXPECT_EQ(durations.durationSecOf("/never.mkv"), std::nullopt);
        gate->waitUntilEntered();
    }
    gate->open();
    ASSERT_TRUE(test::waitUntil([&] { return !gate->paths().isEmpty(); }, kEventBoundMs));
    QCoreApplication::processEvents();
    EXPECT_EQ(gate->paths(), QStringList({"/stuck.mkv"})) << "nothing read after its owner went";
}

}  // namespace
}  // namespace tolvane
