// The real application, started as the desktop starts it: on a virtual
// display (xvfb-run), on a private session bus (dbus-run-session), with
// settings of its own and no sound device.

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <memory>

#include "app/desktop/single_instance.h"
#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

constexpr int kStartLimitMsec = 30000;
constexpr int kQuitLimitMsec = 30000;

bool waitFor(const std::function<bool()> &isDone, int limitMsec) {
    QElapsedTimer timer;
    timer.start();
    while (!isDone()) {
        if (timer.elapsed() > limitMsec) {
            return false;
        }
        QThread::msleep(50);
    }
    return true;
}

bool isRunningInstanceRegistered() {
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr &&
           bus->isServiceRegistered(QLatin1String(SingleInstance::kServiceName)).value();
}

// The playing position the player reports through MPRIS, in seconds; -1
// while it does not answer.
double mprisPositionSec() {
    QDBusInterface properties(QLatin1String("org.mpris.MediaPlayer2.tolvane"),
                              QStringLiteral("/org/mpris/MediaPlayer2"),
                              QStringLiteral("org.freedesktop.DBus.Properties"));
    const QDBusReply<QDBusVariant> reply =
        properties.call(QStringLiteral("Get"), QStringLiteral("org.mpris.MediaPlayer2.Player"),
                        QStringLiteral("Position"));
    return reply.isValid() ? double(reply.value().variant().toLongLong()) / 1e6 : -1.0;
}

class AppLaunchTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!QDBusConnection::sessionBus().isConnected()) {
            GTEST_SKIP() << "no session bus: run under dbus-run-session";
        }
        ASSERT_TRUE(configDir.isValid());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configDir.path());
        environment.insert(QStringLiteral("SDL_AUDIODRIVER"), QStringLiteral("dummy"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    }

    void TearDown() override {
        for (auto &player : players) {
            if (player->state() != QProcess::NotRunning) {
                player->kill();
                player->waitForFinished(kQuitLimitMsec);
            }
        }
    }

    QProcess &start(const QStringList &arguments) {
        auto player = std::make_unique<QProcess>();
        player->setProcessEnvironment(environment);
        player->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        player->start(QStringLiteral(TOLVANE_APP_PATH), arguments);
        players.push_back(std::move(player));
        return *players.back();
    }

    // Starts the first instance and waits until it has taken the bus name,
    // which it does once its windows are up.
    QProcess &startFirstInstance(const QStringList &arguments) {
        QProcess &player = start(arguments);
        EXPECT_TRUE(player.waitForStarted());
        EXPECT_TRUE(waitFor(isRunningInstanceRegistered, kStartLimitMsec))
            << "the player never registered on the session bus";
        return player;
    }

    // SIGTERM, as a session manager or `kill` sends it: an orderly quit.
    void terminate(QProcess &player) {
        ::kill(pid_t(player.processId()), SIGTERM);
        ASSERT_TRUE(player.waitForFinished(kQuitLimitMsec)) << "SIGTERM did not end the player";
        EXPECT_EQ(player.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(player.exitCode(), 0);
    }

    QJsonObject storedRecords() {
        const test::ProbeRun run = test::runProbe(
            {QStringLiteral("records"), QStringLiteral("--config"), configDir.path()});
        EXPECT_EQ(run.exitCode, 0) << run.standardOutput.toStdString();
        return run.json;
    }

    QVariant storedSetting(const char *key) {
        const QSettings settings(configDir.filePath(QStringLiteral("Tolvane/Tolvane.conf")),
                                 QSettings::IniFormat);
        return settings.value(QLatin1String(key));
    }

    QTemporaryDir configDir;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    std::vector<std::unique_ptr<QProcess>> players;
};

TEST_F(AppLaunchTest, AFirstLaunchQuitWithNothingOpenSavesTheFramesButNoPlayedState) {
    QProcess &player = startFirstInstance({});
    terminate(player);

    const QString mainFrame = storedSetting("MainWindowFrameMono2").toString();
    EXPECT_FALSE(mainFrame.trimmed().isEmpty()) << "the main window's frame is saved";
    EXPECT_FALSE(storedSetting("InspectorWindowFrameMono2").toString().trimmed().isEmpty());
    EXPECT_FALSE(storedSetting("PlaylistWindowFrameMono2").toString().trimmed().isEmpty());
    const QJsonObject records = storedRecords();
    EXPECT_TRUE(records.value(QLatin1String("QZRTotalFdFlsData"))
                    .toObject()
                    .value(QLatin1String("ttfile"))
                    .toObject()
                    .isEmpty())
        << "no played-state record after an empty playlist";
}

TEST_F(AppLaunchTest, APlayerEndedBySigtermWhilePlayingHasStoredItsPosition) {
    const QString video = QFileInfo(test::mediaPath("h264_aac_8s.mkv")).canonicalFilePath();
    QProcess &player = startFirstInstance({video});
    // Once it has played a while, the stored position must lie inside the file.
    ASSERT_TRUE(waitFor([] { return mprisPositionSec() > 1.0; }, kStartLimitMsec))
        << "the file never played";
    terminate(player);

    const QJsonObject file = storedRecords()
                                 .value(QLatin1String("QZRTotalFdFlsData"))
                                 .toObject()
                                 .value(QLatin1String("ttfile"))
                                 .toObject()
                                 .value(video)
                                 .toObject();
    ASSERT_FALSE(file.isEmpty()) << "no played-state entry for " << video.toStdString();
    const double ctime = file.value(QLatin1String("ctime")).toDouble(-1.0);
    EXPECT_GT(ctime, 0.0) << "the position reached, not the start";
    EXPECT_LT(ctime, 8.0);
}

TEST_F(AppLaunchTest, ASecondLaunchHandsItsFileToTheRunningPlayerAndExits) {
    const QString video = QFileInfo(test::mediaPath("h264_aac_8s.mkv")).canonicalFilePath();
    QProcess &first = startFirstInstance({});

    QProcess &second = start({video});
    ASSERT_TRUE(second.waitForFinished(kStartLimitMsec)) << "the second launch did not exit";
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);

    // The first instance opened it: at quit it stores the file's played state.
    ASSERT_TRUE(waitFor([] { return mprisPositionSec() > 0.0; }, kStartLimitMsec))
        << "the first instance never played the handed-over file";
    terminate(first);
    const QJsonObject files = storedRecords()
                                  .value(QLatin1String("QZRTotalFdFlsData"))
                                  .toObject()
                                  .value(QLatin1String("ttfile"))
                                  .toObject();
    EXPECT_TRUE(files.contains(video)) << "the handed-over file was opened by the first instance";
}

}  // namespace
}  // namespace tolvane
