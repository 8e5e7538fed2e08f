#include "views/caption_overlay.h"

#include <gtest/gtest.h>

#include <QImage>

#include "subtitles/text_encodings.h"
#include "support/temporary_tree.h"
#include "support/test_media.h"
#include "views/caption_timer.h"

namespace tolvane {
namespace {

using subtitles::MySubtitle;

// Korean class first in the default choice (bottom), English second (top,
// with a red span). ASCII text keeps the test independent of CJK fonts.
constexpr const char *kTwoClassSami = R"(<SAMI><HEAD><STYLE TYPE="text/css"><!--
.KRCC { Name:Korean; lang:ko-KR; SAMIType:CC; }
.ENCC { Name:English; lang:en-US; SAMIType:CC; }
--></STYLE></HEAD><BODY>
<SYNC Start=500><P Class=KRCC>WWWW WWWW
<SYNC Start=500><P Class=ENCC><font color="#ff0000">MMMM</font> MMMM
<SYNC Start=2000><P Class=KRCC>&nbsp;
<SYNC Start=2000><P Class=ENCC>&nbsp;
</BODY></SAMI>
)";

struct PixelCounts {
    int white = 0;
    int red = 0;
};

PixelCounts countCaptionPixels(const QImage &image, int firstRow, int endRow) {
    PixelCounts counts;
    for (int y = firstRow; y < endRow; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.red() > 220 && colour.green() > 220 && colour.blue() > 220) {
                ++counts.white;
            } else if (colour.red() > 200 && colour.green() < 60 && colour.blue() < 60) {
                ++counts.red;
            }
        }
    }
    return counts;
}

class CaptionOverlayTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder.write("clip.smi", kTwoClassSami);
        subtitle.sizePF = 0.06f;
        subtitle.spacingPF = 0.6f;
        subtitle.marginPF = 0.1f;
        subtitle.viewSize = QSizeF(960, 540);
        subtitle.openSubtitleFileURL(folder.path("clip.mkv"),
                                     encodingItemsToTry(kAutomaticEncodingItem), false, QString());
        ASSERT_EQ(subtitle.entryCount(), 2);
        subtitle.setOrders({});
        subtitle.resetSortedIdx();

        picture.setStyleSheet(QStringLiteral("background: black;"));
        picture.resize(480, 270);
        overlay.setLayoutSettings({.viewSize = subtitle.viewSize,
                                   .spacingPF = subtitle.spacingPF,
                                   .marginPF = subtitle.marginPF});
        picture.show();
    }

    test::TemporaryTree folder;
    MySubtitle subtitle;
    QWidget picture;
    CaptionOverlay overlay{&picture};
    qint32 nowMsec = 0;
    CaptionTimer timer{subtitle, overlay, [this] { return nowMsec; }};
};

TEST_F(CaptionOverlayTest, TheTimerHandsOnOnlyChangedLines) {
    subtitle.toggleRow(subtitle.fstOrderIdx() == 0 ? 1 : 0);
    ASSERT_NE(subtitle.sndOrderIdx(), subtitles::kNoTrackOrderIdx);
    struct Step {
        qint32 atMsec;
        bool redrawn;
        std::size_t groupsShown;
    };
    const std::vector<Step> steps = {
        {0, false, 0},    // before the first line: blank groups over nothing
        {600, true, 2},   // both lines appear
        {620, false, 2},  // the same lines: no redraw
        {2100, true, 0},  // both blank again
        {700, true, 2},   // seek back
    };
    for (const Step &step : steps) {
        nowMsec = step.atMsec;
        EXPECT_EQ(timer.tick(), step.redrawn) << "at " << step.atMsec;
        EXPECT_EQ(overlay.shownGroups().size(), step.groupsShown) << "at " << step.atMsec;
    }
    timer.resetShownLines();
    EXPECT_TRUE(overlay.shownGroups().empty());
    EXPECT_TRUE(timer.tick()) << "after a reset the next tick draws afresh";
}

// The read-back of both layouts: two tracks at opposite edges of a resized
// view, then the integrated block at the bottom.
TEST_F(CaptionOverlayTest, TracksAreDrawnAtTheirEdgesWithTheirColours) {
    subtitle.toggleRow(subtitle.fstOrderIdx() == 0 ? 1 : 0);
    nowMsec = 600;
    ASSERT_TRUE(timer.tick());
    ASSERT_EQ(overlay.shownGroups().count(QStringLiteral("fst.bottom")), 1u);
    ASSERT_EQ(overlay.shownGroups().count(QStringLiteral("snd.top")), 1u);
    picture.resize(960, 540);
    test::processEventsFor(100);
    ASSERT_EQ(overlay.size(), QSize(960, 540)) << "the overlay follows the view";
    const QImage shown = picture.grab().toImage();
    const int third = shown.height() / 3;
    const PixelCounts top = countCaptionPixels(shown, 0, third);
    const PixelCounts middle = countCaptionPixels(shown, third, 2 * third);
    const PixelCounts bottom = countCaptionPixels(shown, 2 * third, shown.height());
    EXPECT_GT(bottom.white, 50) << "the first track's white text at the bottom";
    EXPECT_EQ(bottom.red, 0);
    EXPECT_GT(top.red, 20) << "the second track's red span at the top";
    EXPECT_GT(top.white, 20) << "and its white rest";
    EXPECT_EQ(middle.white + middle.red, 0) << "nothing between them";

    subtitle.toggleRow(subtitle.entryCount());
    ASSERT_TRUE(subtitle.isIntegrated());
    timer.resetShownLines();
    ASSERT_TRUE(timer.tick());
    ASSERT_EQ(overlay.shownGroups().count(QStringLiteral("fst.snd.bottom")), 1u);
    test::processEventsFor(100);
    const QImage integrated = picture.grab().toImage();
    const int half = integrated.height() / 2;
    const PixelCounts upperHalf = countCaptionPixels(integrated, 0, half);
    const PixelCounts lowerHalf = countCaptionPixels(integrated, half, integrated.height());
    EXPECT_EQ(upperHalf.white + upperHalf.red, 0);
    EXPECT_GT(lowerHalf.white, 50);
    EXPECT_GT(lowerHalf.red, 20) << "the second track's red span joins the bottom block";
}

}  // namespace
}  // namespace tolvane
