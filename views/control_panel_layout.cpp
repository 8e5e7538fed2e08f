#include "views/control_panel_layout.h"

#include <algorithm>

namespace tolvane {

namespace {

constexpr int kButtonSide = 24;
constexpr int kButtonGap = 4;
constexpr int kLabelWidth = 54;
constexpr int kVolumeSliderWidth = 80;

QRect buttonAt(int x) {
    const int top =
        kControlPanelTimeRowHeight + 1 + (kControlPanelButtonRowHeight - kButtonSide) / 2;
    return QRect(x, top, kButtonSide, kButtonSide);
}

}  // namespace

QRect controlPanelFrame(QSize viewSize) {
    const int width = std::min(viewSize.width(),
                               std::clamp(viewSize.width() - 2 * kControlPanelSideMargin,
                                          kControlPanelMinimumWidth, kControlPanelSize.width()));
    const int x = (viewSize.width() - width) / 2;
    const int y = viewSize.height() - kControlPanelSize.height() - kControlPanelBottomMargin;
    return QRect(x, std::max(0, y), width, kControlPanelSize.height());
}

ControlPanelLayout controlPanelLayout(int panelWidth) {
    const int width = std::max(panelWidth, kControlPanelMinimumWidth);
    const int inset = kControlPanelSideMargin;
    ControlPanelLayout layout;

    const int timeRowTop = 1;
    layout.currentTimeLabel = QRect(inset, timeRowTop, kLabelWidth, kControlPanelTimeRowHeight);
    layout.durationLabel =
        QRect(width - inset - kLabelWidth, timeRowTop, kLabelWidth, kControlPanelTimeRowHeight);
    const int sliderLeft = layout.currentTimeLabel.right() + 1 + kButtonGap;
    layout.timeSlider =
        QRect(sliderLeft, timeRowTop, layout.durationLabel.left() - kButtonGap - sliderLeft,
              kControlPanelTimeRowHeight);
    layout.rowSeparator = QRect(inset, kControlPanelTimeRowHeight, width - 2 * inset, 1);
    layout.topEdge = QRect(0, 0, width, 1);

    int x = inset;
    for (QRect *left : {&layout.inspectorButton, &layout.playlistButton, &layout.earlyCaptionButton,
                        &layout.laterCaptionButton}) {
        *left = buttonAt(x);
        x += kButtonSide + kButtonGap;
    }

    const int centre = width / 2;
    layout.playPauseButton = buttonAt(centre - kButtonSide / 2);
    layout.prevFileButton = buttonAt(layout.playPauseButton.left() - kButtonGap - kButtonSide);
    layout.nextFileButton = buttonAt(layout.playPauseButton.right() + 1 + kButtonGap);

    layout.fullWindowButton = buttonAt(width - inset - kButtonSide);
    const QRect volumeButtonRow = buttonAt(0);
    layout.volumeSlider =
        QRect(layout.fullWindowButton.left() - 2 * kButtonGap - kVolumeSliderWidth,
              volumeButtonRow.top(), kVolumeSliderWidth, kButtonSide);
    layout.muteButton = buttonAt(layout.volumeSlider.left() - kButtonGap - kButtonSide);
    return layout;
}

}  // namespace tolvane
