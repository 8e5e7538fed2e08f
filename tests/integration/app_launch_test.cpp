// The real application, started as the desktop starts it: on a virtual
// display (xvfb-run), on a private session bus (dbus-run-session), with
// settings of its own and no sound device, driven by playerctl as media keys
// and panels would.

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QUrl>
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

bool isRunningInstanceRegistered() {
    QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
    return bus != nullptr &&
           bus->isServiceRegistered(QLatin1String(SingleInstance::kServiceName)).value();
}

QString playerctl(const QStringList &arguments) {
    QProcess client;
    client.start(QStringLiteral("playerctl"), QStringList{"--player=tolvane"} + arguments);
    client.waitForFinished(10000);
    return QString::fromUtf8(client.readAllStandardOutput()).trimmed();
}

// The playing position the player reports through MPRIS; 0 while it does not answer.
double mprisPositionSec() { return playerctl({"position"}).toDouble(); }
QString mprisTitle() { return playerctl({"metadata", "xesam:title"}); }

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
        EXPECT_TRUE(test::waitUntil(isRunningInstanceRegistered, kStartLimitMsec))
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

    // The stored "ttfile" record of played files, as the probe prints it.
    QJsonObject storedFileRecords() {
        const test::ProbeRun run = test::runProbe(
            {QStringLiteral("records"), QStringLiteral("--config"), configDir.path()});
        EXPECT_EQ(run.exitCode, 0) << run.standardOutput.toStdString();
        return run.json["QZRTotalFdFlsData"].toObject()["ttfile"].toObject();
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

// A first launch with nothing open; a second start hands its file over and
// exits. The first plays it and answers playerctl as media keys and panels
// would: it seeks its real engine, keeps a volume, opens another file and
// quits, storing the windows' frames and the position the first file left
// at. A later instance ends on SIGTERM as a session manager ends it.
TEST_F(AppLaunchTest, ASecondLaunchHandsOverItsFileAndTheRunningPlayerAnswersPlayerctl) {
    QTemporaryDir media;
    for (const char *name : {"long_h264_aac.mkv", "h264_640x360.mkv"}) {
        ASSERT_TRUE(QFile::copy(test::mediaPath(name), media.filePath(name)));
    }
    const QString video = QFileInfo(media.filePath("long_h264_aac.mkv")).canonicalFilePath();
    QProcess &first = startFirstInstance({});

    QProcess &second = start({video});
    ASSERT_TRUE(second.waitForFinished(kStartLimitMsec)) << "the second launch did not exit";
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    ASSERT_TRUE(test::waitUntil([] { return mprisPositionSec() > 1.0; }, kStartLimitMsec))
        << "the first instance never played the handed-over file";
    EXPECT_EQ(playerctl({"status"}), QStringLiteral("Playing"));
    EXPECT_EQ(mprisTitle(), QStringLiteral("long_h264_aac.mkv"));

    playerctl({"position", "6"});
    // A seek lands on the key frame before its target (one a second here).
    EXPECT_TRUE(test::waitUntil([] { return mprisPositionSec() > 4.9; })) << mprisPositionSec();

    playerctl({"volume", "2.5"});
    EXPECT_EQ(playerctl({"volume"}).toDouble(), 2.5);

    playerctl({"open", QUrl::fromLocalFile(media.filePath("h264_640x360.mkv")).toString()});
    EXPECT_TRUE(test::waitUntil([] { return mprisTitle() == "h264_640x360.mkv"; }))
        << mprisTitle().toStdString();

    // playerctl has no quit: the root interface's Quit through dbus-send.
    QProcess::execute(QStringLiteral("dbus-send"),
                      {"--session", "--type=method_call", "--dest=org.mpris.MediaPlayer2.tolvane",
                       "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Quit"});
    ASSERT_TRUE(first.waitForFinished(kQuitLimitMsec)) << "Quit did not end the player";
    EXPECT_EQ(first.exitCode(), 0);
    for (const char *frame :
         {"MainWindowFrameMono2", "InspectorWindowFrameMono2", "PlaylistWindowFrameMono2"}) {
        EXPECT_FALSE(storedSetting(frame).toString().trimmed().isEmpty()) << frame;
    }
    const double ctime = storedFileRecords()[video].toObject()["ctime"].toDouble(-1.0);
    EXPECT_GT(ctime, 4.9) << "the position reached, not the start";
    EXPECT_LT(ctime, 10.0);

    terminate(startFirstInstance({}));
}

}  // namespace
}  // namespace tolvane
