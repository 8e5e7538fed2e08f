#include "engine/presentation/video_picture_renderer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPainter>
#include <algorithm>
#include <numeric>
#include <vector>

#include "engine/my_ca_opengl_layer.h"
#include "engine/video/hardware/nv12_bitmap.h"
#include "support/offscreen_gl_test.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::colourAt;
using test::isColourNear;

class RendererTest : public test::OffscreenGlTest {
protected:
    RendererTest() : OffscreenGlTest({160, 120}) {}

    QImage draw(const PictureView &picture) {
        return drawn([&] {
            renderer.clear(viewport);
            renderer.drawPicture(picture, viewport);
        });
    }
    QImage draw(const FramePlanesView &frame) {
        return drawn([&] {
            renderer.clear(viewport);
            renderer.drawFramePlanes(frame, viewport);
        });
    }
};

struct Yuv {
    std::uint8_t y, u, v;
};
constexpr Yuv kRed601{81, 90, 240};
constexpr Yuv kBlue601{41, 240, 110};

// An 8-bit 4:2:0 picture whose top and bottom, left and right halves hold
// four flat colours.
struct PlanarPicture {
    std::vector<std::uint8_t> planes[3];
    PlanarPictureView view;
};

PlanarPicture planarQuadrants(int width, int height, const Yuv (&quadrant)[4]) {
    PlanarPicture picture;
    const int chromaWidth = (width + 1) / 2;
    const int chromaHeight = (height + 1) / 2;
    const auto colourAt = [&](int x, int y) -> const Yuv & {
        return quadrant[(y < height / 2 ? 0 : 2) + (x < width / 2 ? 0 : 1)];
    };
    picture.planes[0].resize(std::size_t(width) * height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.planes[0][std::size_t(y) * width + x] = colourAt(x, y).y;
        }
    }
    for (int plane = 1; plane < 3; ++plane) {
        picture.planes[plane].resize(std::size_t(chromaWidth) * chromaHeight);
        for (int y = 0; y < chromaHeight; ++y) {
            for (int x = 0; x < chromaWidth; ++x) {
                const Yuv &colour = colourAt(2 * x, 2 * y);
                picture.planes[plane][std::size_t(y) * chromaWidth + x] =
                    plane == 1 ? colour.u : colour.v;
            }
        }
    }
    const std::ptrdiff_t strides[3] = {width, chromaWidth, chromaWidth};
    for (int plane = 0; plane < 3; ++plane) {
        picture.view.planes[plane] = picture.planes[plane].data();
        picture.view.strides[plane] = strides[plane];
    }
    picture.view.width = width;
    picture.view.height = height;
    return picture;
}

BitmapBytes convertedTo(BitmapLayout layout, const PlanarPictureView &view) {
    BitmapBytes bitmap(bitmapByteCountFor(layout, view.width, view.height));
    convertPictureToBitmap(layout, view, true, bitmap.data());
    return bitmap;
}

// Hardware-decoded pictures are drawn from NV12, software ones from the
// packed 4:2:2 conversion: both with the matrix of the picture's height and
// the +0.1 EV that the grey shows.
TEST_F(RendererTest, PackedAndNv12PicturesUseTheMatrixOfTheirHeight) {
    struct Case {
        const char *name;
        int width, height;
        Yuv quadrant[4];
        QRgb expected[4];
    };
    const Case cases[] = {
        {"bt601 bars and grey",
         64,
         240,
         {kRed601, {145, 54, 34}, kBlue601, {126, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(132, 132, 132)}},
        {"bt709 bars and white",
         64,
         720,
         {{63, 102, 240}, {173, 42, 26}, {32, 240, 118}, {235, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)}},
        // Odd sizes: the chroma is rounded up, not cut.
        {"odd size",
         33,
         9,
         {kRed601, kRed601, kBlue601, kBlue601},
         {qRgb(255, 0, 0), qRgb(255, 0, 0), qRgb(0, 0, 255), qRgb(0, 0, 255)}},
    };
    for (const Case &c : cases) {
        const PlanarPicture picture = planarQuadrants(c.width, c.height, c.quadrant);
        for (const BitmapLayout layout :
             {BitmapLayout::Packed422From420p8, BitmapLayout::Nv12From420p8}) {
            SCOPED_TRACE(std::string(c.name) +
                         (layout == BitmapLayout::Nv12From420p8 ? ", nv12" : ", packed"));
            const BitmapBytes bitmap = convertedTo(layout, picture.view);
            const QImage image = draw({layout, bitmap.data(), bitmap.size(), c.width, c.height});
            for (int quadrant = 0; quadrant < 4; ++quadrant) {
                EXPECT_TRUE(isColourNear(
                    colourAt(image, quadrant % 2 ? 0.75 : 0.25, quadrant < 2 ? 0.25 : 0.75),
                    c.expected[quadrant]))
                    << "quadrant " << quadrant;
            }
        }
    }
}

TEST_F(RendererTest, OneFieldPictureIsStretchedToTheWholeView) {
    // The bitmap holds half the frame's rows; the view must still be filled.
    const PlanarPicture picture = planarQuadrants(32, 48, {kRed601, kRed601, kBlue601, kBlue601});
    const BitmapBytes bitmap =
        convertedTo(BitmapLayout::Packed422FirstFieldFrom420p8, picture.view);
    const QImage image =
        draw({BitmapLayout::Packed422FirstFieldFrom420p8, bitmap.data(), bitmap.size(), 32, 48});
    for (const double fy : {0.05, 0.45, 0.55, 0.95}) {
        EXPECT_TRUE(
            isColourNear(colourAt(image, 0.5, fy), fy < 0.5 ? qRgb(255, 0, 0) : qRgb(0, 0, 255)))
            << fy;
    }
}

TEST_F(RendererTest, RgbLayoutsGetHalfAStop) {
    // Half a stop in linear light, across sRGB's linear toe (8), the power
    // curve and the clamp at white (250).
    const struct {
        BitmapLayout layout;
        std::vector<std::uint8_t> pixel;  // A R G B, or R G B A in 16-bit little-endian
        QRgb expected;
    } cases[] = {
        {BitmapLayout::Rgba16From444p10,
         {0xff, 0xff, 0, 0, 0, 0x80, 0xff, 0xff},
         qRgb(255, 0, 149)},
        {BitmapLayout::Argb8From444p10, {255, 64, 128, 0}, qRgb(76, 150, 0)},
        {BitmapLayout::Argb8From444p10, {255, 8, 250, 40}, qRgb(11, 255, 48)},
        {BitmapLayout::Argb8From444p10, {255, 10, 200, 255}, qRgb(14, 233, 255)},
    };
    for (const auto &c : cases) {
        alignas(2) std::uint8_t bytes[8 * 6 * 8];
        const std::size_t byteCount = 8 * 6 * c.pixel.size();
        for (std::size_t i = 0; i < byteCount; ++i) {
            bytes[i] = c.pixel[i % c.pixel.size()];
        }
        EXPECT_TRUE(
            isColourNear(colourAt(draw({c.layout, bytes, byteCount, 8, 6}), 0.5, 0.5), c.expected));
    }
}

TEST_F(RendererTest, TextureIsReusedWhileTheSizeStays) {
    for (const int width : {16, 16, 32}) {
        const PlanarPicture grey = planarQuadrants(
            width, 8, {{126, 128, 128}, {126, 128, 128}, {126, 128, 128}, {126, 128, 128}});
        const BitmapBytes bitmap = convertedTo(BitmapLayout::Packed422From420p8, grey.view);
        draw({BitmapLayout::Packed422From420p8, bitmap.data(), bitmap.size(), width, 8});
    }
    EXPECT_EQ(renderer.textureAllocationCount(), 2);
}

// A bitmap shorter than its layout and size need is not read at all.
TEST_F(RendererTest, PicturesShorterThanTheirLayoutOrEmptyDrawNothing) {
    const PlanarPicture red = planarQuadrants(16, 8, {kRed601, kRed601, kRed601, kRed601});
    const BitmapBytes packed = convertedTo(BitmapLayout::Packed422From420p8, red.view);
    const BitmapBytes nv12 = convertedTo(BitmapLayout::Nv12From420p8, red.view);
    const PictureView cases[] = {
        {BitmapLayout::Rgba16From420p10, packed.data(), packed.size(), 16,
         8},  // read four times over
        {BitmapLayout::Nv12From420p8, nv12.data(), nv12.size() - 1, 16, 8},
        {BitmapLayout::Packed422From420p8, nullptr, 0, 0, 0},
    };
    for (const PictureView &picture : cases) {
        EXPECT_TRUE(isColourNear(colourAt(draw(picture), 0.5, 0.5), qRgb(0, 0, 0)))
            << int(picture.layout);
    }
}

TEST_F(RendererTest, OverlayAreasAreBlendedOverThePictureTheRestIsNot) {
    // Opaque blue everywhere but in two areas: half-transparent white at the
    // top left, transparent at the bottom right. Only the areas may show.
    const PlanarPicture red = planarQuadrants(16, 8, {kRed601, kRed601, kRed601, kRed601});
    const BitmapBytes bytes = convertedTo(BitmapLayout::Packed422From420p8, red.view);
    QImage overlay(viewport, QImage::Format_RGBA8888_Premultiplied);
    overlay.fill(QColor(0, 0, 255));
    const QSize half = viewport / 2;
    const QRect topLeft(QPoint(0, 0), half);
    const QRect bottomRight(QPoint(half.width(), half.height()), half);
    {
        QPainter painter(&overlay);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(topLeft, QColor(255, 255, 255, 128));
        painter.fillRect(bottomRight, Qt::transparent);
    }
    const auto drawWithOverlay = [&] {
        return drawn([&] {
            renderer.clear(viewport);
            renderer.drawPicture(
                {BitmapLayout::Packed422From420p8, bytes.data(), bytes.size(), 16, 8}, viewport);
            renderer.drawOverlay(viewport);
        });
    };
    renderer.setOverlay(overlay, {topLeft, bottomRight});
    const QImage image = drawWithOverlay();
    EXPECT_TRUE(isColourNear(colourAt(image, 0.25, 0.25), qRgb(255, 127, 127)));
    for (const auto &[fx, fy] : {std::pair{0.75, 0.75}, {0.75, 0.25}, {0.25, 0.75}}) {
        EXPECT_TRUE(isColourNear(colourAt(image, fx, fy), qRgb(255, 0, 0))) << fx << ", " << fy;
    }
    renderer.setOverlay(overlay, {});
    EXPECT_TRUE(isColourNear(colourAt(drawWithOverlay(), 0.25, 0.25), qRgb(255, 0, 0)));
}

// Frames handed over as planes, each with padded rows and a top half that
// differs from the bottom half, so that strides, plane order, byte order and
// orientation all show in the read-back.
TEST_F(RendererTest, FramePlanesOfEveryLayoutKeepColoursAndOrientation) {
    constexpr int kWidth = 16;
    constexpr int kHeight = 12;
    constexpr int kPadding = 8;
    struct Colour {
        std::uint8_t a, b, c;  // Y U V, or R G B
    };
    struct Case {
        const char *name;
        FramePlaneLayout layout;
        ColourMatrix matrix;
        bool isFullRange;
        Colour top, bottom;
        QRgb expectedTop, expectedBottom;
    };
    // clang-format off
    const Case cases[] = {
        {"yuv420p bt601", FramePlaneLayout::Yuv420Planar, ColourMatrix::Bt601, false, {81, 90, 240}, {41, 240, 110}, qRgb(255, 0, 0), qRgb(0, 0, 255)},
        {"nv12 bt709", FramePlaneLayout::Nv12, ColourMatrix::Bt709, false, {173, 42, 26}, {235, 128, 128}, qRgb(0, 255, 0), qRgb(255, 255, 255)},
        {"nv12 full range", FramePlaneLayout::Nv12, ColourMatrix::Bt601, true, {0, 128, 128}, {255, 128, 128}, qRgb(0, 0, 0), qRgb(255, 255, 255)},
        {"rgba", FramePlaneLayout::Rgba8, ColourMatrix::Bt601, false, {255, 0, 0}, {0, 64, 128}, qRgb(255, 0, 0), qRgb(0, 64, 128)},
        {"bgra", FramePlaneLayout::Bgra8, ColourMatrix::Bt601, false, {255, 0, 0}, {0, 64, 128}, qRgb(0, 0, 255), qRgb(128, 64, 0)},
    };
    // clang-format on
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const bool isRgb =
            c.layout == FramePlaneLayout::Rgba8 || c.layout == FramePlaneLayout::Bgra8;
        const bool isNv12 = c.layout == FramePlaneLayout::Nv12;
        const int lumaStride = (isRgb ? kWidth * 4 : kWidth) + kPadding;
        const int chromaStride = (isNv12 ? kWidth : kWidth / 2) + kPadding;
        std::vector<std::uint8_t> luma(std::size_t(lumaStride) * kHeight, 0xEE);
        std::vector<std::uint8_t> chroma[2] = {
            std::vector<std::uint8_t>(std::size_t(chromaStride) * kHeight / 2, 0xEE),
            std::vector<std::uint8_t>(std::size_t(chromaStride) * kHeight / 2, 0xEE)};
        for (int row = 0; row < kHeight; ++row) {
            const Colour &colour = row < kHeight / 2 ? c.top : c.bottom;
            std::uint8_t *lumaRow = &luma[std::size_t(row) * lumaStride];
            std::uint8_t *chromaRow[2] = {&chroma[0][std::size_t(row / 2) * chromaStride],
                                          &chroma[1][std::size_t(row / 2) * chromaStride]};
            for (int x = 0; x < kWidth; ++x) {
                if (isRgb) {
                    const std::uint8_t pixel[4] = {colour.a, colour.b, colour.c, 255};
                    std::copy(pixel, pixel + 4, lumaRow + x * 4);
                } else {
                    lumaRow[x] = colour.a;
                }
            }
            for (int x = 0; x < kWidth / 2 && !isRgb; ++x) {
                if (isNv12) {
                    chromaRow[0][x * 2] = colour.b;
                    chromaRow[0][x * 2 + 1] = colour.c;
                } else {
                    chromaRow[0][x] = colour.b;
                    chromaRow[1][x] = colour.c;
                }
            }
        }
        const QImage image = draw(FramePlanesView{c.layout,
                                                  kWidth,
                                                  kHeight,
                                                  {luma.data(), chroma[0].data(), chroma[1].data()},
                                                  {lumaStride, chromaStride, chromaStride},
                                                  c.matrix,
                                                  c.isFullRange});
        EXPECT_TRUE(isColourNear(colourAt(image, 0.5, 0.2), c.expectedTop));
        EXPECT_TRUE(isColourNear(colourAt(image, 0.5, 0.8), c.expectedBottom));
    }
}

// A decoded picture copied to NV12 as the hardware path does, against its
// packed conversion.
TEST_F(RendererTest, DecodedPictureInNv12MatchesItsPackedDrawing) {
    const OpenedInput input =
        openInputWithStreamInfo(QFile::encodeName(test::mediaPath("h264_aac.mkv")).constData());
    ASSERT_EQ(input.failedStep, -1);
    const AVStream *stream = input.context->streams[0];
    ASSERT_EQ(stream->codecpar->codec_type, AVMEDIA_TYPE_VIDEO);
    const AVCodec *codec = avcodec_find_decoder(stream->codecpar->codec_id);
    CodecContextPtr decoder = codecContextForStream(codec, stream);
    ASSERT_TRUE(decoder && avcodec_open2(decoder.get(), codec, nullptr) == 0);
    const PacketPtr packet = makePacket();
    const FramePtr frame = makeFrame();
    bool gotPicture = false;
    while (!gotPicture && av_read_frame(input.context.get(), packet.get()) >= 0) {
        if (packet->stream_index == 0) {
            avcodec_send_packet(decoder.get(), packet.get());
            gotPicture = avcodec_receive_frame(decoder.get(), frame.get()) == 0;
        }
        av_packet_unref(packet.get());
    }
    ASSERT_TRUE(gotPicture);

    BitmapBytes nv12(nv12ByteCountFor(frame->width, frame->height));
    ASSERT_TRUE(copyFrameToNv12Bitmap(*frame, nv12.data()));
    PlanarPictureView view{{frame->data[0], frame->data[1], frame->data[2]},
                           {frame->linesize[0], frame->linesize[1], frame->linesize[2]},
                           frame->width,
                           frame->height};
    const BitmapBytes packed = convertedTo(BitmapLayout::Packed422From420p8, view);
    const QImage fromNv12 =
        draw({BitmapLayout::Nv12From420p8, nv12.data(), nv12.size(), frame->width, frame->height});
    const QImage fromPacked = draw({BitmapLayout::Packed422From420p8, packed.data(), packed.size(),
                                    frame->width, frame->height});
    // The planes sample chroma with linear filtering and the 4:2:2 path
    // nearest, so colour edges differ a little; flat areas, most of the
    // picture, may not. A wrong matrix, plane order or exposure moves all.
    std::vector<int> differences;
    for (int y = 0; y < fromNv12.height(); ++y) {
        for (int x = 0; x < fromNv12.width(); ++x) {
            const QRgb a = fromNv12.pixel(x, y);
            const QRgb b = fromPacked.pixel(x, y);
            differences.push_back(
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                          std::abs(qBlue(a) - qBlue(b))}));
        }
    }
    const double mean =
        std::accumulate(differences.begin(), differences.end(), 0.0) / double(differences.size());
    std::nth_element(differences.begin(), differences.begin() + differences.size() / 2,
                     differences.end());
    EXPECT_LE(differences[differences.size() / 2], 2) << "median";
    EXPECT_LT(mean, 6.0);
    EXPECT_NE(fromNv12.pixel(10, 10), fromNv12.pixel(150, 110)) << "a picture, not a flat colour";
}

}  // namespace
}  // namespace tolvane
