// The probe's engine commands: their output and exit codes.

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QSet>

#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

using test::mediaPath;

test::ProbeRun runProbe(const QStringList &arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SDL_AUDIODRIVER"), QStringLiteral("dummy"));
    return test::runProbe(arguments, environment);
}

TEST(ProbeCommands, ExitCodeAndResultPerCommand) {
    struct Case {
        QStringList arguments;
        int exitCode;
        const char *resultPrefix;  // null for usage errors
    };
    const Case cases[] = {
        {{"no-such-command"}, 2, nullptr},
        {{"frames", mediaPath("h264_aac.mkv"), "--count", "x"}, 2, nullptr},
        {{"play", mediaPath("h264_aac.mkv"), "--seek", "soon"}, 2, nullptr},
        {{"tracks", mediaPath("audio_first.mkv")}, 0, "+1000"},
        {{"tracks", mediaPath("random.mkv")}, 1, "-2000"},
        {{"frames", mediaPath("audio_only.mka")}, 1, "-2002"},
        {{"play", mediaPath("audio_only.mka")}, 1, "-2002"},
        {{"play", mediaPath("long_h264_aac.mkv"), "--seek", "9.5", "--for", "0.5"}, 0, "+1000"},
    };
    for (const Case &c : cases) {
        const test::ProbeRun run = runProbe(c.arguments);
        EXPECT_EQ(run.exitCode, c.exitCode) << c.arguments.join(' ').toStdString();
        if (c.resultPrefix != nullptr) {
            EXPECT_TRUE(run.json["result"].toString().startsWith(c.resultPrefix))
                << c.arguments.join(' ').toStdString();
        }
    }
}

TEST(ProbeCommands, FramesPrintsTheFirstPicturesWithTimeAndChecksum) {
    const test::ProbeRun run = runProbe({"frames", mediaPath("h264_aac.mkv"), "--count", "5"});
    EXPECT_EQ(run.exitCode, 0);
    QStringList frames;  // index, time, checksum length
    QSet<QString> checksums;
    for (const QByteArray &line : run.standardOutput.trimmed().split('\n')) {
        const QJsonObject frame = QJsonDocument::fromJson(line).object();
        frames << QStringLiteral("%1 %2 %3")
                      .arg(frame["index"].toInt())
                      .arg(frame["time"].toDouble())
                      .arg(frame["checksum"].toString().size());
        checksums.insert(frame["checksum"].toString());
    }
    EXPECT_EQ(frames,
              (QStringList{"0 0.021 8", "1 0.061 8", "2 0.101 8", "3 0.141 8", "4 0.181 8"}));
    EXPECT_EQ(checksums.size(), 5) << "the test pattern moves every frame";
}

TEST(ProbeCommands, PlayPlaysToTheEndAndReportsTheSummary) {
    const test::ProbeRun run = runProbe({"play", mediaPath("h264_aac.mkv")});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["result"].toString(), "+1000");
    EXPECT_TRUE(run.json["endReached"].toBool());
    EXPECT_TRUE(run.json["outputStopped"].toBool());
    EXPECT_EQ(run.json["clockStartSec"].toDouble(-1), 0.0);
    EXPECT_NEAR(run.json["clockEndSec"].toDouble(), 2.0, 0.05);
    // 25 pictures a second for two seconds, each shown when its time came.
    EXPECT_GE(run.json["framesShown"].toInt(), 48);
    const QJsonObject sync = run.json["syncErrorMs"].toObject();
    EXPECT_TRUE(sync.contains("p99") && sync.contains("max"));
    EXPECT_TRUE(run.json.contains("wallSec") && run.json.contains("cpuSec"));
    // A picture is shown once the clock reaches it, so never early.
    EXPECT_LE(sync["p50"].toDouble(1.0), 0.0);
}

}  // namespace
}  // namespace tolvane
