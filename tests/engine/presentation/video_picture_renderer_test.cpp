#include "engine/presentation/video_picture_renderer.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <cstdlib>
#include <vector>

#include "engine/my_ca_opengl_layer.h"

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
    const std::uint16_t rgbaPixel[4] = {65535, 0, 32768, 65535};
    const std::uint8_t argbPixel[4] = {255, 64, 128, 0};
    std::vector<std::uint16_t> rgba16(8 * 6 * 4);
    std::vector<std::uint8_t> argb8(8 * 6 * 4);
    for (std::size_t i = 0; i < rgba16.size(); ++i) {
        rgba16[i] = rgbaPixel[i % 4];
        argb8[i] = argbPixel[i % 4];
    }
    const auto *rgbaBytes = reinterpret_cast<const std::uint8_t *>(rgba16.data());
    expectColourAt(draw({BitmapLayout::Rgba16From444p10, rgbaBytes, rgba16.size() * 2, 8, 6}), 0.5,
                   0.5, qRgb(255, 0, 149));
    expectColourAt(draw({BitmapLayout::Argb8From444p10, argb8.data(), argb8.size(), 8, 6}), 0.5,
                   0.5, qRgb(76, 150, 0));
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

}  // namespace
}  // namespace tolvane
