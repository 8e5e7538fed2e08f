// The time-stamp rule of hardware pictures, with numbered pictures and with
// pictures decoded in software standing in for the device's.

#include "engine/video/hardware/hardware_picture_order.h"

#include <gtest/gtest.h>

#include <QFile>
#include <algorithm>
#include <vector>

#include "engine/ffmpeg_handles.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

constexpr std::optional<std::int64_t> kUnset = std::nullopt;
constexpr double kTimeBaseSec = 0.01;

struct Arrival {
    int picture;
    std::optional<std::int64_t> pts;
    std::optional<std::int64_t> dts;
};

struct Release {
    int picture;
    double ptsSec;
};

// Feeds the arrivals in order, then drains; every release in order.
std::vector<Release> runOrder(int flagMessPTS, int reorderDepth, double frameRate,
                              const std::vector<Arrival> &arrivals, double startSec = 0.0) {
    HardwarePictureOrder<int> order;
    order.reset(kTimeBaseSec, frameRate, flagMessPTS);
    double next = startSec;
    std::vector<Release> releases;
    const auto take = [&](std::optional<HardwarePictureOrder<int>::Released> released) {
        if (released) {
            releases.push_back({released->picture, released->ptsSec});
            next = released->nextVideoFramePtsSec;
        }
        return released.has_value();
    };
    for (const Arrival &a : arrivals) {
        take(order.properImageBufferAndPTS(a.picture, a.pts, a.dts, reorderDepth, next));
    }
    while (take(order.releaseFirst(next))) {
    }
    return releases;
}

TEST(HardwarePictureOrder, ReleasesInPresentationOrderWithTheSmallestDecodingStamps) {
    struct Case {
        const char *name;
        int flagMessPTS;
        int reorderDepth;
        std::vector<Arrival> arrivals;
        std::vector<Release> expected;
    };
    const Case cases[] = {
        // The third picture at depth 2 releases the smallest PTS (picture 2),
        // stamped with the smallest DTS so far (1).
        {"depth 2",
         0,
         2,
         {{1, 30, 3}, {2, 10, 1}, {3, 20, 2}, {4, 40, 4}},
         {{2, 0.01}, {3, 0.02}, {1, 0.03}, {4, 0.04}}},
        {"equal PTS leave in arrival order",
         0,
         1,
         {{1, 10, 1}, {2, 10, 2}, {3, 10, 3}},
         {{1, 0.01}, {2, 0.02}, {3, 0.03}}},
        {"fewer than two are always held", 0, 0, {{1, 10, 1}, {2, 20, 2}}, {{1, 0.01}, {2, 0.02}}},
        // Stamps that repeat the decoding ones would scramble display order:
        // arrival order is kept, and the DTS list still times the pictures.
        {"unusable PTS keep arrival order",
         1,
         1,
         {{1, 3, 3}, {2, 1, 1}, {3, 2, 2}},
         {{1, 0.01}, {2, 0.02}, {3, 0.03}}},
        {"PTS stands in for a missing DTS",
         0,
         1,
         {{1, 20, kUnset}, {2, 10, kUnset}, {3, 30, kUnset}},
         {{2, 0.10}, {1, 0.20}, {3, 0.30}}},
        // No stamps: the next expected time, advancing one frame at 25 fps.
        {"no stamps at all",
         1,
         1,
         {{1, kUnset, kUnset}, {2, kUnset, kUnset}, {3, kUnset, kUnset}},
         {{1, 5.0}, {2, 5.04}, {3, 5.08}}},
    };
    for (const Case &c : cases) {
        const std::vector<Release> releases =
            runOrder(c.flagMessPTS, c.reorderDepth, 25.0, c.arrivals, 5.0);
        ASSERT_EQ(releases.size(), c.expected.size()) << c.name;
        for (std::size_t i = 0; i < releases.size(); ++i) {
            EXPECT_EQ(releases[i].picture, c.expected[i].picture) << c.name << ", release " << i;
            EXPECT_NEAR(releases[i].ptsSec, c.expected[i].ptsSec, 1e-9)
                << c.name << ", release " << i;
        }
    }
}

TEST(HardwarePictureOrder, ReleasesAtTheRightArrivalAndForgetsOnRemoveAll) {
    HardwarePictureOrder<int> order;
    order.reset(kTimeBaseSec, 25.0, 0);
    EXPECT_FALSE(order.properImageBufferAndPTS(1, 30, 3, 2, 0.0));
    EXPECT_FALSE(order.properImageBufferAndPTS(2, 10, 1, 2, 0.0));
    const auto third = order.properImageBufferAndPTS(3, 20, 2, 2, 0.0);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->picture, 2);
    EXPECT_NEAR(third->nextVideoFramePtsSec, 0.02, 1e-9);  // one time-base unit on
    order.removeAll();
    EXPECT_EQ(order.heldCount(), 0);
    EXPECT_FALSE(order.releaseFirst(0.0));
    // The stamps went too: a new picture is not timed by one of before.
    EXPECT_FALSE(order.properImageBufferAndPTS(4, 90, 9, 0, 0.0));
    EXPECT_NEAR(order.properImageBufferAndPTS(5, 100, 10, 0, 0.0)->ptsSec, 0.09, 1e-9);
}

// Pictures of a file with B pictures, decoded in software: they come out of
// FFmpeg in display order, each with its own packet's DTS handed back through
// reordered_opaque, as the pixel thread does with the device's pictures.
TEST(HardwarePictureOrder, SoftwareDecodedPicturesLeaveInDisplayOrderOnTheDecodingClock) {
    const OpenedInput input =
        openInputWithStreamInfo(QFile::encodeName(test::mediaPath("h264_aac.mp4")).constData());
    ASSERT_EQ(input.failedStep, -1);
    int videoIndex = -1;
    for (unsigned i = 0; i < input.context->nb_streams && videoIndex < 0; ++i) {
        if (input.context->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
            videoIndex = int(i);
        }
    }
    ASSERT_GE(videoIndex, 0);
    const AVStream *stream = input.context->streams[videoIndex];
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    CodecContextPtr context = codecContextForStream(codec, stream);
    ASSERT_TRUE(context);
    context->thread_count = 1;
    ASSERT_EQ(avcodec_open2(context.get(), codec, nullptr), 0);

    HardwarePictureOrder<std::int64_t> order;  // each picture is its own PTS
    order.reset(av_q2d(stream->time_base), 25.0, 0);
    std::vector<std::int64_t> decodingStamps;
    std::vector<std::pair<std::int64_t, double>> released;
    double next = 0.0;
    const auto take = [&](auto result) {
        if (result) {
            released.emplace_back(result->picture, result->ptsSec);
            next = result->nextVideoFramePtsSec;
        }
        return result.has_value();
    };
    const PacketPtr packet = makePacket();
    const FramePtr frame = makeFrame();
    const auto receiveAll = [&] {
        while (avcodec_receive_frame(context.get(), frame.get()) == 0) {
            take(order.properImageBufferAndPTS(frame->pts, frame->pts, frame->reordered_opaque,
                                               context->has_b_frames, next));
            av_frame_unref(frame.get());
        }
    };
    while (av_read_frame(input.context.get(), packet.get()) >= 0) {
        if (packet->stream_index == videoIndex) {
            decodingStamps.push_back(packet->dts);
            context->reordered_opaque = packet->dts;
            ASSERT_EQ(avcodec_send_packet(context.get(), packet.get()), 0);
            receiveAll();
        }
        av_packet_unref(packet.get());
    }
    avcodec_send_packet(context.get(), nullptr);
    receiveAll();
    while (take(order.releaseFirst(next))) {
    }

    ASSERT_EQ(released.size(), decodingStamps.size());
    ASSERT_GT(context->has_b_frames, 0) << "the fixture must reorder";
    std::sort(decodingStamps.begin(), decodingStamps.end());
    for (std::size_t i = 0; i < released.size(); ++i) {
        if (i > 0) {
            EXPECT_LT(released[i - 1].first, released[i].first) << "display order, at " << i;
        }
        EXPECT_DOUBLE_EQ(released[i].second, double(decodingStamps[i]) * av_q2d(stream->time_base))
            << "at " << i;
    }
}

}  // namespace
}  // namespace tolvane
