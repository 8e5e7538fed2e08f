#include "engine/draw_decision.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvane {
namespace {

// A playing engine with a current frame and audio under way, clock at 10 s.
DrawDecisionState playing(std::optional<double> nextFrameTimeSec) {
    DrawDecisionState state;
    state.rate = 1.0;
    state.hasPlayedAudio = true;
    state.hasCurrentFrame = true;
    state.currentTimeSec = 10.0;
    state.nextFrameTimeSec = nextFrameTimeSec;
    return state;
}

TEST(DrawDecision, NextFrameByHowFarItIsFromTheClock) {
    struct Case {
        std::optional<double> frameTime;
        bool hasCurrentFrame;
        bool answer;
        NextFrameAction action;
        std::optional<bool> isSkipping;
    };
    const Case cases[] = {
        {10.0, true, true, NextFrameAction::MakeCurrent, false},          // exactly due
        {9.85, true, true, NextFrameAction::MakeCurrent, false},          // near the limit
        {9.8, true, false, NextFrameAction::Discard, true},               // 0.2 s behind: dropped
        {10.05, true, false, NextFrameAction::OfferAgain, std::nullopt},  // early: next time
        {std::nullopt, true, false, NextFrameAction::None, std::nullopt},
        // The first picture does not wait for the clock, which waits for it,
        // and is better shown late than not at all.
        {12.0, false, true, NextFrameAction::MakeCurrent, false},
        {9.8, false, true, NextFrameAction::MakeCurrent, false},
    };
    for (const Case &c : cases) {
        DrawDecisionState state = playing(c.frameTime);
        state.hasCurrentFrame = c.hasCurrentFrame;
        const DrawDecision decision = decideDraw(state);
        const std::string shown = std::to_string(c.frameTime.value_or(-1.0)) +
                                  (c.hasCurrentFrame ? " after a picture" : " first");
        EXPECT_EQ(decision.answer, c.answer) << shown;
        EXPECT_EQ(decision.frameAction, c.action) << shown;
        EXPECT_EQ(decision.isSkipping, c.isSkipping) << shown;
        EXPECT_FALSE(decision.clearBuffers) << shown;
    }
}

// Black only while nothing has played and there is no picture to show: the
// preview of a seek to 0 while paused, before any sound, must be drawn.
TEST(DrawDecision, ClearsOnlyUntilThereIsSomethingToShow) {
    struct Case {
        const char *name;
        bool hasPlayedAudio;
        bool hasCurrentFrame;
        bool isSeekingVideo;
        double rate;
        bool clears;
        bool answer;
    };
    const Case cases[] = {
        {"just opened, nothing decoded", false, false, false, 1.0, true, false},
        {"paused at 0 with the seek preview", false, true, true, 0.0, false, true},
        {"playing from 0, first picture current", false, true, false, 1.0, false, false},
        {"sound under way", true, true, false, 1.0, false, false},
        {"sound under way, no picture yet", true, false, false, 1.0, false, false},
    };
    for (const Case &c : cases) {
        DrawDecisionState state = playing(std::nullopt);
        state.hasPlayedAudio = c.hasPlayedAudio;
        state.hasCurrentFrame = c.hasCurrentFrame;
        state.isSeekingVideo = c.isSeekingVideo;
        state.rate = c.rate;
        const DrawDecision decision = decideDraw(state);
        EXPECT_EQ(decision.clearBuffers, c.clears) << c.name;
        EXPECT_EQ(decision.answer, c.answer) << c.name;
    }
}

// "draw" or "wait", the action on the next picture, then the flags set.
std::string summary(const DrawDecision &decision) {
    static const char *const kActions[] = {"none", "offer-again", "make-current", "discard"};
    std::string text = decision.answer ? "draw " : "wait ";
    text += kActions[int(decision.frameAction)];
    if (decision.rebuildDrawingState) {
        text += " rebuild " + std::to_string(decision.countAfterChangeScreen);
    }
    text += decision.isResized ? " resized" : "";
    text += decision.stopAsynchronous ? " stop" : "";
    text += decision.isSeekingVideoCleared ? " seek-cleared" : "";
    return text;
}

// After a resize the old frame is redrawn without taking a new one; a change
// of screen rebuilds for as many decisions as counted; a seek preview is drawn
// once and its flag cleared.
TEST(DrawDecision, ResizeChangeOfScreenAndSeekPreviewRedrawWithoutTakingAPicture) {
    struct Case {
        bool isResized;
        int countAfterChangeScreen;
        bool hasCurrentFrame;
        std::optional<double> nextFrameTimeSec;
        double rate;
        bool isSeekingVideo;
        const char *expected;
    };
    const Case cases[] = {
        {true, 0, true, 9.9, 1.0, false, "draw none"},
        // Nothing to redraw yet: the next picture is judged as without a resize.
        {true, 0, false, 9.9, 1.0, false, "draw make-current"},
        {true, 0, false, std::nullopt, 1.0, false, "wait none"},
        {true, 0, false, std::nullopt, 0.0, false, "wait none stop"},
        {true, 2, true, 9.9, 1.0, false, "draw none rebuild 1 resized"},
        {true, 1, true, 9.9, 1.0, false, "draw none rebuild 0"},
        {false, 0, true, 9.9, 1.0, true, "draw none seek-cleared"},
    };
    for (const Case &c : cases) {
        DrawDecisionState state = playing(c.nextFrameTimeSec);
        state.isResized = c.isResized;
        state.countAfterChangeScreen = c.countAfterChangeScreen;
        state.hasCurrentFrame = c.hasCurrentFrame;
        state.rate = c.rate;
        state.isSeekingVideo = c.isSeekingVideo;
        EXPECT_EQ(summary(decideDraw(state)), c.expected) << &c - cases;
    }
}

}  // namespace
}  // namespace tolvane
