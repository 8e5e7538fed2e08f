#include "app/desktop/mpris_service.h"

#include <gtest/gtest.h>

#include <QProcess>

#include "engine/my_ca_opengl_layer.h"
#include "launched_controller.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// playerctl, a real MPRIS client, against a controller driven without a
// window; the test runs on a private session bus (dbus-run-session). The
// event loop keeps turning while a client runs, since this process answers it.
class MprisWithPlayerctl : public test::LaunchedController {
protected:
    void SetUp() override {
        LaunchedController::SetUp();
        setSetting("AutoPlay", 1);  // an opened file plays at once
        launch();
        mpris = std::make_unique<MprisService>(*controller);
        ASSERT_TRUE(mpris->registerOnSessionBus()) << "no session bus: run under dbus-run-session";
        open({"h264_aac.mkv", "h264_640x360.mkv", "long_h264_aac.mkv"});
        ASSERT_EQ(controller->pictureMode(), PictureMode::ffmpeg);
    }
    void TearDown() override {
        mpris.reset();
        LaunchedController::TearDown();
    }

    QString playerctl(const QStringList &arguments) {
        QProcess client;
        client.start(QStringLiteral("playerctl"),
                     QStringList{QStringLiteral("--player=tolvane")} + arguments);
        EXPECT_TRUE(test::processEventsUntil([&client] {
            return client.state() == QProcess::NotRunning;
        })) << arguments.join(' ').toStdString();
        return QString::fromUtf8(client.readAllStandardOutput()).trimmed();
    }
    QString title() {
        return playerctl({QStringLiteral("metadata"), QStringLiteral("xesam:title")});
    }

    std::unique_ptr<MprisService> mpris;
};

TEST_F(MprisWithPlayerctl, PlayPauseStopAndTheirStatus) {
    const struct {
        const char *command;
        const char *status;
        bool isPlaying;
    } steps[] = {
        {"status", "Playing", true},     {"pause", "Paused", false},
        {"pause", "Paused", false},      {"play", "Playing", true},
        {"play-pause", "Paused", false}, {"play-pause", "Playing", true},
        {"stop", "Stopped", false},      {"play", "Playing", true},
    };
    for (const auto &step : steps) {
        playerctl({QString::fromLatin1(step.command)});
        EXPECT_EQ(playerctl({"status"}), QString::fromLatin1(step.status)) << step.command;
        EXPECT_EQ(controller->transportState().isPlaying, step.isPlaying) << step.command;
    }
}

// The volume is the running player's test (app_launch_test); here the
// metadata, the steps to either end and the refusals.
TEST_F(MprisWithPlayerctl, MetadataFollowsNextPreviousAndOpen) {
    // In numeric order: h264_640x360, h264_aac, long_h264_aac.
    controller->doubleClickedAtTableView(1);
    ASSERT_EQ(title(), QStringLiteral("h264_aac.mkv"));
    playerctl({"next"});
    EXPECT_EQ(title(), QStringLiteral("long_h264_aac.mkv"));
    EXPECT_FALSE(controller->hasPlaylistItemInDirection(+1)) << "at the end";
    EXPECT_EQ(playerctl({"metadata", "xesam:url"}),
              controller->playlist().reOpen.reOpenURL.toString());
    EXPECT_EQ(playerctl({"metadata", "mpris:trackid"}),  // playerctl quotes paths
              QStringLiteral("'/org/tolvane/Tolvane/Track/2'"));
    EXPECT_NEAR(playerctl({"metadata", "mpris:length"}).toLongLong() / 1e6,
                controller->engine().fileDurationSec(), 1e-3);
    playerctl({"previous"});
    playerctl({"previous"});
    EXPECT_EQ(title(), QStringLiteral("h264_640x360.mkv"));
    EXPECT_FALSE(controller->hasPlaylistItemInDirection(-1)) << "at the start";

    playerctl(
        {"open", QUrl::fromLocalFile(copyMedia("h264_aac_8s.mkv", "h264_aac_8s.mkv")).toString()});
    EXPECT_EQ(title(), QStringLiteral("h264_aac_8s.mkv"));
    playerctl({"open", "https://example.org/video.mkv"});  // not a file: nothing happens
    EXPECT_EQ(title(), QStringLiteral("h264_aac_8s.mkv"));
}

TEST_F(MprisWithPlayerctl, PositionIsSetAndMovedByAnOffset) {
    open({"long_h264_aac.mkv"});
    QList<double> seekTargets;
    QObject::connect(controller.get(), &AppController::seeked,
                     [&seekTargets](double sec) { seekTargets.append(sec); });
    playerctl({"position", "4"});  // SetPosition on the current track
    ASSERT_FALSE(seekTargets.isEmpty());
    EXPECT_DOUBLE_EQ(seekTargets.last(), 4.0);
    controller->restorePlayRate();
    const double position = controller->transportState().positionSec;
    playerctl({"position", "2+"});  // Seek by an offset
    EXPECT_NEAR(seekTargets.last(), position + 2.0, 0.2);
    playerctl({"position", "1000"});  // past the end: ignored
    EXPECT_NEAR(seekTargets.last(), position + 2.0, 0.2);
}

TEST_F(MprisWithPlayerctl, PropertiesChangedFollowsTheControls) {
    QProcess follower;
    follower.start(
        QStringLiteral("playerctl"),
        {QStringLiteral("--player=tolvane"), QStringLiteral("--follow"), QStringLiteral("status")});
    ASSERT_TRUE(follower.waitForStarted());
    QString seen;
    const auto waitForLine = [&](const QString &line) {
        return test::processEventsUntil([&] {
            seen += QString::fromUtf8(follower.readAllStandardOutput());
            return seen.split('\n').contains(line);
        });
    };
    EXPECT_TRUE(waitForLine(QStringLiteral("Playing"))) << seen.toStdString();
    seen.clear();
    controller->clickPlayPauseButton();  // the window's button, not MPRIS
    EXPECT_TRUE(waitForLine(QStringLiteral("Paused"))) << seen.toStdString();
    follower.kill();
    follower.waitForFinished();
}

TEST(MprisService, SupportedMimeTypesAreTheDesktopFiles) {
    QFile desktop(QStringLiteral(TOLVANE_DESKTOP_FILE));
    ASSERT_TRUE(desktop.open(QIODevice::ReadOnly));
    QStringList mimeTypes;
    for (const QString &line : QString::fromUtf8(desktop.readAll()).split('\n')) {
        if (line.startsWith(QLatin1String("MimeType="))) {
            mimeTypes = line.mid(9).split(';', Qt::SkipEmptyParts);
        }
    }
    EXPECT_EQ(MprisService::supportedMimeTypes(), mimeTypes);
}

}  // namespace
}  // namespace tolvane
