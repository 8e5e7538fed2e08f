#include "engine/video/video_decoder.h"

#include <gtest/gtest.h>

#include <QFile>

#include "support/test_media.h"

namespace tolvane {
namespace {

// h264_aac.mkv holds 50 pictures with B-frames: the decoder keeps some back
// until the end of the stream is sent.
class VideoDecoderTest : public ::testing::Test {
protected:
    void SetUp() override {
        input =
            openInputWithStreamInfo(QFile::encodeName(test::mediaPath("h264_aac.mkv")).constData());
        ASSERT_EQ(input.failedStep, -1);
        const AVStream *stream = input.context->streams[kVideoStream];
        const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
        CodecContextPtr context = codecContextForStream(codec, stream);
        ASSERT_TRUE(context);
        ASSERT_EQ(avcodec_open2(context.get(), codec, nullptr), 0);
        decoder = std::make_unique<VideoDecoder>(std::move(context), nullptr);
    }

    // Feeds every video packet from where the file stands, then drains.
    // Returns the pictures out of the feed and out of the drain.
    std::pair<int, int> decodeToTheEnd() {
        int fed = 0;
        const PacketPtr packet = makePacket();
        while (av_read_frame(input.context.get(), packet.get()) >= 0) {
            if (packet->stream_index == kVideoStream) {
                fed += int(decoder->decode(packet.get()).size());
            }
            av_packet_unref(packet.get());
        }
        int drained = 0;
        for (int call = 0; call < 100; ++call) {
            const std::size_t pictures = decoder->decode(nullptr).size();
            EXPECT_LE(pictures, 1u) << "one picture per call of the drain";
            if (pictures == 0) {
                break;
            }
            ++drained;
        }
        return {fed, drained};
    }

    static constexpr int kVideoStream = 0;
    OpenedInput input;
    std::unique_ptr<VideoDecoder> decoder;
};

TEST_F(VideoDecoderTest, DrainGivesWhatTheFeedHeldBackAgainAfterEveryFlush) {
    EXPECT_TRUE(decoder->decode(nullptr).empty()) << "nothing to drain before any packet";
    decoder->flush();
    for (int run = 0; run < 2; ++run) {
        const auto [fed, drained] = decodeToTheEnd();
        EXPECT_GT(drained, 0) << "run " << run;
        EXPECT_EQ(fed + drained, 50) << "run " << run;
        EXPECT_TRUE(decoder->decode(nullptr).empty()) << "drained";
        // The seek's flush makes the decoder take packets, and a later end, again.
        decoder->flush();
        ASSERT_GE(av_seek_frame(input.context.get(), kVideoStream, 0, AVSEEK_FLAG_BACKWARD), 0);
    }
}

}  // namespace
}  // namespace tolvane
