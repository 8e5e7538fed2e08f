#include "window_frame_strings.h"

#include <QStringList>

namespace tolvane {
namespace {

// A window counts as visible when this much of its top strip (where it is
// grabbed to be moved) lies on a screen.
constexpr int kGrabbableStripHeight = 24;
constexpr int kGrabbableStripMinimumWidth = 60;

}  // namespace

QString windowFrameString(const QRect &frame) {
    return QStringLiteral("%1 %2 %3 %4")
        .arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height());
}

std::optional<QRect> windowFrameFromString(const QString &frameString) {
    const QStringList parts = frameString.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() != 4) {
        return std::nullopt;
    }
    int numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts[i].toInt(&isNumber);
        if (!isNumber) {
            return std::nullopt;
        }
    }
    const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (frame.width() <= 0 || frame.height() <= 0) {
        return std::nullopt;
    }
    return frame;
}

QRect frameMovedOntoVisibleScreen(const QRect &frame, const QList<QRect> &visibleFrames) {
    if (visibleFrames.isEmpty()) {
        return frame;
    }
    const QRect strip(frame.x(), frame.y(), frame.width(), kGrabbableStripHeight);
    for (const QRect &screen : visibleFrames) {
        const QRect shown = screen.intersected(strip);
        if (shown.width() >= std::min(kGrabbableStripMinimumWidth, frame.width()) &&
            shown.height() > 0) {
            return frame;
        }
    }
    QRect moved = frame;
    moved.moveCenter(visibleFrames.first().center());
    moved.moveTop(std::max(moved.top(), visibleFrames.first().top()));
    return moved;
}

}  // namespace tolvane
