#include "views/status_layers.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <chrono>

namespace tolvane {

namespace {

using namespace std::chrono_literals;

constexpr auto kLoadingCircleStep = 40ms;
constexpr int kLoadingCircleDegreesPerStep = 30;
constexpr int kLoadingCircleDiameter = 36;
constexpr int kMessageInset = 20;
// Font sizes as fractions of the view's height, bounded for tiny windows.
constexpr double kMessageFontFraction = 0.045;
constexpr double kFileNameFontFraction = 0.06;
constexpr int kMinimumFontPixels = 12;

void drawOutlinedText(QPainter &painter, const QString &text, const QFont &font,
                      QPointF baselineStart) {
    QPainterPath path;
    path.addText(baselineStart, font, text);
    painter.setPen(QPen(QColor(0, 0, 0, 200), std::max(2.0, font.pixelSize() / 8.0), Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 235));
    painter.drawPath(path);
}

QFont layerFont(int heightPixels, double fraction) {
    QFont font;
    font.setPixelSize(std::max(kMinimumFontPixels, int(heightPixels * fraction)));
    return font;
}

}  // namespace

StatusLayers::StatusLayers(QWidget *parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setGeometry(parent->rect());
    parent->installEventFilter(this);
    connect(&loadingCircleTimer, &QTimer::timeout, this, [this] {
        loadingCircleAngle = (loadingCircleAngle + kLoadingCircleDegreesPerStep) % 360;
        update();
    });
}

bool StatusLayers::eventFilter(QObject *watched, QEvent *event) {
    if (watched == parent() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return false;
}

void StatusLayers::setMessage(const QString &text) {
    if (text.trimmed() == messageText) {
        return;
    }
    messageText = text.trimmed();
    update();
}

void StatusLayers::setFileName(const QString &name, bool isVisible) {
    fileNameText = name;
    isFileNameVisible = isVisible && !name.trimmed().isEmpty();
    update();
}

void StatusLayers::setCountDown(const QString &text) {
    countDownText = text.trimmed();
    update();
}

void StatusLayers::setLoadingCircleVisible(bool isVisible) {
    isLoadingCircleVisible = isVisible;
    if (isVisible) {
        loadingCircleTimer.start(kLoadingCircleStep);
    } else {
        loadingCircleTimer.stop();
    }
    update();
}

void StatusLayers::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!messageText.isEmpty()) {
        const QFont font = layerFont(height(), kMessageFontFraction);
        drawOutlinedText(painter, messageText, font,
                         QPointF(kMessageInset, kMessageInset + QFontMetricsF(font).ascent()));
    }
    const QPointF centre = QRectF(rect()).center();
    if (isFileNameVisible) {
        const QFont font = layerFont(height(), kFileNameFontFraction);
        const QString shown = QFontMetricsF(font).elidedText(fileNameText, Qt::ElideMiddle,
                                                             width() - 2 * kMessageInset);
        const double textWidth = QFontMetricsF(font).horizontalAdvance(shown);
        drawOutlinedText(painter, shown, font, QPointF(centre.x() - textWidth / 2, centre.y()));
    }
    if (!countDownText.isEmpty()) {
        const QFont font = layerFont(height(), kMessageFontFraction);
        const double textWidth = QFontMetricsF(font).horizontalAdvance(countDownText);
        drawOutlinedText(
            painter, countDownText, font,
            QPointF(centre.x() - textWidth / 2, centre.y() + 2 * QFontMetricsF(font).height()));
    }
    if (isLoadingCircleVisible) {
        const QRectF circle(centre.x() - kLoadingCircleDiameter / 2.0,
                            centre.y() - kLoadingCircleDiameter / 2.0, kLoadingCircleDiameter,
                            kLoadingCircleDiameter);
        painter.setPen(QPen(QColor(255, 255, 255, 60), 4));
        painter.drawEllipse(circle);
        painter.setPen(QPen(QColor(255, 255, 255, 230), 4, Qt::SolidLine, Qt::RoundCap));
        // Qt counts sixteenths of a degree, counter-clockwise from three o'clock.
        painter.drawArc(circle, -loadingCircleAngle * 16, 90 * 16);
    }
}

}  // namespace tolvane
