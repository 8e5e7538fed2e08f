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

struct Rgb {
    int r, g, b;
};

std::ostream &operator<<(std::ostream &out, const Rgb &c) {
    return out << '(' << c.r << ", " << c.g << ", " << c.b << ')';
}

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

    // The colour at a fraction of the view, measured from the top left.
    static Rgb colourAt(const QImage &image, double fx, double fy) {
        const QRgb pixel = image.pixel(int(fx * image.width()), int(fy * image.height()));
        return {qRed(pixel), qGreen(pixel), qBlue(pixel)};
    }

    QOpenGLContext context;
    QOffscreenSurface surface;
    std::unique_ptr<QOpenGLFramebufferObject> target;
    VideoPictureRenderer renderer;
};

void expectNear(const Rgb &actual, const Rgb &expected, const char *what) {
    const auto near = [](int a, int b) { return std::abs(a - b) <= 3; };
    EXPECT_TRUE(near(actual.r, expected.r) && near(actual.g, expected.g) &&
                near(actual.b, expected.b))
        << what << ": got " << actual << " want " << expected;
}

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
        Rgb expected[4];
    };
    const Case cases[] = {
        {240,
         {{81, 90, 240}, {145, 54, 34}, {41, 240, 110}, {126, 128, 128}},
         {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {132, 132, 132}}},
        {720,
         {{63, 102, 240}, {173, 42, 26}, {32, 240, 118}, {235, 128, 128}},
         {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}}},
    };
    for (const Case &c : cases) {
        const int width = 64;
        const auto bytes = packedQuadrants(width, c.height, c.quadrant);
        const QImage image = draw({kPixelFormat420p8, true, bytes.data(), width, c.height});
        expectNear(colourAt(image, 0.25, 0.25), c.expected[0], "top left");
        expectNear(colourAt(image, 0.75, 0.25), c.expected[1], "top right");
        expectNear(colourAt(image, 0.25, 0.75), c.expected[2], "bottom left");
        expectNear(colourAt(image, 0.75, 0.75), c.expected[3], "bottom right");
    }
}

TEST_F(RendererTest, OneFieldPictureIsStretchedToTheWholeView) {
    // The bitmap holds half the frame's rows; the view must still be filled.
    const Yuv quadrant[4] = {{81, 90, 240}, {81, 90, 240}, {41, 240, 110}, {41, 240, 110}};
    const int width = 32;
    const int frameHeight = 48;
    const auto bytes = packedQuadrants(width, frameHeight / 2, quadrant);
    const QImage image =
        draw({kPixelFormat420p8Interlaced, true, bytes.data(), width, frameHeight});
    expectNear(colourAt(image, 0.5, 0.05), {255, 0, 0}, "top edge");
    expectNear(colourAt(image, 0.5, 0.45), {255, 0, 0}, "just above the middle");
    expectNear(colourAt(image, 0.5, 0.55), {0, 0, 255}, "just below the middle");
    expectNear(colourAt(image, 0.5, 0.95), {0, 0, 255}, "bottom edge");
}

TEST_F(RendererTest, RgbLayoutsGetHalfAStop) {
    const int pixels = 8 * 6;
    const std::uint16_t rgbaPixel[4] = {65535, 0, 32768, 65535};
    std::vector<std::uint16_t> rgba16;
    const std::uint8_t argbPixel[4] = {255, 64, 128, 0};
    std::vector<std::uint8_t> argb8;
    for (int i = 0; i < pixels; ++i) {
        rgba16.insert(rgba16.end(), rgbaPixel, rgbaPixel + 4);
        argb8.insert(argb8.end(), argbPixel, argbPixel + 4);
    }
    const auto *rgbaBytes = reinterpret_cast<const std::uint8_t *>(rgba16.data());
    expectNear(colourAt(draw({kPixelFormat444p10, true, rgbaBytes, 8, 6}), 0.5, 0.5), {255, 0, 149},
               "16-bit RGBA");
    expectNear(colourAt(draw({kPixelFormat444p10, false, argb8.data(), 8, 6}), 0.5, 0.5),
               {76, 150, 0}, "8-bit ARGB");
}

TEST_F(RendererTest, TextureIsReusedWhileTheSizeStays) {
    const Yuv grey[4] = {{126, 128, 128}, {126, 128, 128}, {126, 128, 128}, {126, 128, 128}};
    const auto small = packedQuadrants(16, 8, grey);
    const auto large = packedQuadrants(32, 8, grey);
    draw({kPixelFormat420p8, true, small.data(), 16, 8});
    draw({kPixelFormat420p8, true, small.data(), 16, 8});
    EXPECT_EQ(renderer.textureAllocationCount(), 1);
    draw({kPixelFormat420p8, true, large.data(), 32, 8});
    EXPECT_EQ(renderer.textureAllocationCount(), 2);
}

TEST_F(RendererTest, OddWidthsAndEmptyPicturesAreSafe) {
    const Yuv red[4] = {{81, 90, 240}, {81, 90, 240}, {81, 90, 240}, {81, 90, 240}};
    const auto odd = packedQuadrants(33, 9, red);
    const QImage image = draw({kPixelFormat420p8, true, odd.data(), 33, 9});
    expectNear(colourAt(image, 0.5, 0.5), {255, 0, 0}, "odd-sized picture");
    const QImage empty = draw({kPixelFormat420p8, true, nullptr, 0, 0});
    expectNear(colourAt(empty, 0.5, 0.5), {0, 0, 0}, "nothing drawn");
}

}  // namespace
}  // namespace tolvane
