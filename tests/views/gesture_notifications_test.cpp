#include "views/gesture_notifications.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane {
namespace {

std::vector<std::string> names(const std::vector<const char *> &posted) {
    return {posted.begin(), posted.end()};
}

TEST(GestureAccumulatorTest, ScrollsBecomeOneNotificationPerStep) {
    struct Step {
        QPoint angleDelta;
        QPoint pixelDelta;
        std::vector<std::string> posted;
    };
    struct Case {
        const char *name;
        std::vector<Step> steps;
    };
    const std::vector<Case> cases = {
        {"a wheel notch up, then down",
         {{{0, 120}, {}, {"MYScrollGestureUp"}}, {{0, -120}, {}, {"MYScrollGestureDown"}}}},
        {"two notches at once", {{{0, 240}, {}, {"MYScrollGestureUp", "MYScrollGestureUp"}}}},
        {"a horizontal wheel",
         {{{120, 0}, {}, {"MYScrollGestureLeft"}}, {{-120, 0}, {}, {"MYScrollGestureRight"}}}},
        {"half notches add up",
         {{{0, 60}, {}, {}}, {{0, 60}, {}, {"MYScrollGestureUp"}}, {{0, 60}, {}, {}}}},
        {"a slow touchpad swipe",
         {{{0, 10}, {0, 15}, {}},
          {{0, 10}, {0, 15}, {}},
          {{0, 10}, {0, 15}, {"MYScrollGestureUp"}}}},
        {"a mostly vertical swipe does not also go sideways",
         {{{0, 0}, {30, 35}, {}}, {{0, 0}, {30, 35}, {"MYScrollGestureUp"}}}},
        {"turning back forgets the other direction",
         {{{0, 100}, {}, {}}, {{100, 0}, {}, {}}, {{0, 100}, {}, {}}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        GestureAccumulator gestures;
        for (const Step &step : c.steps) {
            EXPECT_EQ(names(gestures.scroll(step.angleDelta, step.pixelDelta)), step.posted);
        }
    }
}

TEST(GestureAccumulatorTest, PinchesMagnifyByTenthsOfScale) {
    GestureAccumulator gestures;
    EXPECT_EQ(names(gestures.magnify(0.05)), std::vector<std::string>{});
    EXPECT_EQ(names(gestures.magnify(0.05)), std::vector<std::string>{"MYMagnifyInc"});
    EXPECT_EQ(names(gestures.magnify(-0.25)),
              (std::vector<std::string>{"MYMagnifyDec", "MYMagnifyDec"}));
    gestures.reset();
    EXPECT_EQ(names(gestures.magnify(-0.05)), std::vector<std::string>{})
        << "the remainder of an ended pinch is forgotten";
}

}  // namespace
}  // namespace tolvane
