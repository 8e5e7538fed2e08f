#include "app/native/lazy_native_mode_player.h"

#include <gtest/gtest.h>

#include "support/test_media.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// The platform player is made by the first load, not before: until then
// the proxy answers as a player without media. The view gets the new
// player's sink before any picture can come, and the player's report
// comes through the proxy.
TEST(LazyNativeModePlayerTest, MakesThePlayerAtTheFirstLoadOnly) {
    LazyNativeModePlayer lazy;
    QVideoSink *sinkHandedOver = nullptr;
    int madeCount = 0;
    QObject::connect(&lazy, &LazyNativeModePlayer::playerMade, [&](QVideoSink *sink) {
        sinkHandedOver = sink;
        ++madeCount;
    });
    std::optional<NativeModePlayer::LoadResult> result;
    QObject::connect(&lazy, &NativeModePlayer::loadFinished,
                     [&](const NativeModePlayer::LoadResult &finished) { result = finished; });

    lazy.setVolume(0.0f);
    lazy.setRate(1.0);
    lazy.seekToTime(3.0);
    lazy.cancelLoading();
    lazy.unload();
    EXPECT_EQ(lazy.madePlayer(), nullptr);
    EXPECT_FALSE(lazy.hasMedia());
    EXPECT_EQ(lazy.rate(), 0.0);

    lazy.load(test::mediaPath("h264_aac.mp4"), 30s);
    ASSERT_NE(lazy.madePlayer(), nullptr);
    EXPECT_EQ(sinkHandedOver, lazy.madePlayer()->videoSink());
    ASSERT_TRUE(test::processEventsUntil([&] { return result.has_value(); }))
        << "the made player's report is passed on";
    EXPECT_EQ(result->outcome, NativeModePlayer::LoadOutcome::loaded);
    lazy.load(test::mediaPath("h264_aac.mp4"), 30s);
    EXPECT_EQ(madeCount, 1);
}

}  // namespace
}  // namespace tolvane
