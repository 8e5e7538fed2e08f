#include <gtest/gtest.h>

#include "launched_controller.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

// The controller driven without a window: transport and sizing.
class ControllerTransport : public test::LaunchedController {
protected:
    void SetUp() override {
        LaunchedController::SetUp();
        setSetting("AutoPlay", 1);  // an opened file plays at once
        launch();
        QObject::connect(controller.get(), &AppController::seeked,
                         [this](double sec) { seekTargets.append(sec); });
    }
    MyCAOpenGLLayer &engine() { return controller->engine(); }
    double position() { return controller->transportState().positionSec; }

    QList<double> seekTargets;
};

TEST_F(ControllerTransport, PlayAtTheEndStartsAgainFromTheBeginning) {
    open({"h264_aac.mkv"});
    ASSERT_TRUE(controller->transportState().isPlaying);
    // The movie timer notices the end while the event loop runs.
    ASSERT_TRUE(test::processEventsUntil([this] {
        return !controller->transportState().isPlaying;
    })) << "the 2 s file never ended";
    seekTargets.clear();
    controller->clickPlayPauseButton();
    EXPECT_TRUE(controller->transportState().isPlaying);
    EXPECT_EQ(seekTargets, QList<double>({0.0}));
    EXPECT_LT(position(), 0.5);
}

// The rounding and the limits are the rules' (transport_rules_test); here
// the level reaches the engine and the stored "Volume" outlives a mute.
TEST_F(ControllerTransport, VolumeReachesTheEngineAndMuteKeepsTheStoredLevel) {
    open({"long_h264_aac.mkv"});
    UserDefaults defaults;
    controller->clickVolumeSlider(4.87);
    EXPECT_EQ(defaults.value("Volume").toDouble(), 4.9);
    EXPECT_FLOAT_EQ(engine().volume(), 4.9f);

    controller->clickMuteButton();
    EXPECT_EQ(controller->transportState().volume, 0.0);
    EXPECT_EQ(engine().volume(), 0.0f);
    EXPECT_EQ(defaults.value("Volume").toDouble(), 4.9) << "mute leaves the stored level";
    controller->clickMuteButton();
    EXPECT_FLOAT_EQ(engine().volume(), 4.9f);
}

// The sizes are window_sizing_test's; here the commands reach the window,
// from the opening at the 640 minimum.
TEST_F(ControllerTransport, RatioAndSizeCommandsOnA16x9Screen) {
    open({"h264_640x360.mkv"});
    ASSERT_EQ(lastMainWindowSize(), QSize(640, 360));

    controller->clickAspectRatioMenu(QStringLiteral("2.35:1"));
    EXPECT_EQ(lastMainWindowSize(), QSize(640, 272));
    EXPECT_EQ(UserDefaults().value("AspectRatio").toString(), QStringLiteral("2.35:1"));
    controller->clickIncreaseSizeMenu();
    EXPECT_EQ(lastMainWindowSize(), QSize(800, 340)) << "160 wider";
    controller->clickDecreaseSizeMenu();
    controller->clickDecreaseSizeMenu();
    EXPECT_EQ(lastMainWindowSize(), QSize(640, 272));
    const qsizetype requests = requestedFrames.size();
    controller->clickDecreaseSizeMenu();
    EXPECT_EQ(requestedFrames.size(), requests) << "at 640 a decrease does nothing";

    controller->clickAspectRatioMenu(QStringLiteral("SAR"));
    EXPECT_EQ(lastMainWindowSize(), QSize(640, 360));
}

TEST_F(ControllerTransport, APendingSeekEndLeavesTheNextFileAlone) {
    open({"h264_aac.mkv", "h264_640x360.mkv"});
    ASSERT_EQ(engine().rate(), 1.0);
    controller->clickForwardMenu();  // its end is still pending
    ASSERT_EQ(seekTargets.size(), 1);
    EXPECT_EQ(messages.last(), AppController::representHMSfromSEC(seekTargets[0]));
    controller->clickNextFileButton();
    controller->clickPlayPauseButton();  // the user pauses the new file
    ASSERT_EQ(engine().rate(), 0.0);
    controller->restorePlayRate();
    EXPECT_EQ(engine().rate(), 0.0) << "the old file's rate came back";
}

}  // namespace
}  // namespace tolvane
