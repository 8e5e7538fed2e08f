#include "base/worker_thread.h"

#include <gtest/gtest.h>

#include <atomic>

#include "support/test_media.h"

namespace tolvane {
namespace {

TEST(WorkerThread, StopGivesUpOnABodyThatIgnoresCancellation) {
    // The shared flag outlives the abandoned thread, which ends on its own.
    auto release = std::make_shared<std::atomic<bool>>(false);
    {
        WorkerThread thread("test-stuck", [release](const std::function<bool()> &) {
            while (!release->load()) {
                sleepForIdleTurn();
            }
        });
        thread.start();
        EXPECT_FALSE(thread.stop(std::chrono::milliseconds(30)));
        EXPECT_FALSE(thread.isFinished());
    }
    release->store(true);
}

TEST(WorkerThread, StopWithoutStartAndStartTwiceAreHarmless) {
    int runs = 0;
    WorkerThread thread("test-once", [&](const std::function<bool()> &) { ++runs; });
    EXPECT_TRUE(thread.stop());
    thread.start();
    thread.start();
    EXPECT_TRUE(thread.stop());
    EXPECT_EQ(runs, 1);
}

TEST(WorkerThread, ExceptionInBodyEndsTheThreadCleanly) {
    WorkerThread thread("test-throw",
                        [](const std::function<bool()> &) { throw std::runtime_error("boom"); });
    thread.start();
    EXPECT_TRUE(test::waitUntil([&] { return thread.isFinished(); }));
    EXPECT_TRUE(thread.stop());
}

}  // namespace
}  // namespace tolvane
