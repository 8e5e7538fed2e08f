#include "views/caption_layout.h"

#include <gtest/gtest.h>

#include <vector>

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
    const std::vector<Case> cases = {
        // Bottom margin 50: the last row's descent ends at 450.
        {"one row at the bottom", {rowOfWidth(200)}, CaptionEdge::bottom, {{400, 440}}},
        {"two rows at the bottom, the first above",
         {rowOfWidth(200), rowOfWidth(600)},
         CaptionEdge::bottom,
         {{400, 390}, {200, 440}}},
        // Top margin 50: the first row's ascent starts at 50.
        {"two rows at the top, the first below the edge",
         {rowOfWidth(200), rowOfWidth(600)},
         CaptionEdge::top,
         {{400, 80}, {200, 130}}},
        {"ruby room above a row at the top", {rowOfWidth(200, 20)}, CaptionEdge::top, {{400, 100}}},
        {"ruby room on the lower row pushes the upper one up",
         {rowOfWidth(200), rowOfWidth(200, 20)},
         CaptionEdge::bottom,
         {{400, 370}, {400, 440}}},
        {"no rows", {}, CaptionEdge::bottom, {}},
    };
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

TEST(CaptionLayoutTest, SpacingAndMarginFollowTheirSettings) {
    CaptionLayoutSettings wide = kSettings;
    wide.spacingPF = 1.0;
    wide.marginPF = 0.2;
    const std::vector<CaptionRowMetrics> rows = {rowOfWidth(100), rowOfWidth(100)};
    const auto placed = placeCaptionRows(rows, CaptionEdge::bottom, wide);
    ASSERT_EQ(placed.size(), 2u);
    EXPECT_DOUBLE_EQ(placed[1].baseline, 500 - 100 - 10);
    EXPECT_DOUBLE_EQ(placed[1].baseline - placed[0].baseline, 10 + 20 + 30);
    wide.spacingPF = -1.0;
    EXPECT_EQ(captionRowGap(rows[0], wide), 0.0) << "a negative spacing never overlaps rows";
}

TEST(CaptionLayoutTest, RubyIsCentredOverItsBase) {
    struct Case {
        double baseLeft, baseRight, annotationWidth, expectedLeft;
    };
    const std::vector<Case> cases = {
        {100, 200, 50, 125},  // narrower than its base
        {100, 200, 160, 70},  // wider: overhangs both sides equally
        {100, 100, 20, 90},   // empty base
    };
    for (const Case &testCase : cases) {
        EXPECT_DOUBLE_EQ(
            rubyAnnotationLeft(testCase.baseLeft, testCase.baseRight, testCase.annotationWidth),
            testCase.expectedLeft)
            << testCase.baseLeft << ".." << testCase.baseRight << " width "
            << testCase.annotationWidth;
    }
}

TEST(CaptionLayoutTest, TheCaptionSpaceScalesUniformlyAndCentred) {
    struct Case {
        const char *name;
        QSizeF widget;
        QPointF mappedTopLeft;
        QPointF mappedBottomRight;
    };
    const QSizeF view(960, 540);
    const std::vector<Case> cases = {
        {"same aspect, twice as large", {1920, 1080}, {0, 0}, {1920, 1080}},
        {"same aspect, smaller", {480, 270}, {0, 0}, {480, 270}},
        {"wider widget: bars left and right", {1200, 540}, {120, 0}, {1080, 540}},
        {"taller widget: bars above and below", {960, 740}, {0, 100}, {960, 640}},
    };
    for (const Case &testCase : cases) {
        SCOPED_TRACE(testCase.name);
        const QTransform transform = captionViewToWidgetTransform(view, testCase.widget);
        const QPointF topLeft = transform.map(QPointF(0, 0));
        const QPointF bottomRight = transform.map(QPointF(960, 540));
        EXPECT_DOUBLE_EQ(topLeft.x(), testCase.mappedTopLeft.x());
        EXPECT_DOUBLE_EQ(topLeft.y(), testCase.mappedTopLeft.y());
        EXPECT_DOUBLE_EQ(bottomRight.x(), testCase.mappedBottomRight.x());
        EXPECT_DOUBLE_EQ(bottomRight.y(), testCase.mappedBottomRight.y());
    }
    EXPECT_TRUE(captionViewToWidgetTransform(view, QSizeF(0, 0)).isIdentity());
    EXPECT_TRUE(captionViewToWidgetTransform(QSizeF(), QSizeF(100, 100)).isIdentity());
}

}  // namespace
}  // namespace tolvane
