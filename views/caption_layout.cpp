#include "views/caption_layout.h"

#include <algorithm>

namespace tolvane {

double captionRowGap(const CaptionRowMetrics &upperRow, const CaptionLayoutSettings &settings) {
    return std::max(0.0, settings.spacingPF * upperRow.fontSize * 0.5);
}

std::vector<CaptionRowPlacement> placeCaptionRows(std::span<const CaptionRowMetrics> rows,
                                                  CaptionEdge edge,
                                                  const CaptionLayoutSettings &settings) {
    std::vector<CaptionRowPlacement> placements;
    placements.reserve(rows.size());
    // Baselines relative to the top of the block, then shifted to the edge.
    double blockBottom = 0.0;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const CaptionRowMetrics &row = rows[index];
        if (index > 0) {
            blockBottom += captionRowGap(rows[index - 1], settings);
        }
        const double baseline = blockBottom + row.rubyHeight + row.ascent;
        blockBottom = baseline + row.descent;
        placements.push_back({(settings.viewSize.width() - row.width) / 2.0, baseline});
    }
    const double margin = settings.marginPF * settings.viewSize.height();
    const double blockTop =
        edge == CaptionEdge::top ? margin : settings.viewSize.height() - margin - blockBottom;
    for (CaptionRowPlacement &placement : placements) {
        placement.baseline += blockTop;
    }
    return placements;
}

double rubyAnnotationLeft(double baseLeft, double baseRight, double annotationWidth) {
    return (baseLeft + baseRight - annotationWidth) / 2.0;
}

QTransform captionViewToWidgetTransform(QSizeF viewSize, QSizeF widgetSize) {
    if (viewSize.isEmpty() || widgetSize.isEmpty()) {
        return {};
    }
    const double scale =
        std::min(widgetSize.width() / viewSize.width(), widgetSize.height() / viewSize.height());
    QTransform transform;
    transform.translate((widgetSize.width() - viewSize.width() * scale) / 2.0,
                        (widgetSize.height() - viewSize.height() * scale) / 2.0);
    transform.scale(scale, scale);
    return transform;
}

double captionBottomMarginPF(const CaptionLayoutSettings &settings, QSizeF widgetSize,
                             double coveredHeight) {
    constexpr double kHighestBottomMarginPF = 0.5;
    const QSizeF viewSize = settings.viewSize;
    if (coveredHeight <= 0.0 || viewSize.isEmpty() || widgetSize.isEmpty()) {
        return settings.marginPF;
    }
    const QTransform toWidget = captionViewToWidgetTransform(viewSize, widgetSize);
    const double bandTop = (widgetSize.height() - coveredHeight - toWidget.dy()) / toWidget.m22();
    const double clearingPF = (viewSize.height() - bandTop) / viewSize.height();
    return std::max(settings.marginPF, std::min(clearingPF, kHighestBottomMarginPF));
}

}  // namespace tolvane
