#include <gtest/gtest.h>

#include "engine/my_ca_opengl_layer.h"
#include "support/test_media.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace tolvane {
namespace {

// Each format is converted into the layout the 10-bit setting picks for it,
// and the setting may change while a picture converted under the other
// setting is current or queued: the drawing must describe the bytes that
// picture was converted into, never more.
class PictureLayoutChangeTest : public ::testing::Test {
protected:
    static constexpr int kWidth = 64;
    static constexpr int kHeight = 48;

    static FramePtr greyFrame(AVPixelFormat format) {
        FramePtr frame = makeFrame();
        frame->format = format;
        frame->width = kWidth;
        frame->height = kHeight;
        if (av_frame_get_buffer(frame.get(), 0) < 0) {
            return nullptr;
        }
        const int chromaRows = kHeight >> av_pix_fmt_desc_get(format)->log2_chroma_h;
        for (int plane = 0; plane < 3; ++plane) {
            const int rows = plane == 0 ? kHeight : chromaRows;
            for (int row = 0; row < rows; ++row) {
                auto *samples = reinterpret_cast<std::uint16_t *>(frame->data[plane] +
                                                                  row * frame->linesize[plane]);
                std::fill(samples, samples + frame->linesize[plane] / 2, std::uint16_t{512});
            }
        }
        return frame;
    }

    std::size_t bytesDescribedToTheDrawing() const {
        std::size_t described = 0;
        engine.drawInCGLContext(
            [&](const PictureView &picture) { described = bitmapBytesToDraw(picture); });
        return described;
    }

    MyCAOpenGLLayer engine;
};

TEST_F(PictureLayoutChangeTest, CurrentPictureIsDrawnWithTheLayoutItWasConvertedWith) {
    struct Case {
        const char *file;
        AVPixelFormat format;
        bool is10bitWhenConverted;
        std::size_t bytes;
    };
    constexpr std::size_t kPixels = std::size_t(kWidth) * kHeight;
    const Case cases[] = {
        {"h264_10bit_420.mkv", AV_PIX_FMT_YUV420P10LE, false, kPixels * 2},
        {"h264_10bit_420.mkv", AV_PIX_FMT_YUV420P10LE, true, kPixels * 8},
        {"h264_10bit_444.mkv", AV_PIX_FMT_YUV444P10LE, false, kPixels * 4},
        {"h264_10bit_444.mkv", AV_PIX_FMT_YUV444P10LE, true, kPixels * 8},
        // Formats without a layout of their own are read as 4:2:0, in NV12.
        {"yuv422p.mkv", AV_PIX_FMT_YUV422P, true, kPixels * 3 / 2},
        {"yuvj420p.mkv", AV_PIX_FMT_YUVJ420P, true, kPixels * 3 / 2},
    };
    for (const Case &c : cases) {
        for (const bool throughTheList : {false, true}) {
            SCOPED_TRACE(::testing::Message() << c.file << " 10-bit " << c.is10bitWhenConverted
                                              << (throughTheList ? " queued" : " preview"));
            engine.setIs10bitMode(c.is10bitWhenConverted);
            ASSERT_EQ(engine.openMovieFile(test::mediaPath(c.file)), QLatin1String(kOpenSucceeded));
            const FramePtr frame = greyFrame(c.format);
            ASSERT_NE(frame, nullptr);
            engine.setIsSeekingVideoForTesting(!throughTheList);
            engine.addBitmapDataToQueueWithAVFrame(frame.get(), 0.0, 25.0);
            engine.setIs10bitMode(!c.is10bitWhenConverted);
            if (throughTheList) {
                PictureDecision decision;
                engine.canDrawInCGLContext(&decision);
                ASSERT_EQ(decision.kind, PictureDecision::Kind::Shown);
            }
            EXPECT_EQ(bytesDescribedToTheDrawing(), c.bytes);
            engine.cleanBeforeOpenFile();
        }
    }
}

}  // namespace
}  // namespace tolvane
