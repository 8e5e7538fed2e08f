#pragma once

// Where the rows of a caption line go, in the caption model's coordinate
// space (the subtitle's viewSize), and how that space maps onto a widget.
// Pure arithmetic on measurements that the caller takes with its fonts, so
// that it can be checked without a display.
// Thread-safety: free functions on values; callable from any thread.

#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <span>
#include <vector>

namespace tolvane {

struct CaptionLayoutSettings {
    QSizeF viewSize{960.0, 540.0};
    // Gap between two rows, as a fraction of half the upper row's font size.
    double spacingPF = 0.6;
    // Distance of the block from the top or bottom edge, as a fraction of
    // the view height.
    double marginPF = 0.1;
};

enum class CaptionEdge { bottom, top };

// One row as measured in its own fonts.
struct CaptionRowMetrics {
    double width = 0.0;
    double ascent = 0.0;
    double descent = 0.0;
    double fontSize = 0.0;  // the row's largest font size
    // Height of the row's ruby annotations (ascent plus descent of their
    // font); 0 for a row without any. Reserved above the row.
    double rubyHeight = 0.0;
};

struct CaptionRowPlacement {
    double left = 0.0;
    double baseline = 0.0;
};

// Rows centred horizontally, stacked downwards in order. At the bottom edge
// the last row's descent ends `marginPF` of the height above the bottom; at
// the top edge the first row's ruby (or ascent) starts that far below the top.
std::vector<CaptionRowPlacement> placeCaptionRows(std::span<const CaptionRowMetrics> rows,
                                                  CaptionEdge edge,
                                                  const CaptionLayoutSettings &settings);

// Gap left between a row and the next one below it.
double captionRowGap(const CaptionRowMetrics &upperRow, const CaptionLayoutSettings &settings);

// Left edge of a ruby annotation centred over the base text spanning
// [baseLeft, baseRight].
double rubyAnnotationLeft(double baseLeft, double baseRight, double annotationWidth);

// The margin for the bottom edge that keeps its block clear of a band
// `coveredHeight` pixels high along the bottom of a widget of `widgetSize`
// (the control panel while it shows): the settings' own margin where that
// clears the band already, and never more than half the height.
double captionBottomMarginPF(const CaptionLayoutSettings &settings, QSizeF widgetSize,
                             double coveredHeight);

// Maps the caption space onto a widget of `widgetSize`: one scale for both
// axes, the largest that fits, centred, so that resizing keeps proportions
// and captions stay on the letterboxed picture. Identity for empty sizes.
QTransform captionViewToWidgetTransform(QSizeF viewSize, QSizeF widgetSize);

}  // namespace tolvane
