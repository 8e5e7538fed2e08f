#include "views/my_cell.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(MyCellTest, ThePlayedColumnShowsTheDoneMarkOrTheWholePercent) {
    struct Case {
        double playedFraction;
        bool isDone;
        const char *text;
    };
    const Case cases[] = {
        {0.0, false, ""},      {0.004, false, ""},   {0.01, false, "1%"},   {0.425, false, "42%"},
        {0.996, false, "99%"}, {1.0, false, "100%"}, {0.3, true, "\u2713"}, {0.0, true, "\u2713"},
        {-0.5, false, ""},     {7.0, false, "100%"},
    };
    for (const Case &c : cases) {
        PlaylistRow row;
        row.playedFraction = c.playedFraction;
        row.isDone = c.isDone;
        EXPECT_EQ(MyCell::playedText(row), QString::fromUtf8(c.text))
            << c.playedFraction << (c.isDone ? " done" : "");
    }
}

}  // namespace
}  // namespace tolvane
