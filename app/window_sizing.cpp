#include "app/window_sizing.h"

#include <cmath>

namespace tolvane {
namespace {

int rounded(double value) { return int(std::trunc(value + 0.5)); }

// The comparisons of ratios are made in single precision, as the window
// frames that they are compared with are.
float visibleRatio(const QRect &visibleFrame) {
    return float(visibleFrame.width()) / float(visibleFrame.height());
}

bool isWidthLeading(double cRatio, const QRect &visibleFrame) {
    return float(cRatio) >= visibleRatio(visibleFrame);
}

}  // namespace

QSizeF naturalPictureSize(int width, int height) {
    // One side without the other is no size either: a ratio cannot be made of it.
    if (width < 1 || height < 1) {
        return kFallbackNaturalSize;
    }
    return QSizeF(width, height);
}

QSize naturalSize(QSizeF natural, double cRatio, const QRect &visibleFrame) {
    const float r = visibleRatio(visibleFrame);
    if (float(cRatio) == r) {
        return QSize(rounded(natural.width()), rounded(natural.height()));
    }
    if (float(cRatio) > r) {
        return QSize(rounded(natural.width()), rounded(natural.width() / cRatio));
    }
    return QSize(rounded(cRatio * natural.height()), rounded(natural.height()));
}

QSize maximumSize(double cRatio, const QRect &visibleFrame) {
    if (isWidthLeading(cRatio, visibleFrame)) {
        return QSize(visibleFrame.width(), rounded(visibleFrame.width() / cRatio));
    }
    return QSize(rounded(cRatio * visibleFrame.height()), visibleFrame.height());
}

QSize multipliedSize(QSize current, int step, double cRatio, const QRect &visibleFrame) {
    if (isWidthLeading(cRatio, visibleFrame)) {
        const int width = (current.width() / kSizeStepPixels + step) * kSizeStepPixels;
        return QSize(width, rounded(width / cRatio));
    }
    const int height = (current.height() / kSizeStepPixels + step) * kSizeStepPixels;
    return QSize(rounded(cRatio * height), height);
}

QSize limitedSize(QSize size, double cRatio, const QRect &visibleFrame) {
    if (size.width() < kMinimumWindowWidth) {
        return QSize(kMinimumWindowWidth, rounded(kMinimumWindowWidth / cRatio));
    }
    if (size.width() < visibleFrame.width() && size.height() < visibleFrame.height()) {
        return size;
    }
    return maximumSize(cRatio, visibleFrame);
}

QRect ratioRect(const QRect &rect, double cRatio) {
    if (float(rect.width()) / float(rect.height()) == float(cRatio)) {
        return rect;
    }
    return QRect(rect.x(), rect.y(), rect.width(), rounded(rect.width() / cRatio));
}

QRect fullViewRect(double cRatio, const QRect &fullFrame) {
    const double fullWidth = fullFrame.width();
    const double fullHeight = fullFrame.height();
    if (float(cRatio) >= float(fullWidth / fullHeight)) {
        const int height = rounded(fullWidth / cRatio);
        return QRect(0, rounded((fullHeight - height) * 0.5), fullFrame.width(), height);
    }
    const int width = rounded(cRatio * fullHeight);
    return QRect(rounded((fullWidth - width) * 0.5), 0, width, fullFrame.height());
}

QPoint centeredOrigin(QSize size, const QRect &visibleFrame) {
    return QPoint(int(visibleFrame.x() + (visibleFrame.width() - size.width()) * 0.5),
                  int(visibleFrame.y() + (visibleFrame.height() - size.height()) * 0.5));
}

VisibleOrigin visibleOrigin(const QRect &frame, const QRect &visibleFrame) {
    QRect moved = frame;
    if (moved.left() < visibleFrame.left()) {
        moved.moveLeft(visibleFrame.left());
    }
    if (moved.bottom() > visibleFrame.bottom()) {
        moved.moveBottom(visibleFrame.bottom());
    }
    if (moved.right() > visibleFrame.right()) {
        moved.moveRight(visibleFrame.right());
    }
    if (moved.top() < visibleFrame.top()) {
        moved.moveTop(visibleFrame.top());
    }
    return VisibleOrigin{moved.topLeft(), moved.topLeft() == frame.topLeft()};
}

bool isRealSize(QSize windowSize, QSize naturalSizeAtRatio) {
    return windowSize == naturalSizeAtRatio;
}

bool isMaximumSize(QSize windowSize, const QRect &visibleFrame) {
    return windowSize.width() == visibleFrame.width() ||
           windowSize.height() == visibleFrame.height();
}

bool isOverSize(QSize windowSize, const QRect &visibleFrame) {
    return windowSize.width() > visibleFrame.width() || windowSize.height() > visibleFrame.height();
}

bool isMinimumSize(QSize windowSize) { return windowSize.width() == kMinimumWindowWidth; }

QRect placedFrame(QPoint origin, QSize size, const QRect &visibleFrame) {
    if (isMaximumSize(size, visibleFrame)) {
        return QRect(centeredOrigin(size, visibleFrame), size);
    }
    const QRect frame(origin, size);
    return QRect(visibleOrigin(frame, visibleFrame).origin, size);
}

std::optional<QRect> sizeChangedFrame(const QRect &frame, int step, double cRatio,
                                      const QRect &visibleFrame) {
    if (step > 0 ? isMaximumSize(frame.size(), visibleFrame) : isMinimumSize(frame.size())) {
        return std::nullopt;
    }
    const QSize size =
        limitedSize(multipliedSize(frame.size(), step, cRatio, visibleFrame), cRatio, visibleFrame);
    return placedFrame(frame.topLeft(), size, visibleFrame);
}

QRect ratioChangedFrame(const QRect &frame, double cRatio, const QRect &visibleFrame) {
    const QSize size =
        limitedSize(QSize(frame.width(), rounded(frame.width() / cRatio)), cRatio, visibleFrame);
    return placedFrame(frame.topLeft(), size, visibleFrame);
}

}  // namespace tolvane
