#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::ProbeRun;
using test::runProbe;

TEST(ProbeTracks, PrintsTheRecordForAGoodFile) {
    const ProbeRun run = runProbe({"tracks", test::mediaPath("audio_first.mkv")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["result"].toString(), "+1000");
    EXPECT_EQ(run.json["tracks"]["videotrack"]["idx"].toInt(), 1);
    EXPECT_EQ(run.json["tracks"]["audiotrack"]["0"]["channel"].toString(), "Stereo");
    EXPECT_EQ(run.json["pixelFormatMode"].toInt(), 42010);
    EXPECT_FALSE(run.json["isUglyKeyframe"].toBool(true));
    EXPECT_FALSE(run.json["isQuad"].toBool(true));
    EXPECT_NEAR(run.json["durationSecOfMovieFile"].toDouble(), 2.0, 0.1);
    EXPECT_NEAR(run.json["fileDurationSec"].toDouble(), 2.0, 0.1);
}

TEST(ProbeTracks, FailedOpenGivesEmptyTracksAndExitOne) {
    for (const char *file : {"video_only.mkv", "random.mkv"}) {
        const ProbeRun run = runProbe({"tracks", test::mediaPath(file)});
        EXPECT_EQ(run.exitCode, 1) << file;
        EXPECT_TRUE(run.json["result"].toString().startsWith("-200")) << file;
        EXPECT_TRUE(run.json["tracks"].toObject().isEmpty()) << file;
        EXPECT_EQ(run.json["durationSecOfMovieFile"].toDouble(), -100.0) << file;
    }
}

TEST(ProbeTracks, BadUsageExitsTwo) {
    EXPECT_EQ(runProbe({"tracks"}).exitCode, 2);
    EXPECT_EQ(runProbe({"no-such-command"}).exitCode, 2);
}

}  // namespace
}  // namespace tolvane
