#include <gtest/gtest.h>

#include <QMetaEnum>
#include <QTimer>
#include <functional>

#include "launched_controller.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using Outcome = NativeModePlayer::LoadOutcome;
constexpr int kAnswerFFmpeg = 0;
constexpr int kAnswerCancel = 1;
// Later than the end of a run of seek presses falls due (0.1 s after the last).
constexpr std::chrono::milliseconds kAfterSeekRunEnd{500};

// Native mode chosen ("DecodingPopUpItem" 0) before the launch.
class NativeModeTest : public test::LaunchedController {
protected:
    void SetUp() override {
        LaunchedController::SetUp();
        setSetting("DecodingPopUpItem", 0);
        launch();
    }
};

TEST_F(NativeModeTest, OnlyThePlatformPlayersExtensionsGoToItInAnyCase) {
    const struct {
        const char *name;
        bool isLoadedNatively;
    } cases[] = {{"clip.MOV", true}, {"clip.m2ts", true}, {"clip.mkv", false}};
    for (const auto &c : cases) {
        ui.shown.clear();
        native->loadedPaths.clear();
        controller->openFile(copyMedia("h264_aac.mp4", QString::fromUtf8(c.name)));
        EXPECT_EQ(native->loadedPaths.size(), c.isLoadedNatively ? 1 : 0) << c.name;
        EXPECT_EQ(ui.titles(), c.isLoadedNatively
                                   ? QStringList()
                                   : QStringList({"Native mode cannot play MKV files."}))
            << c.name;
        EXPECT_EQ(controller->currentDecodingMode(), 0) << c.name;
    }

    ui.answers = {kAnswerFFmpeg};
    controller->openFile(tree.path("clip.mkv"));
    EXPECT_EQ(controller->currentDecodingMode(), 1);
    EXPECT_EQ(controller->pictureMode(), PictureMode::ffmpeg);
    EXPECT_EQ(controller->inspectorState().decodingLabel, "FF");
}

TEST_F(NativeModeTest, EachOutcomeIsShownAndFFmpegResumesTheSameFile) {
    const QString clip = copyMedia("h264_aac.mp4", "clip.mp4");
    constexpr PictureMode kNone = PictureMode::none;
    constexpr PictureMode kNative = PictureMode::native;
    const struct {
        Outcome outcome;
        QStringList unsupportedAudioCodecs;
        const char *title;  // "" when nothing is asked
        bool offersFFmpeg;
        PictureMode afterCancel;
    } cases[] = {
        // clang-format off
        {Outcome::loaded, {}, "", false, kNative},
        {Outcome::loaded, {"ac-3"}, "The audio of this file cannot be decoded.", true, kNative},
        {Outcome::loadedWithoutAudibleTrack, {},
         "Native mode found no sound it can play in this file.", true, kNative},
        {Outcome::failed, {}, "The file could not be opened.", true, kNone},
        {Outcome::notPlayable, {}, "Native mode cannot play this file.", true, kNone},
        {Outcome::protectedContent, {}, "The file could not be opened.", false, kNone},
        {Outcome::cancelled, {}, "The file took too long to load in Native mode.", true, kNone},
        // clang-format on
    };
    for (const auto &c : cases) {
        for (const int answer : {kAnswerCancel, kAnswerFFmpeg}) {
            const std::string what =
                std::string(QMetaEnum::fromType<Outcome>().valueToKey(int(c.outcome))) +
                (answer == kAnswerFFmpeg ? " / FFmpeg" : " / CANCEL");
            setSetting("DecodingPopUpItem", 0);
            ui.shown.clear();
            ui.answers = {answer};
            controller->openFile(clip);
            ASSERT_EQ(native->loadedPaths.last(), clip) << what;
            native->finishLoading(c.outcome, c.unsupportedAudioCodecs);

            const QStringList expectedTitles =
                *c.title ? QStringList({QString::fromUtf8(c.title)}) : QStringList();
            EXPECT_EQ(ui.titles(), expectedTitles) << what;
            if (c.offersFFmpeg) {
                EXPECT_EQ(ui.shown.first().buttons.value(0), "FFmpeg") << what;
            }
            const bool switched = c.offersFFmpeg && answer == kAnswerFFmpeg;
            EXPECT_EQ(controller->currentDecodingMode(), switched ? 1 : 0) << what;
            EXPECT_EQ(controller->pictureMode(), switched ? PictureMode::ffmpeg : c.afterCancel)
                << what;
            if (switched) {
                EXPECT_TRUE(controller->engine().isAlsoHaveMovie()) << what;
            }
        }
    }
}

TEST_F(NativeModeTest, SwitchingTheModeWhilePlayingResumesTheSameSecond) {
    setSetting("DecodingPopUpItem", 1);
    controller->openFile(copyMedia("h264_aac_8s.mkv", "film.mp4"));
    ASSERT_EQ(controller->pictureMode(), PictureMode::ffmpeg);
    controller->engine().setCurrentTimeSec(4.0, true);
    controller->engine().restartTimers();

    controller->clickChangeDecoding();
    EXPECT_EQ(controller->currentDecodingMode(), 0);
    EXPECT_FALSE(controller->engine().isAlsoHaveMovie());
    native->finishLoading(Outcome::loaded);
    EXPECT_EQ(controller->pictureMode(), PictureMode::native);
    ASSERT_EQ(native->seeks.size(), 1u);
    EXPECT_NEAR(native->seeks.front(), 4.0, 0.1);

    native->timeSec = 5.5;
    controller->clickChangeDecoding();
    EXPECT_EQ(controller->currentDecodingMode(), 1);
    EXPECT_EQ(controller->pictureMode(), PictureMode::ffmpeg);
    EXPECT_NEAR(enginePositionSec(), 5.5, 0.1);
    EXPECT_TRUE(ui.shown.isEmpty());
}

// Every transport control reaches the platform player while a file plays in
// Native mode: what it was asked, from a 20-minute episode at 600 s.
TEST_F(NativeModeTest, TransportControlsDriveTheNativePlayer) {
    using C = AppController;
    using Press = std::function<void(C &)>;
    const QString clip = copyMedia("h264_aac.mp4", "clip.mp4");
    const struct {
        const char *what;
        double startSec;
        double startRate;
        Press press;
        bool isSeekRun;  // its end resumes the rate, from the event loop
        std::vector<double> seeks;
        std::vector<double> rates;
        std::vector<float> volumes;
    } cases[] = {
        // clang-format off
        {"play", 600, 0, &C::clickPlayPauseButton, false, {}, {1}, {}},
        {"pause", 600, 1, &C::clickPlayPauseButton, false, {}, {0}, {}},
        {"play at the end starts again", 1199.9, 0, &C::clickPlayPauseButton, false, {0}, {1}, {}},
        {"forward while playing", 600, 1, &C::clickForwardMenu, true, {603}, {0, 1}, {}},
        {"backward while paused", 600, 0, &C::clickBackwardMenu, true, {597}, {0}, {}},
        {"time slider past the end", 600, 1, [](C &c) { c.clickTimeSlider(5000); }, true, {1200},
         {0, 1}, {}},
        {"volume slider", 600, 1, [](C &c) { c.clickVolumeSlider(3.33); }, false, {}, {}, {3.3f}},
        {"mute", 600, 1, &C::clickMuteButton, false, {}, {}, {0.0f}},
        // clang-format on
    };
    for (const auto &c : cases) {
        setSetting("Volume", 1.0);
        controller->openFile(clip);
        native->finishLoading(Outcome::loaded);
        ASSERT_EQ(controller->pictureMode(), PictureMode::native) << c.what;
        native->duration = 1200;
        native->timeSec = c.startSec;
        native->rateValue = c.startRate;
        native->seeks.clear();
        native->rates.clear();
        native->volumes.clear();

        c.press(*controller);
        if (c.isSeekRun) {
            // Timers fire in the order they fall due: this one follows the
            // run's end, which falls due a moment after the last press.
            bool isAfterTheRunsEnd = false;
            QTimer::singleShot(kAfterSeekRunEnd, [&] { isAfterTheRunsEnd = true; });
            ASSERT_TRUE(test::processEventsUntil([&] { return isAfterTheRunsEnd; })) << c.what;
        }
        EXPECT_EQ(native->seeks, c.seeks) << c.what;
        EXPECT_EQ(native->rates, c.rates) << c.what;
        EXPECT_EQ(native->volumes, c.volumes) << c.what;
        EXPECT_FALSE(controller->engine().isAlsoHaveMovie()) << c.what;
    }
}

TEST_F(NativeModeTest, SettingsChangeAloneWithNothingLoadedOrAreRefusedForAnOrphanMovie) {
    controller->clickChangeDecoding();
    controller->clickIsGPUAccCheck(false);
    EXPECT_EQ(controller->currentDecodingMode(), 1);
    EXPECT_EQ(controller->userDefaults().value("IsGPUAccForFF"), QVariant(0));
    EXPECT_TRUE(ui.shown.isEmpty());

    // The playing file stays while an empty folder replaces its playlist.
    controller->openFile(copyMedia("h264_aac.mkv", "clip.mkv"));
    controller->openFile(tree.makeFolder("empty").toLocalFile());
    ASSERT_TRUE(controller->playlist().isEmpty());
    ASSERT_TRUE(controller->engine().isAlsoHaveMovie());
    controller->clickChangeDecoding();
    controller->clickIs10bitModeCheck(false);
    EXPECT_EQ(ui.titles(), QStringList({"The decoding mode cannot be changed now.",
                                        "The decoding setting cannot be changed now."}));
    EXPECT_EQ(controller->currentDecodingMode(), 1);
    EXPECT_EQ(controller->userDefaults().value("Is10bitModeForFF"), QVariant(1));
}

}  // namespace
}  // namespace tolvane
