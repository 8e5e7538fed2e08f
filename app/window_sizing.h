#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QSizeF>
#include <optional>

namespace tolvane {

// The size rules of the main window, whose whole area is the picture. Pure
// functions of sizes, the display aspect ratio in force (`cRatio`, width over
// height) and the screen that holds the window: its visible frame (without
// panels and docks, QScreen::availableGeometry) and its full frame
// (QScreen::geometry), all in device-independent pixels on Qt's axes (y grows
// downwards). Sizes are whole pixels; "rounded" means add 0.5 and truncate.
//
// The leading side of a size is chosen by comparing `cRatio` with the visible
// frame's ratio, not with the picture's own: deliberately, so that a wide
// picture on a narrow screen grows along the side that meets the screen first.

inline constexpr int kSizeStepPixels = 16;
inline constexpr int kSizeStepsPerPress = 10;
inline constexpr int kMinimumWindowWidth = 640;
inline constexpr QSizeF kFallbackNaturalSize{960.0, 540.0};

// The picture size of a file from its stream's width and height; 960 x 540
// when the stream reports no usable size (a side below 1 pixel).
QSizeF naturalPictureSize(int width, int height);

// The natural size adjusted to `cRatio`: the side that the screen's ratio
// leads with is kept, the other derived from it.
QSize naturalSize(QSizeF natural, double cRatio, const QRect &visibleFrame);

// The largest size of ratio `cRatio` inside the visible frame.
QSize maximumSize(double cRatio, const QRect &visibleFrame);

// `current` moved by `step` steps of 16 pixels along its leading side.
QSize multipliedSize(QSize current, int step, double cRatio, const QRect &visibleFrame);

// At least 640 wide; no larger than the visible frame (the maximum size
// replaces a size that reaches the frame in either direction).
QSize limitedSize(QSize size, double cRatio, const QRect &visibleFrame);

// `rect` with its height derived from its width at `cRatio`; its top edge
// stays where it was.
QRect ratioRect(const QRect &rect, double cRatio);

// The picture's rectangle in full-screen mode, letterboxed or pillarboxed,
// relative to the full frame's top-left corner.
QRect fullViewRect(double cRatio, const QRect &fullFrame);

// The origin that centres a window of `size` in the visible frame.
QPoint centeredOrigin(QSize size, const QRect &visibleFrame);

// The origin of `frame` pulled into the visible frame. When the window is
// larger than the frame its right and top edges are kept visible (the title
// bar stays reachable).
struct VisibleOrigin {
    QPoint origin;
    bool isUnmoved = true;  // the window lay inside already
};
VisibleOrigin visibleOrigin(const QRect &frame, const QRect &visibleFrame);

bool isRealSize(QSize windowSize, QSize naturalSizeAtRatio);
bool isMaximumSize(QSize windowSize, const QRect &visibleFrame);
bool isOverSize(QSize windowSize, const QRect &visibleFrame);
bool isMinimumSize(QSize windowSize);

// The frame after the increase (+10) or decrease (-10) command, placed
// (centred at the maximum size, else pulled into the visible frame); nothing
// when the window is already at the maximum (increase) or minimum (decrease).
std::optional<QRect> sizeChangedFrame(const QRect &frame, int step, double cRatio,
                                      const QRect &visibleFrame);

// The frame after a new ratio was chosen outside full screen: the width kept
// where the limits allow, the height derived, then placed as above.
QRect ratioChangedFrame(const QRect &frame, double cRatio, const QRect &visibleFrame);

// `size` placed at `frame`'s origin, then centred at the maximum size or
// pulled into the visible frame.
QRect placedFrame(QPoint origin, QSize size, const QRect &visibleFrame);

}  // namespace tolvane
