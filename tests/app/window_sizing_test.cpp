#include "app/window_sizing.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

const QRect kScreen16x9(0, 0, 1920, 1080);
const QRect kScreen16x10(0, 0, 1280, 800);
// A 16:10 screen with a panel on the left and one at the top.
const QRect kPanelled16x10(100, 30, 1280, 800);
constexpr double k4x3 = 4.0 / 3.0;
constexpr double k16x9 = 16.0 / 9.0;

// The window a file opens in: its natural size at its own ratio, limited.
QSize openingSize(int width, int height, const QRect &visibleFrame) {
    const QSizeF natural = naturalPictureSize(width, height);
    const double cRatio = natural.width() / natural.height();
    return limitedSize(naturalSize(natural, cRatio, visibleFrame), cRatio, visibleFrame);
}

TEST(WindowSizing, OpeningSizeFollowsThePictureWithinTheLimits) {
    const struct {
        int width, height;
        QRect screen;
        QSize expected;
    } cases[] = {
        // 4:3 is narrower than the screen: the height leads; 320 wide is
        // below the minimum, so 640 wide at the file's ratio.
        {320, 240, kScreen16x10, {640, 480}},
        // 16:9 is wider than 16:10: the width leads and is at the minimum already.
        {640, 360, kScreen16x10, {640, 360}},
        {0, 0, kScreen16x10, {960, 540}},    // no picture size
        {0, 480, kScreen16x10, {960, 540}},  // half a size is none
        {1280, 720, kScreen16x10, {1280, 720}},
        // Reaching the visible frame in one direction gives the maximum size.
        {1920, 1080, kScreen16x9, {1920, 1080}},
        {1920, 1080, kScreen16x10, {1280, 720}},
        {720, 1280, kScreen16x10, {450, 800}},  // portrait: maximum by height, under 640
    };
    for (const auto &c : cases) {
        EXPECT_EQ(openingSize(c.width, c.height, c.screen), c.expected)
            << c.width << "x" << c.height << " on " << c.screen.width() << "x" << c.screen.height();
    }
}

TEST(WindowSizing, NaturalSizeKeepsTheSideTheScreenLeadsWith) {
    const struct {
        QSizeF natural;
        double cRatio;
        QRect screen;
        QSize expected;
    } cases[] = {
        {{1920, 1080}, 2.35, kScreen16x10, {1920, 817}},   // wider than the screen: width kept
        {{1920, 1080}, k4x3, kScreen16x10, {1440, 1080}},  // narrower: height kept
        {{720, 576}, k16x9, kScreen16x10, {720, 405}},     // anamorphic DVD, 16:9 chosen
    };
    for (const auto &c : cases) {
        EXPECT_EQ(naturalSize(c.natural, c.cRatio, c.screen), c.expected) << c.cRatio;
    }
}

TEST(WindowSizing, SizeCommandsStepSixteenPixelsTenTimes) {
    const struct {
        const char *name;
        QRect frame;
        int step;
        double cRatio;
        QRect screen;
        std::optional<QRect> expected;
    } cases[] = {
        // clang-format off
        {"2.35:1: +160", {100, 100, 960, 409}, +10, 2.35, kScreen16x9, {{100, 100, 1120, 477}}},
        {"off the 16 grid", {100, 100, 970, 413}, +10, 2.35, kScreen16x9, {{100, 100, 1120, 477}}},
        {"4:3 on 16:9: the height", {0, 0, 720, 540}, +10, k4x3, kScreen16x9, {{0, 0, 917, 688}}},
        {"below 640: 640", {100, 100, 720, 306}, -10, 2.35, kScreen16x9, {{100, 100, 640, 272}}},
        {"at 640: no decrease", {100, 100, 640, 272}, -10, 2.35, kScreen16x9, {}},
        {"past the screen: maximum, centred", {0, 0, 1200, 511}, +10, 2.35, kPanelled16x10,
         {{100, 157, 1280, 545}}},
        {"at the maximum: no increase", {100, 157, 1280, 545}, +10, 2.35, kPanelled16x10, {}},
        {"at the full height: no increase", {100, 0, 1067, 800}, +10, k4x3, kScreen16x10, {}},
        {"pulled back onto the screen", {900, 500, 960, 540}, +10, k16x9, kScreen16x10,
         {{160, 170, 1120, 630}}},
        // clang-format on
    };
    for (const auto &c : cases) {
        EXPECT_EQ(sizeChangedFrame(c.frame, c.step, c.cRatio, c.screen), c.expected) << c.name;
    }
}

TEST(WindowSizing, RatioChangeKeepsTheWidthWithinTheLimits) {
    const struct {
        QRect frame;
        double cRatio;
        QRect screen;
        QRect expected;
    } cases[] = {
        {{100, 100, 960, 540}, 2.35, kScreen16x9, {100, 100, 960, 409}},
        {{100, 100, 960, 409}, 960.0 / 540.0, kScreen16x9, {100, 100, 960, 540}},
        {{0, 0, 1920, 1080}, k4x3, kScreen16x9, {240, 0, 1440, 1080}},  // taller: maximum
        {{50, 50, 600, 338}, k16x9, kScreen16x9, {50, 50, 640, 360}},   // narrow: minimum
    };
    for (const auto &c : cases) {
        EXPECT_EQ(ratioChangedFrame(c.frame, c.cRatio, c.screen), c.expected) << c.cRatio;
    }
}

TEST(WindowSizing, FullViewRectLetterboxesOrPillarboxes) {
    const struct {
        double cRatio;
        QRect full;
        QRect expected;
    } cases[] = {
        {k16x9, kScreen16x9, {0, 0, 1920, 1080}},
        {2.35, kScreen16x9, {0, 132, 1920, 817}},
        {k4x3, kScreen16x9, {240, 0, 1440, 1080}},
        {k16x9, kScreen16x10, {0, 40, 1280, 720}},
        {k16x9, {1920, 0, 1280, 800}, {0, 40, 1280, 720}},  // relative to the screen
    };
    for (const auto &c : cases) {
        EXPECT_EQ(fullViewRect(c.cRatio, c.full), c.expected) << c.cRatio;
    }
}

TEST(WindowSizing, VisibleOriginPullsTheWindowOntoTheScreen) {
    const struct {
        const char *name;
        QRect frame;
        QPoint origin;
        bool isUnmoved;
    } cases[] = {
        {"inside", {200, 100, 640, 360}, {200, 100}, true},
        {"left of the frame", {40, 100, 640, 360}, {100, 100}, false},
        {"under the top panel", {200, 0, 640, 360}, {200, 30}, false},
        {"past the right edge", {1000, 100, 640, 360}, {740, 100}, false},
        {"past the bottom", {200, 700, 640, 360}, {200, 470}, false},
        // Larger than the screen: the top and right edges stay reachable.
        {"oversized", {0, 0, 1500, 900}, {-120, 30}, false},
    };
    for (const auto &c : cases) {
        const VisibleOrigin result = visibleOrigin(c.frame, kPanelled16x10);
        EXPECT_EQ(result.origin, c.origin) << c.name;
        EXPECT_EQ(result.isUnmoved, c.isUnmoved) << c.name;
    }
}

}  // namespace
}  // namespace tolvane
