// The probe's engine commands: their output and exit codes.

#include <gtest/gtest.h>

#include <QDir>
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
        {{"tracks", mediaPath("video_only.mkv")}, 0, "+1000"},
        {{"tracks", mediaPath("no_timestamps.h264")}, 1, "-2003"},
        {{"tracks", mediaPath("random.mkv")}, 1, "-2000"},
        {{"frames", mediaPath("audio_only.mka")}, 1, "-2002"},
        {{"play", mediaPath("audio_only.mka")}, 1, "-2002"},
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

TEST(ProbeCommands, FramesPrintsTheFirstPicturesWithTimeSizeAndChecksum) {
    const test::ProbeRun run = runProbe({"frames", mediaPath("h264_aac.mkv"), "--count", "5"});
    EXPECT_EQ(run.exitCode, 0);
    QList<QJsonObject> lines;
    for (const QByteArray &line : run.standardOutput.split('\n')) {
        if (!line.isEmpty()) {
            lines.push_back(QJsonDocument::fromJson(line).object());
        }
    }
    ASSERT_EQ(lines.size(), 5);
    QSet<QString> checksums;
    for (int i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i]["index"].toInt(), i);
        EXPECT_NEAR(lines[i]["time"].toDouble(), 0.021 + 0.04 * i, 1e-9);
        EXPECT_EQ(lines[i]["width"].toInt(), 320);
        EXPECT_EQ(lines[i]["height"].toInt(), 240);
        EXPECT_EQ(lines[i]["bytes"].toInt(), 320 * 240 * 3 / 2);
        EXPECT_EQ(lines[i]["pixelFormatMode"].toInt(), 42010);
        EXPECT_EQ(lines[i]["checksum"].toString().size(), 8);
        checksums.insert(lines[i]["checksum"].toString());
    }
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

TEST(ProbeCommands, PlaySeeksIntoTheLastTwoSecondsAndStopsAfterTheGivenTime) {
    const test::ProbeRun run =
        runProbe({"play", mediaPath("long_h264_aac.mkv"), "--seek", "9.5", "--for", "0.5"});
    ASSERT_EQ(run.exitCode, 0);
    // Two seconds before the end, from the key frame the demuxer lands on. The
    // probe reads the clock once playback has begun: up to one 1/59 s step on.
    const double clockStartSec = run.json["clockStartSec"].toDouble();
    EXPECT_GE(clockStartSec, 8.020);
    EXPECT_LE(clockStartSec, 8.021 + 1.0 / 59.0 + 0.001);
    EXPECT_FALSE(run.json["outputStopped"].toBool(true)) << "stopped by --for, not the end";
}

// Where no hardware device opens (a machine without GPU), the setting falls
// back to software for every file: each fixture gives the same pictures,
// times and checksums with it on as with it off, to the last picture.
TEST(ProbeCommands, HardwareSettingWithoutDeviceDecodesEveryFixtureAsSoftware) {
    const QStringList fixtures =
        QDir(QStringLiteral(TOLVANE_TEST_MEDIA_DIR)).entryList(QDir::Files, QDir::Name);
    ASSERT_GT(fixtures.size(), 20);
    int compared = 0;
    for (const QString &fixture : fixtures) {
        const QString path = mediaPath(fixture.toUtf8().constData());
        const test::ProbeRun tracks = runProbe({"tracks", path});
        if (tracks.json["isMacSupportH264Acc"].toBool()) {
            continue;  // a device works here: its pictures are NV12 by design
        }
        const test::ProbeRun on =
            runProbe({"frames", path, "--count", "1000", "--hardware-decoding", "on"});
        const test::ProbeRun off =
            runProbe({"frames", path, "--count", "1000", "--hardware-decoding", "off"});
        EXPECT_EQ(on.exitCode, off.exitCode) << fixture.toStdString();
        EXPECT_EQ(on.standardOutput, off.standardOutput) << fixture.toStdString();
        ++compared;
    }
    if (compared == 0) {
        GTEST_SKIP() << "every H.264 fixture is decoded by this machine's device";
    }
}

TEST(ProbeCommands, TracksSaysWhetherHardwareDecodingWouldBeUsedAndWhyNot) {
    struct Case {
        const char *file;
        const char *reasonStart;  // when no device works here
    };
    const Case cases[] = {
        {"h264_aac.mkv", "no device: "},
        {"short_hevc_aac.mkv", "the video is hevc, not H.264"},
        {"h264_10bit_420.mkv", "the pictures are yuv420p10le, not yuv420p"},
    };
    for (const Case &c : cases) {
        const test::ProbeRun run = runProbe({"tracks", mediaPath(c.file)});
        ASSERT_EQ(run.exitCode, 0) << c.file;
        const bool isHardware = run.json["isMacSupportH264Acc"].toBool();
        const QString reason = run.json["hardwareDecodingReason"].toString();
        EXPECT_EQ(isHardware, reason.isEmpty()) << c.file;
        if (!isHardware) {
            EXPECT_TRUE(reason.startsWith(QLatin1String(c.reasonStart)))
                << c.file << ": " << reason.toStdString();
        }
    }
}

}  // namespace
}  // namespace tolvane
