#include <gtest/gtest.h>

#include <set>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

TEST(PacketPacing, FollowsTheTable) {
    struct Case {
        double rate;
        int video;
        int audio;
        PacketPassAction expected;
    };
    const Case cases[] = {
        {0.0, 0, 0, PacketPassAction::Sleep},  // paused reads nothing, however empty
        {1.0, 0, 0, PacketPassAction::Read},
        {1.0, 0, 99, PacketPassAction::Read},
        {1.0, 0, 100, PacketPassAction::Sleep},  // audio full
        {1.0, 99, 50, PacketPassAction::Read},
        {1.0, 100, 10, PacketPassAction::Sleep},  // video full with enough audio
        {1.0, 100, 9, PacketPassAction::Read},    // sparse audio: video grows past 100
    };
    for (const Case &c : cases) {
        EXPECT_EQ(MyCAOpenGLLayer::packetPassActionFor(c.rate, c.video, c.audio), c.expected)
            << "rate " << c.rate << " video " << c.video << " audio " << c.audio;
    }
}

class PacketListTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(engine.openMovieFile(mediaPath("three_audio.mkv")),
                  QLatin1String(kOpenSucceeded));
    }
    MyCAOpenGLLayer engine;
};

TEST_F(PacketListTest, OtherStreamsArePacketsDroppedAtOnce) {
    engine.setRate(1.0);
    for (int pass = 0; pass < 10000 && engine.videoPacketCount() < 40; ++pass) {
        engine.addPacketOnePass();
    }
    std::set<int> videoStreams;
    std::set<int> audioStreams;
    while (AVPacket *packet = engine.getVideoPacket()) {
        videoStreams.insert(packet->stream_index);
    }
    while (AVPacket *packet = engine.getAudioPacket()) {
        audioStreams.insert(packet->stream_index);
    }
    EXPECT_EQ(videoStreams, std::set<int>{0});
    EXPECT_EQ(audioStreams, std::set<int>{1});
}

TEST_F(PacketListTest, EndOfFileKeepsTheThreadAliveAndTheListsDrainable) {
    engine.setRate(1.0);
    engine.startPacketThread();
    // The whole 2 s file fits under the limits, so every packet gets queued.
    int lastTotal = -1;
    ASSERT_TRUE(test::waitUntil([&] {
        const int total = engine.videoPacketCount() + engine.audioPacketCount();
        const bool settled = total == lastTotal && total > 0;
        lastTotal = total;
        return settled && engine.videoPacketCount() == 50;
    }));
    EXPECT_TRUE(engine.hasPacketThread());
    engine.removeVideoPacket();
    EXPECT_EQ(engine.videoPacketCount(), 0);
    engine.stopPacketThread();
    EXPECT_FALSE(engine.hasPacketThread());
}

}  // namespace
}  // namespace tolvane
