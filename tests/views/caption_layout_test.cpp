#include "views/caption_layout.h"

#include <gtest/gtest.h>

#include <vector>

inline void PrintTo(const QRectF &rect, std::ostream *out) {
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

namespace tolvane {
namespace {

const CaptionLayoutSettings kSettings{
    .viewSize = QSizeF(1000.0, 500.0), .spacingPF = 0.5, .marginPF = 0.1};

// Rows of font size 40: ascent 30, descent 10; gap below each 0.5 * 40 / 2 = 10.
CaptionRowMetrics rowOfWidth(double width, double rubyHeight = 0.0) {
    return {.width = width,
            .ascent = 30.0,
            .descent = 10.0,
            .fontSize = 40.0,
            .rubyHeight = rubyHeight};
}

TEST(CaptionLayoutTest, RowsStackFromTheirEdgeWithTheSpacingBetween) {
    struct Case {
        const char *name;
        std::vector<CaptionRowMetrics> rows;
        CaptionEdge edge;
        std::vector<CaptionRowPlacement> expected;
    };
    // clang-format off
    const std::vector<Case> cases = {
        // Bottom margin 50: the last row's descent ends at 450.
        {"two rows at the bottom, the first above", {rowOfWidth(200), rowOfWidth(600)},
         CaptionEdge::bottom, {{400, 390}, {200, 440}}},
        // Top margin 50: the first row's ascent starts at 50.
        {"two rows at the top, the first below the edge", {rowOfWidth(200), rowOfWidth(600)},
         CaptionEdge::top, {{400, 80}, {200, 130}}},
        {"ruby room above a row at the top", {rowOfWidth(200, 20)}, CaptionEdge::top, {{400, 100}}},
        {"ruby room on the lower row pushes the upper one up", {rowOfWidth(200), rowOfWidth(200, 20)},
         CaptionEdge::bottom, {{400, 370}, {400, 440}}},
        {"no rows", {}, CaptionEdge::bottom, {}},
    };
    // clang-format on
    for (const Case &testCase : cases) {
        SCOPED_TRACE(testCase.name);
        const std::vector<CaptionRowPlacement> placed =
            placeCaptionRows(testCase.rows, testCase.edge, kSettings);
        ASSERT_EQ(placed.size(), testCase.expected.size());
        for (std::size_t index = 0; index < placed.size(); ++index) {
            EXPECT_DOUBLE_EQ(placed[index].left, testCase.expected[index].left) << "row " << index;
            EXPECT_DOUBLE_EQ(placed[index].baseline, testCase.expected[index].baseline)
                << "row " << index;
        }
    }
}

TEST(CaptionLayoutTest, ANegativeSpacingNeverOverlapsRows) {
    CaptionLayoutSettings negative = kSettings;
    negative.spacingPF = -1.0;
    EXPECT_EQ(captionRowGap(rowOfWidth(100), negative), 0.0);
}

TEST(CaptionLayoutTest, TheCaptionSpaceScalesUniformlyAndCentred) {
    const QSizeF view(960, 540);
    const std::pair<QSizeF, QRectF> cases[] = {
        {{1920, 1080}, {0, 0, 1920, 1080}},
        {{1200, 540}, {120, 0, 960, 540}},  // bars left and right
        {{960, 740}, {0, 100, 960, 540}},   // bars above and below
    };
    for (const auto &[widget, mapped] : cases) {
        EXPECT_EQ(captionViewToWidgetTransform(view, widget).mapRect(QRectF(QPointF(), view)),
                  mapped)
            << widget.width() << "x" << widget.height();
    }
    EXPECT_TRUE(captionViewToWidgetTransform(view, QSizeF(0, 0)).isIdentity());
    EXPECT_TRUE(captionViewToWidgetTransform(QSizeF(), QSizeF(100, 100)).isIdentity());
}

// The caption space is 1000 x 500 with a bottom margin of 50 (0.1).
TEST(CaptionLayoutTest, BottomCaptionsRiseOnlyAsFarAsACoveredBandNeeds) {
    CaptionLayoutSettings raised = kSettings;
    raised.marginPF = 0.3;
    const struct {
        const char *name;
        const CaptionLayoutSettings &settings;
        QSizeF widget;
        double coveredHeight;
        double marginPF;
    } cases[] = {
        {"nothing covered", kSettings, {1000, 500}, 0, 0.1},
        {"a band inside the margin", kSettings, {1000, 500}, 30, 0.1},
        {"a band above the margin", kSettings, {1000, 500}, 100, 0.2},
        {"a half-size widget", kSettings, {500, 250}, 50, 0.2},
        {"a band in the bar below the picture", kSettings, {1000, 700}, 80, 0.1},
        {"a band reaching over the bar", kSettings, {1000, 700}, 200, 0.2},
        {"a margin already above the band", raised, {1000, 500}, 100, 0.3},
        {"never past the middle", kSettings, {1000, 500}, 400, 0.5},
        {"no widget yet", kSettings, {}, 100, 0.1},
    };
    for (const auto &c : cases) {
        EXPECT_NEAR(captionBottomMarginPF(c.settings, c.widget, c.coveredHeight), c.marginPF, 1e-9)
            << c.name;
    }
}

}  // namespace
}  // namespace tolvane
