#include "views/media_info_window.h"

#include <gtest/gtest.h>

#include "subtitles/my_subtitle.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

TEST(InspectorWindowTest, ACaptionTrackShowsItsDelayOnlyWhenItHasOne) {
    struct Case {
        qint32 delayMsec;
        const char *text;
    };
    const Case cases[] = {
        {0, ""},
        {subtitles::kUnsetSubtitleDelay, ""},
        {500, "first +0.5 s"},
        {-1500, "first -1.5 s"},
        {120000, "first +120.0 s"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(InspectorWindow::delayText("INSPECTOR_FIRST", c.delayMsec),
                  QString::fromUtf8(c.text))
            << c.delayMsec;
    }
}

}  // namespace
}  // namespace tolvane
