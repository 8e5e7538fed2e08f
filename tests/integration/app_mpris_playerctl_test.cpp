#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QUrl>

#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// The running application as the desktop meets it: started with two files
// on a display and a private session bus of its own (xvfb-run,
// dbus-run-session), driven by playerctl as media keys and panels would.
class RunningTolvane : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(config.isValid());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
        environment.insert(QStringLiteral("SDL_AUDIODRIVER"), QStringLiteral("dummy"));
        player.setProcessEnvironment(environment);
        player.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        for (const char *name : {"h264_aac.mkv", "long_h264_aac.mkv", "h264_640x360.mkv"}) {
            ASSERT_TRUE(QFile::copy(test::mediaPath(name), media.filePath(name)));
        }
        player.start(QStringLiteral(TOLVANE_APP_PATH),
                     {media.filePath("h264_aac.mkv"), media.filePath("long_h264_aac.mkv")});
        ASSERT_TRUE(player.waitForStarted());
        ASSERT_TRUE(test::waitUntil([this] { return playerctl({"status"}) == "Playing"; }, 30000))
            << "the player never reported playing over MPRIS";
    }
    void TearDown() override {
        if (player.state() != QProcess::NotRunning) {
            player.terminate();
            player.waitForFinished(10000);
        }
    }

    QString playerctl(const QStringList &arguments) {
        QProcess client;
        client.start(QStringLiteral("playerctl"), QStringList{"--player=tolvane"} + arguments);
        client.waitForFinished(10000);
        return QString::fromUtf8(client.readAllStandardOutput()).trimmed();
    }
    QString title() { return playerctl({"metadata", "xesam:title"}); }
    double position() { return playerctl({"position"}).toDouble(); }

    QTemporaryDir config;
    QTemporaryDir media;
    QProcess player;
};

TEST_F(RunningTolvane, AnswersPlayerctl) {
    // Either opened file may be current; the third lies beside them.
    const QString current = title();
    ASSERT_TRUE(current == "h264_aac.mkv" || current == "long_h264_aac.mkv")
        << current.toStdString();
    EXPECT_EQ(playerctl({"metadata", "xesam:url"}),
              QUrl::fromLocalFile(media.filePath(current)).toString());

    playerctl({"pause"});
    EXPECT_EQ(playerctl({"status"}), QStringLiteral("Paused"));
    playerctl({"play"});
    EXPECT_EQ(playerctl({"status"}), QStringLiteral("Playing"));

    // To the 10 s file, then back to where it started.
    const bool isLongCurrent = current == "long_h264_aac.mkv";
    if (!isLongCurrent) {
        playerctl({"next"});
        EXPECT_TRUE(test::waitUntil([this] { return title() == "long_h264_aac.mkv"; }))
            << title().toStdString();
    }
    const double start = position();
    EXPECT_TRUE(test::waitUntil([this, start] { return position() > start + 0.3; }))
        << "position does not move while playing";
    playerctl({"position", "6"});
    // A seek lands on the key frame before its target (one a second here).
    EXPECT_TRUE(test::waitUntil([this] { return position() > 4.9; })) << position();
    if (!isLongCurrent) {
        playerctl({"previous"});
        EXPECT_TRUE(test::waitUntil([this, current] { return title() == current; }))
            << title().toStdString();
    }

    playerctl({"volume", "2.5"});
    EXPECT_EQ(playerctl({"volume"}).toDouble(), 2.5);

    playerctl({"open", QUrl::fromLocalFile(media.filePath("h264_640x360.mkv")).toString()});
    EXPECT_TRUE(test::waitUntil([this] { return title() == "h264_640x360.mkv"; }))
        << title().toStdString();

    // playerctl has no quit: the root interface's Quit through dbus-send.
    QProcess::execute(QStringLiteral("dbus-send"),
                      {"--session", "--type=method_call", "--dest=org.mpris.MediaPlayer2.tolvane",
                       "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Quit"});
    ASSERT_TRUE(player.waitForFinished(20000)) << "Quit did not end the player";
    EXPECT_EQ(player.exitCode(), 0);
}

}  // namespace
}  // namespace tolvane
