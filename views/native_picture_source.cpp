#include "native_picture_source.h"

#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QVideoSink>
#include <optional>

#include "engine/presentation/video_picture_renderer.h"

namespace tolvane {

namespace {

struct PlaneLayoutFor {
    QVideoFrameFormat::PixelFormat pixelFormat;
    FramePlaneLayout layout;
    bool swapsChroma;  // YV12 holds V before U
};
constexpr PlaneLayoutFor kPlaneLayouts[] = {
    {QVideoFrameFormat::Format_YUV420P, FramePlaneLayout::Yuv420Planar, false},
    {QVideoFrameFormat::Format_YV12, FramePlaneLayout::Yuv420Planar, true},
    {QVideoFrameFormat::Format_NV12, FramePlaneLayout::Nv12, false},
    {QVideoFrameFormat::Format_RGBA8888, FramePlaneLayout::Rgba8, false},
    {QVideoFrameFormat::Format_RGBX8888, FramePlaneLayout::Rgba8, false},
    {QVideoFrameFormat::Format_BGRA8888, FramePlaneLayout::Bgra8, false},
    {QVideoFrameFormat::Format_BGRX8888, FramePlaneLayout::Bgra8, false},
};

std::optional<PlaneLayoutFor> planeLayoutFor(QVideoFrameFormat::PixelFormat pixelFormat) {
    for (const PlaneLayoutFor &entry : kPlaneLayouts) {
        if (entry.pixelFormat == pixelFormat) {
            return entry;
        }
    }
    return std::nullopt;
}

ColourMatrix colourMatrixFor(const QVideoFrameFormat &format) {
    switch (format.colorSpace()) {
        case QVideoFrameFormat::ColorSpace_BT709:
        case QVideoFrameFormat::ColorSpace_BT2020:
            return ColourMatrix::Bt709;
        case QVideoFrameFormat::ColorSpace_BT601:
            return ColourMatrix::Bt601;
        default:
            return colourMatrixForHeight(format.frameHeight());
    }
}

// Maps the frame for reading and unmaps it when done.
class MappedFrame {
public:
    explicit MappedFrame(QVideoFrame &frame)
        : frame(frame), isMapped(frame.map(QVideoFrame::ReadOnly)) {}
    ~MappedFrame() {
        if (isMapped) {
            frame.unmap();
        }
    }
    MappedFrame(const MappedFrame &) = delete;
    MappedFrame &operator=(const MappedFrame &) = delete;
    explicit operator bool() const { return isMapped; }

private:
    QVideoFrame &frame;
    bool isMapped;
};

// Qt converts on a GL context of its own, which it leaves current: the
// view's context and its bound framebuffer are put back for the draw.
QImage convertedImageKeepingContext(const QVideoFrame &frame) {
    QOpenGLContext *context = QOpenGLContext::currentContext();
    QSurface *surface = context != nullptr ? context->surface() : nullptr;
    GLint framebuffer = 0;
    if (context != nullptr) {
        context->functions()->glGetIntegerv(GL_FRAMEBUFFER_BINDING, &framebuffer);
    }
    QImage image = frame.toImage().convertToFormat(QImage::Format_RGBA8888);
    if (context != nullptr && QOpenGLContext::currentContext() != context) {
        context->makeCurrent(surface);
    }
    if (context != nullptr) {
        context->functions()->glBindFramebuffer(GL_FRAMEBUFFER, GLuint(framebuffer));
    }
    return image;
}

}  // namespace

NativePictureSource::NativePictureSource(QVideoSink *sink) {
    // The sink may emit from GStreamer's streaming thread: the receiver,
    // living on this thread, makes the connection queued then.
    QObject::connect(sink, &QVideoSink::videoFrameChanged, &receiver,
                     [this](const QVideoFrame &frame) { onVideoFrameChanged(frame); });
}

void NativePictureSource::onVideoFrameChanged(const QVideoFrame &frame) {
    if (!frame.isValid()) {
        return;
    }
    const bool wasAsynchronous = isAsynchronous();
    latestFrame = frame;
    hasNewFrame = true;
    lastFrameArrival = Clock::now();
    if (!wasAsynchronous && wake) {
        wake();
    }
}

bool NativePictureSource::isAsynchronous() const {
    return latestFrame.isValid() && Clock::now() - lastFrameArrival < kIdleAfterLastFrame;
}

bool NativePictureSource::canDrawPicture() { return hasNewFrame; }

void NativePictureSource::viewDidResize() { hasNewFrame = latestFrame.isValid(); }

void NativePictureSource::drawPicture(VideoPictureRenderer &renderer, QSize viewportPixels) {
    renderer.clear(viewportPixels);
    hasNewFrame = false;
    if (latestFrame.isValid()) {
        drawFrame(renderer, viewportPixels);
    }
}

void NativePictureSource::drawFrame(VideoPictureRenderer &renderer, QSize viewportPixels) {
    const QVideoFrameFormat format = latestFrame.surfaceFormat();
    const std::optional<PlaneLayoutFor> planes = planeLayoutFor(latestFrame.pixelFormat());
    if (planes && latestFrame.handleType() == QVideoFrame::NoHandle) {
        const MappedFrame mapped(latestFrame);
        if (mapped && latestFrame.planeCount() >= 1) {
            FramePlanesView view;
            view.layout = planes->layout;
            view.width = latestFrame.width();
            view.height = latestFrame.height();
            for (int plane = 0; plane < std::min(latestFrame.planeCount(), 3); ++plane) {
                view.planes[plane] = latestFrame.bits(plane);
                view.bytesPerLine[plane] = latestFrame.bytesPerLine(plane);
            }
            if (planes->swapsChroma) {
                std::swap(view.planes[1], view.planes[2]);
                std::swap(view.bytesPerLine[1], view.bytesPerLine[2]);
            }
            view.matrix = colourMatrixFor(format);
            view.isFullRange = format.colorRange() == QVideoFrameFormat::ColorRange_Full;
            renderer.drawFramePlanes(view, viewportPixels);
            ++planeDraws;
            return;
        }
    }
    const QImage image = convertedImageKeepingContext(latestFrame);
    if (image.isNull()) {
        return;
    }
    FramePlanesView view;
    view.layout = FramePlaneLayout::Rgba8;
    view.width = image.width();
    view.height = image.height();
    view.planes[0] = image.constBits();
    view.bytesPerLine[0] = int(image.bytesPerLine());
    renderer.drawFramePlanes(view, viewportPixels);
    ++convertedDraws;
}

}  // namespace tolvane
