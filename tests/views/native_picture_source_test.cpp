#include "views/native_picture_source.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QVideoSink>
#include <cstring>

#include "support/offscreen_gl_test.h"

namespace tolvane {
namespace {

constexpr QSize kFrameSize{16, 12};

struct Bytes {
    std::uint8_t a, b, c;  // Y U V, or R G B
};

// A frame of one flat colour in `pixelFormat`, rows padded as Qt lays them out.
QVideoFrame flatFrame(QVideoFrameFormat::PixelFormat pixelFormat, Bytes colour) {
    QVideoFrameFormat format(kFrameSize, pixelFormat);
    format.setColorSpace(QVideoFrameFormat::ColorSpace_BT601);
    format.setColorRange(QVideoFrameFormat::ColorRange_Video);
    QVideoFrame frame(format);
    if (!frame.map(QVideoFrame::WriteOnly)) {
        return {};
    }
    const int width = kFrameSize.width();
    const int height = kFrameSize.height();
    const auto fillRows = [&](int plane, int rows, auto &&fillRow) {
        for (int row = 0; row < rows; ++row) {
            fillRow(frame.bits(plane) + std::size_t(row) * frame.bytesPerLine(plane));
        }
    };
    switch (pixelFormat) {
        case QVideoFrameFormat::Format_YUV420P:
        case QVideoFrameFormat::Format_YV12: {
            const bool isYv12 = pixelFormat == QVideoFrameFormat::Format_YV12;
            fillRows(0, height, [&](uchar *row) { std::memset(row, colour.a, width); });
            fillRows(1, height / 2, [&](uchar *row) {
                std::memset(row, isYv12 ? colour.c : colour.b, width / 2);
            });
            fillRows(2, height / 2, [&](uchar *row) {
                std::memset(row, isYv12 ? colour.b : colour.c, width / 2);
            });
            break;
        }
        case QVideoFrameFormat::Format_NV12:
            fillRows(0, height, [&](uchar *row) { std::memset(row, colour.a, width); });
            fillRows(1, height / 2, [&](uchar *row) {
                for (int x = 0; x < width / 2; ++x) {
                    row[2 * x] = colour.b;
                    row[2 * x + 1] = colour.c;
                }
            });
            break;
        case QVideoFrameFormat::Format_UYVY:
            fillRows(0, height, [&](uchar *row) {
                for (int x = 0; x < width / 2; ++x) {
                    const uchar pair[4] = {colour.b, colour.a, colour.c, colour.a};
                    std::memcpy(row + 4 * x, pair, 4);
                }
            });
            break;
        default: {  // 8-bit RGB: the byte order is the format's name
            const bool isBgr = pixelFormat == QVideoFrameFormat::Format_BGRA8888 ||
                               pixelFormat == QVideoFrameFormat::Format_BGRX8888;
            fillRows(0, height, [&](uchar *row) {
                for (int x = 0; x < width; ++x) {
                    const uchar pixel[4] = {isBgr ? colour.c : colour.a, colour.b,
                                            isBgr ? colour.a : colour.c, 255};
                    std::memcpy(row + 4 * x, pixel, 4);
                }
            });
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
    const Bytes red601 = {81, 90, 240};
    const Bytes rgb = {255, 64, 0};
    struct Case {
        QVideoFrameFormat::PixelFormat pixelFormat;
        Bytes bytes;
        QRgb expected;
        bool isConvertedByQt;
    };
    const Case cases[] = {
        {QVideoFrameFormat::Format_YUV420P, red601, qRgb(255, 0, 0), false},
        {QVideoFrameFormat::Format_YV12, red601, qRgb(255, 0, 0), false},
        {QVideoFrameFormat::Format_NV12, red601, qRgb(255, 0, 0), false},
        {QVideoFrameFormat::Format_RGBX8888, rgb, qRgb(255, 64, 0), false},
        {QVideoFrameFormat::Format_BGRA8888, rgb, qRgb(255, 64, 0), false},
        {QVideoFrameFormat::Format_UYVY, red601, qRgb(255, 0, 0), true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(QVideoFrameFormat::pixelFormatToString(c.pixelFormat).toStdString());
        const QVideoFrame frame = flatFrame(c.pixelFormat, c.bytes);
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
    const QVideoFrame frame = flatFrame(QVideoFrameFormat::Format_NV12, {126, 128, 128});
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
