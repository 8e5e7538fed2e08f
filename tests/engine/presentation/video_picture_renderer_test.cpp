#include "engine/presentation/video_picture_renderer.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <algorithm>
#include <vector>

#include "engine/video/bitmap_conversion.h"
#include "engine/video/bitmap_data.h"
#include "support/offscreen_gl_test.h"

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
    picture.view.width = width;
    picture.view.height = height;
    for (int plane = 0; plane < 3; ++plane) {
        const int shift = plane == 0 ? 0 : 1;  // chroma rounded up at odd sizes
        const int planeWidth = (width + shift) >> shift;
        const int planeHeight = (height + shift) >> shift;
        picture.planes[plane].resize(std::size_t(planeWidth) * planeHeight);
        for (int y = 0; y < planeHeight; ++y) {
            for (int x = 0; x < planeWidth; ++x) {
                const Yuv &colour = quadrant[((y << shift) < height / 2 ? 0 : 2) +
                                             ((x << shift) < width / 2 ? 0 : 1)];
                picture.planes[plane][std::size_t(y) * planeWidth + x] = plane == 0   ? colour.y
                                                                         : plane == 1 ? colour.u
                                                                                      : colour.v;
            }
        }
        picture.view.planes[plane] = picture.planes[plane].data();
        picture.view.strides[plane] = planeWidth;
    }
    return picture;
}

BitmapBytes convertedTo(BitmapLayout layout, const PlanarPictureView &view) {
    BitmapBytes bitmap(bitmapByteCountFor(layout, view.width, view.height));
    convertPictureToBitmap(layout, view, true, bitmap.data());
    return bitmap;
}

BitmapBytes flatRed(BitmapLayout layout, int width = 16) {
    return convertedTo(layout,
                       planarQuadrants(width, 8, {kRed601, kRed601, kRed601, kRed601}).view);
}

// Pictures are drawn from NV12, the packed 4:2:2 conversion or its first
// field (which holds half the rows and must still fill the view): each with
// the matrix of the frame's height and the +0.1 EV that the grey shows.
TEST_F(RendererTest, PackedNv12AndOneFieldPicturesUseTheMatrixOfTheirHeight) {
    struct Case {
        const char *name;
        int width, height;
        Yuv quadrant[4];
        QRgb expected[4];
    };
    // clang-format off
    const Case cases[] = {
        {"bt601 bars and grey", 64, 240, {kRed601, {145, 54, 34}, kBlue601, {126, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(132, 132, 132)}},
        {"bt709 bars and white", 64, 720, {{63, 102, 240}, {173, 42, 26}, {32, 240, 118}, {235, 128, 128}},
         {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)}},
        // Odd sizes: the chroma is rounded up, not cut.
        {"odd size", 33, 9, {kRed601, kRed601, kBlue601, kBlue601},
         {qRgb(255, 0, 0), qRgb(255, 0, 0), qRgb(0, 0, 255), qRgb(0, 0, 255)}},
    };
    // clang-format on
    for (const Case &c : cases) {
        const PlanarPicture picture = planarQuadrants(c.width, c.height, c.quadrant);
        for (const BitmapLayout layout :
             {BitmapLayout::Packed422From420p8, BitmapLayout::Nv12From420p8,
              BitmapLayout::Packed422FirstFieldFrom420p8}) {
            SCOPED_TRACE(std::string(c.name) + ", layout " + std::to_string(int(layout)));
            const BitmapBytes bitmap = convertedTo(layout, picture.view);
            const QImage image = draw({layout, bitmap.data(), bitmap.size(), c.width, c.height});
            for (int q = 0; q < 4; ++q) {
                EXPECT_TRUE(isColourNear(colourAt(image, 0.25 + q % 2 * 0.5, 0.25 + q / 2 * 0.5),
                                         c.expected[q]))
                    << "quadrant " << q;
            }
        }
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
        // clang-format off
        {BitmapLayout::Rgba16From444p10, {0xff, 0xff, 0, 0, 0, 0x80, 0xff, 0xff}, qRgb(255, 0, 149)},
        {BitmapLayout::Argb8From444p10, {255, 64, 128, 0}, qRgb(76, 150, 0)},
        {BitmapLayout::Argb8From444p10, {255, 8, 250, 40}, qRgb(11, 255, 48)},
        {BitmapLayout::Argb8From444p10, {255, 10, 200, 255}, qRgb(14, 233, 255)},
        // clang-format on
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
        const BitmapBytes bitmap = flatRed(BitmapLayout::Packed422From420p8, width);
        draw({BitmapLayout::Packed422From420p8, bitmap.data(), bitmap.size(), width, 8});
    }
    EXPECT_EQ(renderer.textureAllocationCount(), 2);
}

// A bitmap shorter than its layout and size need is not read at all.
TEST_F(RendererTest, PicturesShorterThanTheirLayoutOrEmptyDrawNothing) {
    const BitmapBytes packed = flatRed(BitmapLayout::Packed422From420p8);
    const BitmapBytes nv12 = flatRed(BitmapLayout::Nv12From420p8);
    const PictureView cases[] = {
        {BitmapLayout::Rgba16From420p10, packed.data(), packed.size(), 16, 8},  // read 4x over
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
    const BitmapBytes bytes = flatRed(BitmapLayout::Packed422From420p8);
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
    using Bytes = std::vector<std::uint8_t>;
    struct Case {
        const char *name;
        FramePlaneLayout layout;
        ColourMatrix matrix;
        bool isFullRange;
        Bytes top[3], bottom[3];  // one pixel of each plane, repeated along its rows
        QRgb expectedTop, expectedBottom;
    };
    // clang-format off
    const Case cases[] = {
        {"yuv420p bt601", FramePlaneLayout::Yuv420Planar, ColourMatrix::Bt601, false, {{81}, {90}, {240}}, {{41}, {240}, {110}}, qRgb(255, 0, 0), qRgb(0, 0, 255)},
        {"nv12 bt709", FramePlaneLayout::Nv12, ColourMatrix::Bt709, false, {{173}, {42, 26}}, {{235}, {128, 128}}, qRgb(0, 255, 0), qRgb(255, 255, 255)},
        {"nv12 full range", FramePlaneLayout::Nv12, ColourMatrix::Bt601, true, {{0}, {128, 128}}, {{255}, {128, 128}}, qRgb(0, 0, 0), qRgb(255, 255, 255)},
        {"rgba", FramePlaneLayout::Rgba8, ColourMatrix::Bt601, false, {{255, 0, 0, 255}}, {{0, 64, 128, 255}}, qRgb(255, 0, 0), qRgb(0, 64, 128)},
        {"bgra", FramePlaneLayout::Bgra8, ColourMatrix::Bt601, false, {{255, 0, 0, 255}}, {{0, 64, 128, 255}}, qRgb(0, 0, 255), qRgb(128, 64, 0)},
    };
    // clang-format on
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        FramePlanesView frame{c.layout, kWidth, kHeight, {}, {}, c.matrix, c.isFullRange};
        Bytes planes[3];
        for (int p = 0; p < 3 && !c.top[p].empty(); ++p) {
            const int rows = p == 0 ? kHeight : kHeight / 2;
            const int pixels = p == 0 ? kWidth : kWidth / 2;
            const std::size_t pixelBytes = c.top[p].size();
            frame.bytesPerLine[p] = pixels * int(pixelBytes) + kPadding;
            planes[p].assign(std::size_t(frame.bytesPerLine[p]) * rows, 0xEE);
            for (int row = 0; row < rows; ++row) {
                const Bytes &pixel = row < rows / 2 ? c.top[p] : c.bottom[p];
                for (int x = 0; x < pixels; ++x) {
                    std::copy(
                        pixel.begin(), pixel.end(),
                        &planes[p][std::size_t(row * frame.bytesPerLine[p]) + x * pixelBytes]);
                }
            }
            frame.planes[p] = planes[p].data();
        }
        const QImage image = draw(frame);
        EXPECT_TRUE(isColourNear(colourAt(image, 0.5, 0.2), c.expectedTop));
        EXPECT_TRUE(isColourNear(colourAt(image, 0.5, 0.8), c.expectedBottom));
    }
}

}  // namespace
}  // namespace tolvane
