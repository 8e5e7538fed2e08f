#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>

#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

test::ProbeRun runPlay(const QStringList &arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SDL_AUDIODRIVER"), QStringLiteral("dummy"));
    return test::runProbe(QStringList{"play"} + arguments, environment);
}

TEST(ProbePlay, PlaysToTheEndAndReportsTheSummary) {
    const test::ProbeRun run = runPlay({test::mediaPath("h264_aac.mkv")});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["result"].toString(), "+1000");
    EXPECT_TRUE(run.json["endReached"].toBool());
    EXPECT_TRUE(run.json["outputStopped"].toBool());
    EXPECT_EQ(run.json["clockStartSec"].toDouble(-1), 0.0);
    EXPECT_NEAR(run.json["clockEndSec"].toDouble(), 2.0, 0.05);
    // 25 pictures a second for two seconds, each shown when its time came.
    EXPECT_GE(run.json["framesShown"].toInt(), 48);
    const QJsonObject sync = run.json["syncErrorMs"].toObject();
    for (const char *key : {"p50", "p99", "max"}) {
        EXPECT_TRUE(sync.contains(key)) << key;
    }
    // A picture is shown once the clock reaches it, so never early.
    EXPECT_LE(sync["p50"].toDouble(), 0.0);
    EXPECT_GT(run.json["wallSec"].toDouble(), 1.0);
    EXPECT_TRUE(run.json.contains("cpuSec"));
}

TEST(ProbePlay, SeeksAndStopsAfterTheGivenTime) {
    const test::ProbeRun run =
        runPlay({test::mediaPath("long_h264_aac.mkv"), "--seek", "9.5", "--for", "0.5"});
    ASSERT_EQ(run.exitCode, 0);
    // Into the last two seconds: two seconds before the end.
    EXPECT_NEAR(run.json["clockStartSec"].toDouble(), 8.021, 0.01);
    EXPECT_FALSE(run.json["outputStopped"].toBool(true));
    EXPECT_NEAR(run.json["wallSec"].toDouble(), 0.5, 0.1);
}

TEST(ProbePlay, RefusesBadArgumentsAndReportsFailedOpens) {
    EXPECT_EQ(runPlay({}).exitCode, 2);
    EXPECT_EQ(runPlay({test::mediaPath("h264_aac.mkv"), "--seek", "soon"}).exitCode, 2);
    const test::ProbeRun run = runPlay({test::mediaPath("video_only.mkv")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.json["result"].toString(), "-2003");
}

}  // namespace
}  // namespace tolvane
