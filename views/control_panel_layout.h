#pragma once

#include <QRect>
#include <QSize>

namespace tolvane {

// The control panel's geometry: a rounded panel of 628 x 45 with a 13-pixel
// time row over a 31-pixel button row, centred near the bottom of the view.
// Narrower views get a narrower panel, down to the width at which the button
// groups would touch.

inline constexpr QSize kControlPanelSize{628, 45};
inline constexpr int kControlPanelMinimumWidth = 408;
inline constexpr int kControlPanelRadius = 7;
inline constexpr int kControlPanelTimeRowHeight = 13;
inline constexpr int kControlPanelButtonRowHeight = 31;
inline constexpr int kControlPanelBottomMargin = 16;
inline constexpr int kControlPanelSideMargin = 8;

// Where every control sits, in the panel's coordinates.
struct ControlPanelLayout {
    QRect currentTimeLabel;
    QRect timeSlider;
    QRect durationLabel;
    QRect inspectorButton;
    QRect playlistButton;
    QRect earlyCaptionButton;
    QRect laterCaptionButton;
    QRect prevFileButton;
    QRect playPauseButton;
    QRect nextFileButton;
    QRect muteButton;
    QRect volumeSlider;
    QRect fullWindowButton;
    // The separators: under the time row (612 wide at 628) and the top edge.
    QRect rowSeparator;
    QRect topEdge;
};

// The panel's rectangle inside a view of `viewSize`.
QRect controlPanelFrame(QSize viewSize);
ControlPanelLayout controlPanelLayout(int panelWidth);

}  // namespace tolvane
