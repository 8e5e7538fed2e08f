#include "views/native_picture_source.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QVideoSink>

#include "support/offscreen_gl_test.h"

namespace tolvane {
namespace {

constexpr QSize kFrameSize{16, 12};

using Pattern = std::vector<uchar>;

// A frame of one flat colour: every row of plane p repeats planes[p]'s bytes
// (Y, U, V for the planar formats, in the order of the format's name for the
// packed ones); chroma planes have half the rows.
QVideoFrame flatFrame(QVideoFrameFormat::PixelFormat pixelFormat,
                      const std::vector<Pattern> &planes) {
    QVideoFrameFormat format(kFrameSize, pixelFormat);
    format.setColorSpace(QVideoFrameFormat::ColorSpace_BT601);
    format.setColorRange(QVideoFrameFormat::ColorRange_Video);
    QVideoFrame frame(format);
    if (!frame.map(QVideoFrame::WriteOnly)) {
        return {};
    }
    for (std::size_t p = 0; p < planes.size(); ++p) {
        const int rows = p == 0 ? kFrameSize.height() : kFrameSize.height() / 2;
        const int bytesPerLine = frame.bytesPerLine(int(p));
        for (int i = 0; i < rows * bytesPerLine; ++i) {
            frame.bits(int(p))[i] = planes[p][std::size_t(i % bytesPerLine) % planes[p].size()];
        }
    }
    frame.unmap();
    return frame;
}

class NativePictureSourceTest : public test::OffscreenGlTest {
protected:
    NativePictureSourceTest() : OffscreenGlTest({64, 48}) {}

    void deliver(const QVideoFrame &frame) {
        sink.setVideoFrame(frame);
        QCoreApplication::processEvents();
    }

    QVideoSink sink;
    NativePictureSource source{&sink};
};

TEST_F(NativePictureSourceTest, EachPixelFormatIsDrawnInItsColours) {
    using F = QVideoFrameFormat;
    struct Case {
        QVideoFrameFormat::PixelFormat pixelFormat;
        std::vector<Pattern> planes;
        QRgb expected;
        bool isConvertedByQt;
    };
    const QRgb red = qRgb(255, 0, 0);
    const Case cases[] = {
        {F::Format_YUV420P, {{81}, {90}, {240}}, red, false},
        {F::Format_YV12, {{81}, {240}, {90}}, red, false},
        {F::Format_NV12, {{81}, {90, 240}}, red, false},
        {F::Format_RGBX8888, {{255, 64, 0, 255}}, qRgb(255, 64, 0), false},
        {F::Format_BGRA8888, {{0, 64, 255, 255}}, qRgb(255, 64, 0), false},
        {F::Format_UYVY, {{90, 81, 240, 81}}, red, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QVideoFrameFormat::pixelFormatToString(c.pixelFormat).toStdString());
        const QVideoFrame frame = flatFrame(c.pixelFormat, c.planes);
        ASSERT_TRUE(frame.isValid());
        const int planeDraws = source.planeDrawCount();
        const int convertedDraws = source.convertedDrawCount();
        deliver(frame);
        EXPECT_TRUE(source.canDrawPicture());
        const QImage image = drawn([&] { source.drawPicture(renderer, viewport); });
        // Qt's own conversion rounds its own way.
        EXPECT_TRUE(test::isColourNear(test::colourAt(image, 0.5, 0.5), c.expected,
                                       c.isConvertedByQt ? 12 : 3));
        EXPECT_EQ(source.planeDrawCount() - planeDraws, c.isConvertedByQt ? 0 : 1);
        EXPECT_EQ(source.convertedDrawCount() - convertedDraws, c.isConvertedByQt ? 1 : 0);
        EXPECT_FALSE(source.canDrawPicture()) << "nothing new until the next frame";
    }
}

TEST_F(NativePictureSourceTest, AsynchronousWhileFramesArriveAndWakesOnTheFirst) {
    int wakes = 0;
    source.setWakeHandler([&wakes] { ++wakes; });
    EXPECT_FALSE(source.isAsynchronous()) << "no frame yet";
    const QVideoFrame frame = flatFrame(QVideoFrameFormat::Format_NV12, {{126}, {128, 128}});
    deliver(frame);
    EXPECT_TRUE(source.isAsynchronous());
    EXPECT_EQ(wakes, 1);
    deliver(frame);
    EXPECT_EQ(wakes, 1) << "already awake";
    deliver(QVideoFrame());
    EXPECT_TRUE(source.canDrawPicture()) << "an empty frame keeps the last picture";
}

}  // namespace
}  // namespace tolvane
