// A decode that stalls past the bounded stop (a hanging driver, a huge
// picture under load): the reset gives up on the decoding thread within the
// bound and frees the file, and when the decode returns the thread finishes
// on what it owns, without reaching the engine. Under the sanitizers a use of
// the freed decoder, packet or engine would be reported here.

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "engine/my_ca_opengl_layer.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// Holds every buffer the decoder asks for until the test releases it.
struct DecoderStall {
    std::mutex mutex;
    std::condition_variable released;
    bool isReleased = false;  // guarded by mutex
    std::atomic<bool> isEntered{false};

    void release() {
        {
            std::lock_guard lock(mutex);
            isReleased = true;
        }
        released.notify_all();
    }
};

int stallingGetBuffer(AVCodecContext *context, AVFrame *frame, int flags) {
    auto &stall = *static_cast<DecoderStall *>(context->opaque);
    stall.isEntered = true;
    std::unique_lock lock(stall.mutex);
    stall.released.wait(lock, [&] { return stall.isReleased; });
    return avcodec_default_get_buffer2(context, frame, flags);
}

TEST(AbandonedDecodingThread, ResetWithinTheBoundWhileADecodeStallsAndTheThreadFinishesAlone) {
    for (const bool isVideo : {true, false}) {
        SCOPED_TRACE(isVideo ? "pixel thread" : "sample thread");
        DecoderStall stall;
        MyCAOpenGLLayer engine;
        engine.setIsUseH264Acc(false);  // the context's `opaque` is the stall's
        engine.setWorkerStopBoundForTesting(100ms);
        ASSERT_EQ(engine.openMovieFile(test::mediaPath("h264_aac.mkv")),
                  QLatin1String(kOpenSucceeded));

        // Owners the thread shares: expired once it has finished with them.
        std::weak_ptr<void> decoder;
        AVCodecContext *context = nullptr;
        if (isVideo) {
            const std::shared_ptr<VideoDecoder> video = engine.videoDecoderForTesting().lock();
            decoder = video;
            context = &video->contextForTesting();
        } else {
            const std::shared_ptr<AVCodecContext> audio = engine.audioDecoderForTesting().lock();
            decoder = audio;
            context = audio.get();
        }
        ASSERT_NE(context, nullptr);
        context->opaque = &stall;
        context->get_buffer2 = &stallingGetBuffer;

        engine.setRate(1.0);
        engine.startPacketThread();
        if (isVideo) {
            engine.startPixelThread();
        } else {
            engine.startSampleThread();
        }
        ASSERT_TRUE(test::waitUntil([&] { return stall.isEntered.load(); }));

        engine.cleanBeforeOpenFile();
        EXPECT_FALSE(engine.hasPixelThread());
        EXPECT_EQ(engine.videoPacketCount(), 0);
        EXPECT_EQ(engine.audioPacketCount(), 0);
        EXPECT_FALSE(decoder.expired()) << "the stalled thread still holds its decoder";

        stall.release();
        ASSERT_TRUE(test::waitUntil([&] { return decoder.expired(); }))
            << "the thread let its decoder go when it finished";
        EXPECT_EQ(engine.bitmapDataCount(), 0);
        EXPECT_EQ(engine.sampleDataCountForChannel(0), 0);
        EXPECT_EQ(engine.readedSampleCount(), 0);

        // The engine itself is unharmed by the thread it left behind.
        ASSERT_EQ(engine.openMovieFile(test::mediaPath("h264_aac.mkv")),
                  QLatin1String(kOpenSucceeded));
    }
}

}  // namespace
}  // namespace tolvane
