#include "views/caption_overlay.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace tolvane {

using subtitles::CaptionAttributeRun;
using subtitles::CaptionColor;
using subtitles::CaptionTextAttributes;
using subtitles::ProcessedLine;
using subtitles::ProcessedRow;
using subtitles::StyledString;

namespace {

// Stroke widths count in percent of the font size; negative ones stroke and
// fill, positive ones only stroke, 0 only fills. The width is what shows
// outside the glyph: the pen is centred on the glyph's edge and the fill
// string covers its inner half, so the pen is twice as wide.
constexpr double kStrokeWidthPercent = 100.0;
constexpr double kPenWidthPerVisibleStrokeWidth = 2.0;
// Room between a ruby annotation's descent and its base row's ascent, as a
// fraction of the annotation's font size.
constexpr double kRubyGapFontFraction = 0.05;

// A font name is a fontconfig pattern, "Family" or "Family:style=Style".
QFont fontForAttributes(const CaptionTextAttributes &attributes) {
    QFont font;
    const qsizetype colon = attributes.fontFamily.indexOf(QLatin1Char(':'));
    const QString family = attributes.fontFamily.left(colon);
    if (!family.isEmpty()) {
        font.setFamilies({family});
    }
    static const QLatin1String kStylePrefix(":style=");
    if (colon >= 0 && attributes.fontFamily.mid(colon).startsWith(kStylePrefix) &&
        !attributes.italic && !attributes.bold) {
        // A style name overrides weight and slant, so only without them.
        font.setStyleName(attributes.fontFamily.mid(colon + kStylePrefix.size()));
    }
    font.setPixelSize(std::max(1, attributes.fontSize));
    font.setItalic(attributes.italic);
    font.setBold(attributes.bold);
    return font;
}

QColor colorFromCaptionColor(const CaptionColor &color) {
    return QColor::fromRgbF(float(color.red), float(color.green), float(color.blue),
                            float(color.alpha));
}

QString runText(const StyledString &string, const CaptionAttributeRun &run) {
    return string.text().mid(run.start, run.length);
}

// Advance of the first `columns` characters of `string`, run by run.
double advanceOfColumns(const StyledString &string, qsizetype columns) {
    double advance = 0.0;
    for (const CaptionAttributeRun &run : string.runs()) {
        if (run.start >= columns) {
            break;
        }
        const qsizetype taken = std::min(run.length, columns - run.start);
        advance += QFontMetricsF(fontForAttributes(run.attributes))
                       .horizontalAdvance(string.text().mid(run.start, taken));
    }
    return advance;
}

double styledStringWidth(const StyledString &string) {
    return advanceOfColumns(string, string.text().size());
}

struct VerticalMetrics {
    double ascent = 0.0;
    double descent = 0.0;
    double fontSize = 0.0;
};

VerticalMetrics verticalMetrics(const StyledString &string) {
    VerticalMetrics metrics;
    for (const CaptionAttributeRun &run : string.runs()) {
        const QFontMetricsF fontMetrics(fontForAttributes(run.attributes));
        metrics.ascent = std::max(metrics.ascent, fontMetrics.ascent());
        metrics.descent = std::max(metrics.descent, fontMetrics.descent());
        metrics.fontSize = std::max(metrics.fontSize, double(run.attributes.fontSize));
    }
    return metrics;
}

CaptionRowMetrics measureRow(const ProcessedRow &row) {
    const VerticalMetrics vertical = verticalMetrics(row.fill);
    CaptionRowMetrics metrics{.width = styledStringWidth(row.fill),
                              .ascent = vertical.ascent,
                              .descent = vertical.descent,
                              .fontSize = vertical.fontSize};
    for (const subtitles::RubyAnnotation &annotation : row.rubyAnnotations) {
        const VerticalMetrics ruby = verticalMetrics(annotation.fill);
        metrics.rubyHeight = std::max(
            metrics.rubyHeight, ruby.ascent + ruby.descent + ruby.fontSize * kRubyGapFontFraction);
    }
    return metrics;
}

// Strokes and fills `string` run by run with its own colours and widths.
void paintStyledString(QPainter &painter, const StyledString &string, QPointF origin) {
    double x = origin.x();
    for (const CaptionAttributeRun &run : string.runs()) {
        const CaptionTextAttributes &attributes = run.attributes;
        const QFont font = fontForAttributes(attributes);
        const QString text = runText(string, run);
        QPainterPath path;
        path.addText(QPointF(x, origin.y()), font, text);
        const double penWidth = std::abs(attributes.strokeWidth) * attributes.fontSize /
                                kStrokeWidthPercent * kPenWidthPerVisibleStrokeWidth;
        if (attributes.strokeWidth != 0.0 && penWidth > 0.0) {
            painter.setPen(QPen(colorFromCaptionColor(attributes.strokeColor), penWidth,
                                Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        } else {
            painter.setPen(Qt::NoPen);
        }
        painter.setBrush(attributes.strokeWidth > 0.0
                             ? QBrush(Qt::NoBrush)
                             : QBrush(colorFromCaptionColor(attributes.fillColor)));
        painter.drawPath(path);
        x += QFontMetricsF(font).horizontalAdvance(text);
    }
}

// The blank cues that end a line ("&nbsp;") leave rows of spaces.
bool isBlankCaptionLine(const ProcessedLine &line) {
    return std::ranges::all_of(line.rows, [](const ProcessedRow &row) {
        return row.fill.text().trimmed().isEmpty() && row.rubyAnnotations.empty();
    });
}

void paintCaptionLine(QPainter &painter, const ProcessedLine &line, CaptionEdge edge,
                      const CaptionLayoutSettings &settings) {
    std::vector<CaptionRowMetrics> metrics;
    metrics.reserve(line.rows.size());
    for (const ProcessedRow &row : line.rows) {
        metrics.push_back(measureRow(row));
    }
    const std::vector<CaptionRowPlacement> placements = placeCaptionRows(metrics, edge, settings);
    for (std::size_t index = 0; index < line.rows.size(); ++index) {
        const ProcessedRow &row = line.rows[index];
        const CaptionRowPlacement &placement = placements[index];
        const QPointF origin(placement.left, placement.baseline);
        paintStyledString(painter, row.outline, origin);
        paintStyledString(painter, row.fill, origin);
        for (const subtitles::RubyAnnotation &annotation : row.rubyAnnotations) {
            const double baseLeft =
                placement.left + advanceOfColumns(row.fill, annotation.baseFirstColumn);
            const double baseRight =
                placement.left + advanceOfColumns(row.fill, annotation.baseLastColumn + 1);
            const VerticalMetrics ruby = verticalMetrics(annotation.fill);
            const QPointF rubyOrigin(
                rubyAnnotationLeft(baseLeft, baseRight, styledStringWidth(annotation.fill)),
                placement.baseline - metrics[index].ascent - ruby.descent -
                    ruby.fontSize * kRubyGapFontFraction);
            paintStyledString(painter, annotation.outline, rubyOrigin);
            paintStyledString(painter, annotation.fill, rubyOrigin);
        }
    }
}

}  // namespace

CaptionOverlay::CaptionOverlay(QWidget *videoView) : QWidget(videoView) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    if (videoView) {
        videoView->installEventFilter(this);
        setGeometry(videoView->rect());
    }
}

void CaptionOverlay::setLayoutSettings(const CaptionLayoutSettings &newSettings) {
    settings = newSettings;
    update();
}

void CaptionOverlay::setCoveredBottomHeight(int pixels) {
    if (coveredBottomHeight != pixels) {
        coveredBottomHeight = pixels;
        update();
    }
}

bool CaptionOverlay::applyTextLayerDic(const subtitles::TextLayerDic &changedGroups) {
    bool changed = false;
    for (const auto &[name, line] : changedGroups) {
        if (isBlankCaptionLine(line)) {
            changed = groups.erase(name) > 0 || changed;
        } else {
            groups[name] = line;
            changed = true;
        }
    }
    if (changed) {
        update();
    }
    return changed;
}

void CaptionOverlay::clearCaptions() {
    if (!groups.empty()) {
        groups.clear();
        update();
    }
}

void CaptionOverlay::paintCaptionGroups(QPainter &painter, const subtitles::TextLayerDic &groups,
                                        const CaptionLayoutSettings &topSettings,
                                        const CaptionLayoutSettings &bottomSettings) {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto &[name, line] : groups) {
        if (name == QLatin1String("snd.top")) {
            paintCaptionLine(painter, line, CaptionEdge::top, topSettings);
        } else {
            paintCaptionLine(painter, line, CaptionEdge::bottom, bottomSettings);
        }
    }
}

bool CaptionOverlay::eventFilter(QObject *watched, QEvent *event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

void CaptionOverlay::paintEvent(QPaintEvent *) {
    if (groups.empty()) {
        return;
    }
    QPainter painter(this);
    painter.setTransform(captionViewToWidgetTransform(settings.viewSize, QSizeF(size())));
    CaptionLayoutSettings bottomSettings = settings;
    bottomSettings.marginPF = captionBottomMarginPF(settings, QSizeF(size()), coveredBottomHeight);
    paintCaptionGroups(painter, groups, settings, bottomSettings);
}

}  // namespace tolvane
