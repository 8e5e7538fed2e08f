#include "views/control_panel_layout.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

std::vector<QRect> controlsOf(const ControlPanelLayout &layout) {
    return {layout.currentTimeLabel,   layout.timeSlider,     layout.durationLabel,
            layout.inspectorButton,    layout.playlistButton, layout.earlyCaptionButton,
            layout.laterCaptionButton, layout.prevFileButton, layout.playPauseButton,
            layout.nextFileButton,     layout.muteButton,     layout.volumeSlider,
            layout.fullWindowButton};
}

TEST(ControlPanelLayoutTest, EveryControlFitsInsideThePanelWithoutOverlapping) {
    for (const int width : {kControlPanelMinimumWidth, 500, kControlPanelSize.width()}) {
        SCOPED_TRACE(width);
        const QRect panel(QPoint(0, 0), QSize(width, kControlPanelSize.height()));
        const std::vector<QRect> controls = controlsOf(controlPanelLayout(width));
        for (std::size_t i = 0; i < controls.size(); ++i) {
            EXPECT_TRUE(panel.contains(controls[i]))
                << "control " << i << ": " << testing::PrintToString(controls[i]);
            EXPECT_FALSE(controls[i].isEmpty()) << "control " << i;
            for (std::size_t j = i + 1; j < controls.size(); ++j) {
                EXPECT_FALSE(controls[i].intersects(controls[j]))
                    << "controls " << i << " and " << j << ": "
                    << testing::PrintToString(std::make_pair(controls[i], controls[j]));
            }
        }
    }
}

TEST(ControlPanelLayoutTest, PlayPauseSitsInTheMiddleOfTheFullPanel) {
    EXPECT_NEAR(controlPanelLayout(kControlPanelSize.width()).playPauseButton.center().x(),
                kControlPanelSize.width() / 2, 1);
}

TEST(ControlPanelLayoutTest, ThePanelIsCentredAboveTheBottomAndShrinksWithTheView) {
    struct Case {
        QSize view;
        QRect frame;
    };
    const Case cases[] = {
        // Room to spare: full size, centred.
        {{960, 540}, {166, 479, 628, 45}},
        {{1920, 1080}, {646, 1019, 628, 45}},
        // Narrower than the panel and its margins: the panel gives way.
        {{600, 338}, {8, 277, 584, 45}},
        // Narrower than the smallest panel: the smallest, still centred.
        {{420, 236}, {6, 175, 408, 45}},
        // Narrower still: the view's width, nothing outside it.
        {{300, 170}, {0, 109, 300, 45}},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(controlPanelFrame(c.view), c.frame) << testing::PrintToString(c.view);
    }
}

}  // namespace
}  // namespace tolvane
