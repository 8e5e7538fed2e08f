#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <cstdlib>
#include <functional>
#include <memory>

#include "engine/presentation/video_picture_renderer.h"

namespace tolvane::test {

// An offscreen GL 3.3 context with a renderer and a framebuffer of
// `viewport` to draw into and read back; the test skips where no context
// can be made.
class OffscreenGlTest : public ::testing::Test {
protected:
    explicit OffscreenGlTest(QSize viewport) : viewport(viewport) {}

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
        target = std::make_unique<QOpenGLFramebufferObject>(viewport);
        ASSERT_TRUE(renderer.initialize()) << "shaders must compile";
    }

    void TearDown() override {
        if (context.isValid() && QOpenGLContext::currentContext() == &context) {
            renderer.release();
            target.reset();
            context.doneCurrent();
        }
    }

    // What `draw` leaves in the framebuffer.
    QImage drawn(const std::function<void()> &draw) {
        target->bind();
        draw();
        target->release();
        return target->toImage(true).convertToFormat(QImage::Format_RGB32);
    }

    const QSize viewport;
    QOpenGLContext context;
    QOffscreenSurface surface;
    std::unique_ptr<QOpenGLFramebufferObject> target;
    VideoPictureRenderer renderer;
};

// The colour at a fraction of the image, from the top left.
inline QRgb colourAt(const QImage &image, double fx, double fy) {
    return image.pixel(int(fx * image.width()), int(fy * image.height()));
}

inline ::testing::AssertionResult isColourNear(QRgb actual, QRgb expected, int tolerance = 3) {
    const auto near = [tolerance](int a, int b) { return std::abs(a - b) <= tolerance; };
    if (near(qRed(actual), qRed(expected)) && near(qGreen(actual), qGreen(expected)) &&
        near(qBlue(actual), qBlue(expected))) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << std::hex << "got " << actual << ", want " << expected;
}

}  // namespace tolvane::test
