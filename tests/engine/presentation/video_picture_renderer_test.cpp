#include "engine/presentation/video_picture_renderer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "engine/my_ca_opengl_layer.h"
#include "engine/video/hardware/nv12_bitmap.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// An offscreen GL 3.3 context with a framebuffer to draw into and read back.
class RendererTest : public ::testing::Test {
protected:
    static constexpr QSize kViewport{160, 120};

    void SetUp() override {
        QSurfaceFormat format;
        format.setVersion(3, 3);
        format.setProfile(QSurfaceFormat::CoreProfile);
        context.setFormat(format);
        surface.setFormat(format);
        surface.create();
        if (!context.create() || !context.makeCurrent(&surface)) {
            GTEST_SKIP() << "no OpenGL 3.3 context can be made here";
        }
        target = std::make_unique<QOpenGLFramebufferObject>(kViewport);
        ASSERT_TRUE(renderer.initialize()) << "shaders must compile";
    }

    void TearDown() override {
        if (context.isValid() && QOpenGLContext::currentContext() == &context) {
            renderer.release();
            target.reset();
            context.doneCurrent();
        }
    }

    QImage draw(const PictureView &picture) {
        target->bind();
        renderer.clear(kViewport);
        renderer.drawPicture(picture, kViewport);
        target->release();
        return target->toImage(true).convertToFormat(QImage::Format_RGB32);
    }

    QImage draw(const FramePlanesView &frame) {
        target->bind();
        renderer.clear(kViewport);
        renderer.drawFramePlanes(frame, kViewport);
        target->release();
        return target->toImage(true).convertToFormat(QImage::Format_RGB32);
    }

    // Expects the colour at a fraction of the view, from the top left.
    static void expectColourAt(const QImage &image, double fx, double fy, QRgb expected) {
        const QRgb actual = image.pixel(int(fx * image.width()), int(fy * image.height()));
        const auto near = [](int a, int b) { return std::abs(a - b) <= 3; };
        EXPECT_TRUE(near(qRed(actual), qRed(expected)) && near(qGreen(actual), qGreen(expected)) &&
                    near(qBlue(actual), qBlue(expected)))
            << "at " << fx << ", " << fy << std::hex << ": got " << actual << " want " << expected;
    }

    QOpenGLContext context;
    QOffscreenSurface surface;
    std::unique_ptr<QOpenGLFramebufferObject> target;
    VideoPictureRenderer renderer;
};

struct Yuv {
    std::uint8_t y, u, v;
};

// A packed U Y0 V Y1 bitmap whose top and bottom halves and left and right
// halves hold four flat colours.
std::vector<std::uint8_t> packedQuadrants(int width, int rows, const Yuv quadrant[4]) {
    std::vector<std::uint8_t> bytes(std::size_t(width) * rows * 2);
    for (int row = 0; row < rows; ++row) {
        for (int pair = 0; pair < width / 2; ++pair) {
            const Yuv &c = quadrant[(row < rows / 2 ? 0 : 2) + (pair < width / 4 ? 0 : 1)];
            std::uint8_t *at = &bytes[std::size_t(row) * width * 2 + std::size_t(pair) * 4];
            at[0] = c.u;
            at[1] = c.y;
            at[2] = c.v;
            at[3] = c.y;
        }
    }
    return bytes;
}

TEST_F(RendererTest, PackedPicturesUseTheMatrixOfTheirHeight) {
    // 100% colour bars in each matrix, and a grey that shows the +0.1 EV.
    struct Case {
        int height;
        Yuv quadrant[4];
        QRgb expected[4];
    };
    const Case cases[] = {
        {240,
         {{81, 90, 240}, {145, 54, 34}, {41, 240, 110}, {126, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(132, 132, 132)}},
        {720,
         {{63, 102, 240}, {173, 42, 26}, {32, 240, 118}, {235, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)}},
    };
    for (const Case &c : cases) {
        const int width = 64;
        const auto bytes = packedQuadrants(width, c.height, c.quadrant);
        const QImage image =
            draw({BitmapLayout::Packed422From420p8, bytes.data(), bytes.size(), width, c.height});
        for (int quadrant = 0; quadrant < 4; ++quadrant) {
            expectColourAt(image, quadrant % 2 ? 0.75 : 0.25, quadrant < 2 ? 0.25 : 0.75,
                           c.expected[quadrant]);
        }
    }
}

TEST_F(RendererTest, OneFieldPictureIsStretchedToTheWholeView) {
    // The bitmap holds half the frame's rows; the view must still be filled.
    const Yuv quadrant[4] = {{81, 90, 240}, {81, 90, 240}, {41, 240, 110}, {41, 240, 110}};
    const int width = 32;
    const int frameHeight = 48;
    const auto bytes = packedQuadrants(width, frameHeight / 2, quadrant);
    const QImage image = draw({BitmapLayout::Packed422FirstFieldFrom420p8, bytes.data(),
                               bytes.size(), width, frameHeight});
    for (const double fy : {0.05, 0.45}) {
        expectColourAt(image, 0.5, fy, qRgb(255, 0, 0));
    }
    for (const double fy : {0.55, 0.95}) {
        expectColourAt(image, 0.5, fy, qRgb(0, 0, 255));
    }
}

TEST_F(RendererTest, RgbLayoutsGetHalfAStop) {
    // Half a stop in linear light, across sRGB's linear toe (8), the power
    // curve and the clamp at white (250).
    const std::uint16_t rgbaPixel[4] = {65535, 0, 32768, 65535};
    struct Case {
        std::uint8_t argb[4];
        QRgb expected;
    };
    const Case argbCases[] = {
        {{255, 64, 128, 0}, qRgb(76, 150, 0)},
        {{255, 8, 250, 40}, qRgb(11, 255, 48)},
        {{255, 10, 200, 255}, qRgb(14, 233, 255)},
    };
    std::vector<std::uint16_t> rgba16(8 * 6 * 4);
    for (std::size_t i = 0; i < rgba16.size(); ++i) {
        rgba16[i] = rgbaPixel[i % 4];
    }
    const auto *rgbaBytes = reinterpret_cast<const std::uint8_t *>(rgba16.data());
    expectColourAt(draw({BitmapLayout::Rgba16From444p10, rgbaBytes, rgba16.size() * 2, 8, 6}), 0.5,
                   0.5, qRgb(255, 0, 149));
    for (const Case &c : argbCases) {
        std::vector<std::uint8_t> argb8(8 * 6 * 4);
        for (std::size_t i = 0; i < argb8.size(); ++i) {
            argb8[i] = c.argb[i % 4];
        }
        expectColourAt(draw({BitmapLayout::Argb8From444p10, argb8.data(), argb8.size(), 8, 6}), 0.5,
                       0.5, c.expected);
    }
}

TEST_F(RendererTest, TextureIsReusedWhileTheSizeStays) {
    const Yuv grey[4] = {{126, 128, 128}, {126, 128, 128}, {126, 128, 128}, {126, 128, 128}};
    const auto small = packedQuadrants(16, 8, grey);
    const auto large = packedQuadrants(32, 8, grey);
    draw({BitmapLayout::Packed422From420p8, small.data(), small.size(), 16, 8});
    draw({BitmapLayout::Packed422From420p8, small.data(), small.size(), 16, 8});
    EXPECT_EQ(renderer.textureAllocationCount(), 1);
    draw({BitmapLayout::Packed422From420p8, large.data(), large.size(), 32, 8});
    EXPECT_EQ(renderer.textureAllocationCount(), 2);
}

TEST_F(RendererTest, OddWidthsAndEmptyPicturesAreSafe) {
    const Yuv red[4] = {{81, 90, 240}, {81, 90, 240}, {81, 90, 240}, {81, 90, 240}};
    const auto odd = packedQuadrants(33, 9, red);
    const QImage image = draw({BitmapLayout::Packed422From420p8, odd.data(), odd.size(), 33, 9});
    expectColourAt(image, 0.5, 0.5, qRgb(255, 0, 0));
    expectColourAt(draw({BitmapLayout::Packed422From420p8, nullptr, 0, 0, 0}), 0.5, 0.5,
                   qRgb(0, 0, 0));
}

TEST_F(RendererTest, PictureShorterThanItsLayoutIsNotRead) {
    // A 4:2:2 bitmap described as 16-bit RGB would be read four times over.
    const Yuv red[4] = {{81, 90, 240}, {81, 90, 240}, {81, 90, 240}, {81, 90, 240}};
    const auto packed = packedQuadrants(16, 8, red);
    const QImage image =
        draw({BitmapLayout::Rgba16From420p10, packed.data(), packed.size(), 16, 8});
    expectColourAt(image, 0.5, 0.5, qRgb(0, 0, 0));
}

TEST_F(RendererTest, OverlayAreasAreBlendedOverThePictureTheRestIsNot) {
    // Opaque blue everywhere but in two areas: half-transparent white at the
    // top left, transparent at the bottom right. Only the areas may show.
    const Yuv red[4] = {{81, 90, 240}, {81, 90, 240}, {81, 90, 240}, {81, 90, 240}};
    const auto bytes = packedQuadrants(16, 8, red);
    QImage overlay(kViewport, QImage::Format_RGBA8888_Premultiplied);
    overlay.fill(QColor(0, 0, 255));
    const QRect topLeft(0, 0, kViewport.width() / 2, kViewport.height() / 2);
    const QRect bottomRight(kViewport.width() / 2, kViewport.height() / 2, kViewport.width() / 2,
                            kViewport.height() / 2);
    {
        QPainter painter(&overlay);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(topLeft, QColor(255, 255, 255, 128));
        painter.fillRect(bottomRight, Qt::transparent);
    }
    const auto drawWithOverlay = [&] {
        target->bind();
        renderer.clear(kViewport);
        renderer.drawPicture({BitmapLayout::Packed422From420p8, bytes.data(), bytes.size(), 16, 8},
                             kViewport);
        renderer.drawOverlay(kViewport);
        target->release();
        return target->toImage(true).convertToFormat(QImage::Format_RGB32);
    };
    renderer.setOverlay(overlay, {topLeft, bottomRight});
    const QImage image = drawWithOverlay();
    expectColourAt(image, 0.25, 0.25, qRgb(255, 127, 127));
    expectColourAt(image, 0.75, 0.75, qRgb(255, 0, 0));
    expectColourAt(image, 0.75, 0.25, qRgb(255, 0, 0));
    expectColourAt(image, 0.25, 0.75, qRgb(255, 0, 0));
    renderer.setOverlay(overlay, {});
    expectColourAt(drawWithOverlay(), 0.25, 0.25, qRgb(255, 0, 0));
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
    const Case cases[] = {
        {"yuv420p bt601",
         FramePlaneLayout::Yuv420Planar,
         ColourMatrix::Bt601,
         false,
         {81, 90, 240},
         {41, 240, 110},
         qRgb(255, 0, 0),
         qRgb(0, 0, 255)},
        {"nv12 bt709",
         FramePlaneLayout::Nv12,
         ColourMatrix::Bt709,
         false,
         {173, 42, 26},
         {235, 128, 128},
         qRgb(0, 255, 0),
         qRgb(255, 255, 255)},
        {"nv12 full range",
         FramePlaneLayout::Nv12,
         ColourMatrix::Bt601,
         true,
         {0, 128, 128},
         {255, 128, 128},
         qRgb(0, 0, 0),
         qRgb(255, 255, 255)},
        {"rgba",
         FramePlaneLayout::Rgba8,
         ColourMatrix::Bt601,
         false,
         {255, 0, 0},
         {0, 64, 128},
         qRgb(255, 0, 0),
         qRgb(0, 64, 128)},
        {"bgra",
         FramePlaneLayout::Bgra8,
         ColourMatrix::Bt601,
         false,
         {255, 0, 0},
         {0, 64, 128},
         qRgb(0, 0, 255),
         qRgb(128, 64, 0)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const bool isRgb =
            c.layout == FramePlaneLayout::Rgba8 || c.layout == FramePlaneLayout::Bgra8;
        const int lumaStride = (isRgb ? kWidth * 4 : kWidth) + kPadding;
        const int chromaStride =
            (c.layout == FramePlaneLayout::Nv12 ? kWidth : kWidth / 2) + kPadding;
        std::vector<std::uint8_t> luma(std::size_t(lumaStride) * kHeight, 0xEE);
        std::vector<std::uint8_t> chroma[2] = {
            std::vector<std::uint8_t>(std::size_t(chromaStride) * kHeight / 2, 0xEE),
            std::vector<std::uint8_t>(std::size_t(chromaStride) * kHeight / 2, 0xEE)};
        for (int row = 0; row < kHeight; ++row) {
            const Colour &colour = row < kHeight / 2 ? c.top : c.bottom;
            for (int x = 0; x < kWidth; ++x) {
                std::uint8_t *at = &luma[std::size_t(row) * lumaStride];
                if (isRgb) {
                    at[x * 4] = colour.a;
                    at[x * 4 + 1] = colour.b;
                    at[x * 4 + 2] = colour.c;
                    at[x * 4 + 3] = 255;
                } else {
                    at[x] = colour.a;
                }
            }
            if (!isRgb && row % 2 == 0) {
                for (int x = 0; x < kWidth / 2; ++x) {
                    const std::size_t line = std::size_t(row / 2) * chromaStride;
                    if (c.layout == FramePlaneLayout::Nv12) {
                        chroma[0][line + x * 2] = colour.b;
                        chroma[0][line + x * 2 + 1] = colour.c;
                    } else {
                        chroma[0][line + x] = colour.b;
                        chroma[1][line + x] = colour.c;
                    }
                }
            }
        }
        FramePlanesView frame{c.layout,
                              kWidth,
                              kHeight,
                              {luma.data(), chroma[0].data(), chroma[1].data()},
                              {lumaStride, chromaStride, chromaStride},
                              c.matrix,
                              c.isFullRange};
        const QImage image = draw(frame);
        expectColourAt(image, 0.5, 0.2, c.expectedTop);
        expectColourAt(image, 0.5, 0.8, c.expectedBottom);
    }
}

// Hardware-decoded pictures reach the drawing as NV12 bitmaps. Here the
// frames are converted to NV12 in the test, from flat colours and from a
// decoded picture, and must draw as their 4:2:2 conversion does: the same
// matrix, orientation and +0.1 EV.
struct PlanarPicture {
    std::vector<std::uint8_t> planes[3];
    PlanarPictureView view;
};

PlanarPicture planarQuadrants(int width, int height, const Yuv quadrant[4]) {
    PlanarPicture picture;
    const int chromaWidth = (width + 1) / 2;
    const int chromaHeight = (height + 1) / 2;
    picture.planes[0].resize(std::size_t(width) * height);
    picture.planes[1].resize(std::size_t(chromaWidth) * chromaHeight);
    picture.planes[2].resize(std::size_t(chromaWidth) * chromaHeight);
    const auto colourAt = [&](int x, int y) -> const Yuv & {
        return quadrant[(y < height / 2 ? 0 : 2) + (x < width / 2 ? 0 : 1)];
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.planes[0][std::size_t(y) * width + x] = colourAt(x, y).y;
        }
    }
    for (int y = 0; y < chromaHeight; ++y) {
        for (int x = 0; x < chromaWidth; ++x) {
            picture.planes[1][std::size_t(y) * chromaWidth + x] = colourAt(2 * x, 2 * y).u;
            picture.planes[2][std::size_t(y) * chromaWidth + x] = colourAt(2 * x, 2 * y).v;
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

TEST_F(RendererTest, Nv12PicturesDrawLikeTheirPackedConversion) {
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
         {{81, 90, 240}, {145, 54, 34}, {41, 240, 110}, {126, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(132, 132, 132)}},
        {"bt709 bars and white",
         64,
         720,
         {{63, 102, 240}, {173, 42, 26}, {32, 240, 118}, {235, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)}},
        // Odd sizes: the chroma plane is rounded up, not cut.
        {"odd size",
         34,
         10,
         {{81, 90, 240}, {81, 90, 240}, {41, 240, 110}, {41, 240, 110}},
         {qRgb(255, 0, 0), qRgb(255, 0, 0), qRgb(0, 0, 255), qRgb(0, 0, 255)}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const PlanarPicture picture = planarQuadrants(c.width, c.height, c.quadrant);
        const BitmapBytes nv12 = convertedTo(BitmapLayout::Nv12From420p8, picture.view);
        const QImage image =
            draw({BitmapLayout::Nv12From420p8, nv12.data(), nv12.size(), c.width, c.height});
        for (int quadrant = 0; quadrant < 4; ++quadrant) {
            expectColourAt(image, quadrant % 2 ? 0.75 : 0.25, quadrant < 2 ? 0.25 : 0.75,
                           c.expected[quadrant]);
        }
    }
    // One byte short of its planes: not read at all.
    const PlanarPicture picture = planarQuadrants(16, 8, cases[0].quadrant);
    const BitmapBytes nv12 = convertedTo(BitmapLayout::Nv12From420p8, picture.view);
    expectColourAt(draw({BitmapLayout::Nv12From420p8, nv12.data(), nv12.size() - 1, 16, 8}), 0.5,
                   0.5, qRgb(0, 0, 0));
}

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
    if (!gotPicture) {
        avcodec_send_packet(decoder.get(), nullptr);
        gotPicture = avcodec_receive_frame(decoder.get(), frame.get()) == 0;
    }
    ASSERT_TRUE(gotPicture);

    BitmapBytes nv12(nv12ByteCountFor(frame->width, frame->height));
    ASSERT_TRUE(copyFrameToNv12Bitmap(*frame, nv12.data()));
    PlanarPictureView view;
    for (int plane = 0; plane < 3; ++plane) {
        view.planes[plane] = frame->data[plane];
        view.strides[plane] = frame->linesize[plane];
    }
    view.width = frame->width;
    view.height = frame->height;
    const BitmapBytes packed = convertedTo(BitmapLayout::Packed422From420p8, view);

    const QImage fromNv12 =
        draw({BitmapLayout::Nv12From420p8, nv12.data(), nv12.size(), frame->width, frame->height});
    const QImage fromPacked = draw({BitmapLayout::Packed422From420p8, packed.data(), packed.size(),
                                    frame->width, frame->height});
    // The planes sample chroma with linear filtering and the 4:2:2 path
    // nearest, so colour edges differ a little; flat areas, most of the
    // picture, may not. A wrong matrix, plane order or exposure moves all.
    std::vector<int> differences;
    double totalDifference = 0.0;
    for (int y = 0; y < fromNv12.height(); ++y) {
        for (int x = 0; x < fromNv12.width(); ++x) {
            const QRgb a = fromNv12.pixel(x, y);
            const QRgb b = fromPacked.pixel(x, y);
            const int difference =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                          std::abs(qBlue(a) - qBlue(b))});
            differences.push_back(difference);
            totalDifference += difference;
        }
    }
    std::nth_element(differences.begin(), differences.begin() + differences.size() / 2,
                     differences.end());
    EXPECT_LE(differences[differences.size() / 2], 2) << "median";
    EXPECT_LT(totalDifference / double(differences.size()), 6.0) << "mean";
    // And the picture is not black or flat: the comparison means something.
    EXPECT_NE(fromNv12.pixel(10, 10), fromNv12.pixel(150, 110));
}

}  // namespace
}  // namespace tolvane
