#include "engine/audio/sample_pool.h"

#include <gtest/gtest.h>

#include <deque>
#include <numeric>
#include <vector>

#include "engine/audio/audio_decoding_rules.h"

namespace tolvane {
namespace {

// Sample lists in miniature: per channel a queue of nodes whose bytes count
// up from a start value, so that every byte tells which node it came from.
class FakeNodeSource final : public SampleNodeSource {
public:
    void addNode(int channel, int bytes, std::uint8_t firstValue) {
        std::vector<std::uint8_t> node(static_cast<std::size_t>(bytes));
        std::iota(node.begin(), node.end(), firstValue);
        nodes_[std::size_t(channel)].push_back(std::move(node));
    }
    void resetReadCursor(int channel) override { read_[std::size_t(channel)] = 0; }
    const std::vector<std::uint8_t> *readNode(int channel) override {
        auto &list = nodes_[std::size_t(channel)];
        auto &read = read_[std::size_t(channel)];
        return read < list.size() ? &list[read++] : nullptr;
    }
    void removeReadNodes(int channel) override {
        auto &list = nodes_[std::size_t(channel)];
        list.erase(list.begin(), list.begin() + std::ptrdiff_t(read_[std::size_t(channel)]));
        read_[std::size_t(channel)] = 0;
    }
    std::size_t nodeCount(int channel) const { return nodes_[std::size_t(channel)].size(); }

private:
    std::array<std::deque<std::vector<std::uint8_t>>, kMaxSampleChannels> nodes_;
    std::array<std::size_t, kMaxSampleChannels> read_{};
};

class SamplePoolTest : public ::testing::Test {
protected:
    bool gather(int need, int buffers = 1) {
        for (auto &s : scratch) {
            s.assign(std::size_t(need), 0xEE);
        }
        std::vector<std::uint8_t *> pointers;
        for (int k = 0; k < buffers; ++k) {
            pointers.push_back(scratch[std::size_t(k)].data());
        }
        return pool.gather(need, pointers, source);
    }
    SamplePool pool;
    FakeNodeSource source;
    std::array<std::vector<std::uint8_t>, 2> scratch;
};

TEST_F(SamplePoolTest, ServesFromThePoolAndRefillsWithWholeNodes) {
    pool.allocate(1);
    source.addNode(0, 100, 0);
    source.addNode(0, 100, 100);
    source.addNode(0, 100, 200);
    ASSERT_TRUE(gather(150));
    EXPECT_EQ(pool.bytesSamplePool(), 200);  // two nodes reach 150
    EXPECT_EQ(pool.offsetSamplePool(), 150);
    EXPECT_EQ(source.nodeCount(0), 1u);
    EXPECT_EQ(scratch[0][0], 0);
    EXPECT_EQ(scratch[0][149], 149);

    ASSERT_TRUE(gather(30));  // inside what the pool holds
    EXPECT_EQ(pool.offsetSamplePool(), 180);
    EXPECT_EQ(scratch[0][0], 150);

    ASSERT_TRUE(gather(60));  // 20 left over, then the third node
    EXPECT_EQ(scratch[0][19], 199);
    EXPECT_EQ(scratch[0][20], 200);
    EXPECT_EQ(pool.bytesSamplePool(), 100);
    EXPECT_EQ(pool.offsetSamplePool(), 40);
}

TEST_F(SamplePoolTest, UnderrunWithLeftoverKeepsTheLeftoverAndDropsTheMovedNodes) {
    pool.allocate(1);
    source.addNode(0, 100, 0);
    ASSERT_TRUE(gather(80));  // 20 bytes (80..99) left over
    source.addNode(0, 50, 100);
    EXPECT_FALSE(gather(100));              // 20 + 50 is short of 100
    EXPECT_EQ(source.nodeCount(0), 0u);     // the node was taken...
    EXPECT_EQ(pool.bytesSamplePool(), 20);  // ...and dropped: only the leftover stays
    EXPECT_EQ(pool.offsetSamplePool(), 0);

    source.addNode(0, 100, 150);
    ASSERT_TRUE(gather(30));
    EXPECT_EQ(scratch[0][0], 80);
    EXPECT_EQ(scratch[0][19], 99);
    EXPECT_EQ(scratch[0][20], 150);
}

TEST_F(SamplePoolTest, PlanarChannelsAreTakenTogetherOrNotAtAll) {
    pool.allocate(2);
    source.addNode(0, 100, 0);
    source.addNode(1, 100, 100);
    source.addNode(0, 100, 50);  // channel 1's second frame is not queued yet
    EXPECT_FALSE(gather(150, 2));
    // The lone node of channel 0 stays queued for its partner.
    EXPECT_EQ(source.nodeCount(0), 1u);
    source.addNode(1, 100, 150);
    ASSERT_TRUE(gather(50, 2));  // from the 100 bytes kept at the underrun
    ASSERT_TRUE(gather(100, 2));
    EXPECT_EQ(scratch[0][50], 50);
    EXPECT_EQ(scratch[1][50], 150);
}

// PCM in AVI comes in frames of seconds of sound, larger than the pool: every
// byte must come out once and in order, in both layouts.
TEST_F(SamplePoolTest, NodesLargerThanThePoolArePassedOnWhole) {
    for (const int buffers : {1, 2}) {
        SCOPED_TRACE(buffers);
        pool.allocate(buffers);
        const int nodeBytes = SamplePool::kPoolBytesPerBuffer + 116000;
        for (int k = 0; k < buffers; ++k) {
            source.addNode(k, nodeBytes, std::uint8_t(k));
            source.addNode(k, 3000, std::uint8_t(nodeBytes + k));
        }
        const int need = 4096;
        int served = 0;
        while (served + need <= nodeBytes + 3000 && gather(need, buffers)) {
            for (int k = 0; k < buffers; ++k) {
                for (int i = 0; i < need; ++i) {
                    ASSERT_EQ(scratch[std::size_t(k)][std::size_t(i)], std::uint8_t(served + i + k))
                        << "byte " << served + i << " of buffer " << k;
                }
            }
            served += need;
        }
        EXPECT_EQ(served, (nodeBytes + 3000) / need * need);
        pool.release();
        source = FakeNodeSource();
    }
}

TEST(SampleQueueLimit, ShrinksToTheFramesStillToCome) {
    // Duration, start, rate, samples read, frame size, channels, bytes per sample.
    const std::pair<SampleQueueLimitInputs, int> cases[] = {
        {{10.0, 0.0, 48000, 0, 1024, 2, 2}, 80},
        {{10.0, 0.0, 48000, 480000 - 1024 * 10, 1024, 2, 4}, 10},
        {{10.0, 0.0, 48000, 480000 - 1023, 1024, 2, 2}, 0},  // less than one frame left
        {{10.0, 0.0, 48000, 480000 + 5000, 1024, 2, 2}, 0},  // past the end
        {{100.0, 0.0, 48000, 0, 23999, 8, 2}, 80},           // 383984 bytes per frame
        {{100.0, 0.0, 48000, 0, 24000, 4, 4}, 50},           // 384000 bytes is more than 383999
        {{10.0, 0.0, 48000, 0, 0, 2, 2}, 0},
    };
    for (const auto &[inputs, expected] : cases) {
        EXPECT_EQ(sampleQueueLimitFor(inputs), expected) << "read " << inputs.readedSampleCount;
    }
}

}  // namespace
}  // namespace tolvane
