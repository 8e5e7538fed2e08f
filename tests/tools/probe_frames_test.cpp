#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

struct FramesRun {
    int exitCode = -1;
    QList<QJsonObject> lines;
};

FramesRun runFrames(const QStringList &arguments) {
    const test::ProbeRun probe = test::runProbe(QStringList{"frames"} + arguments);
    FramesRun run;
    run.exitCode = probe.exitCode;
    for (const QByteArray &line : probe.standardOutput.split('\n')) {
        if (!line.isEmpty()) {
            run.lines.push_back(QJsonDocument::fromJson(line).object());
        }
    }
    return run;
}

TEST(ProbeFrames, PrintsTheFirstPicturesWithTimeSizeAndChecksum) {
    const FramesRun run = runFrames({test::mediaPath("h264_aac.mkv"), "--count", "5"});
    EXPECT_EQ(run.exitCode, 0);
    ASSERT_EQ(run.lines.size(), 5);
    QSet<QString> checksums;
    for (int i = 0; i < run.lines.size(); ++i) {
        const QJsonObject &line = run.lines[i];
        EXPECT_EQ(line["index"].toInt(), i);
        EXPECT_NEAR(line["time"].toDouble(), 0.021 + 0.04 * i, 1e-9);
        EXPECT_EQ(line["width"].toInt(), 320);
        EXPECT_EQ(line["height"].toInt(), 240);
        EXPECT_EQ(line["bytes"].toInt(), 320 * 240 * 2);
        EXPECT_EQ(line["checksum"].toString().size(), 8);
        checksums.insert(line["checksum"].toString());
    }
    EXPECT_EQ(checksums.size(), 5) << "the test pattern moves every frame";
}

TEST(ProbeFrames, InterlacedPicturesCarryTheFirstFieldLayout) {
    const FramesRun run = runFrames({test::mediaPath("interlaced_tff.mkv"), "--count", "2"});
    ASSERT_EQ(run.lines.size(), 2);
    EXPECT_EQ(run.lines[1]["pixelFormatMode"].toInt(), 42011);
    EXPECT_EQ(run.lines[1]["bytes"].toInt(), 320 * 240);
    EXPECT_EQ(run.lines[1]["height"].toInt(), 240);
}

TEST(ProbeFrames, StopsAtTheEndOfAShortFile) {
    const FramesRun run = runFrames({test::mediaPath("h264_aac.mkv"), "--count", "1000"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.lines.size(), 50);
}

TEST(ProbeFrames, BadUsageAndFailedOpen) {
    EXPECT_EQ(runFrames({}).exitCode, 2);
    EXPECT_EQ(runFrames({test::mediaPath("h264_aac.mkv"), "--count", "x"}).exitCode, 2);
    const FramesRun failed = runFrames({test::mediaPath("video_only.mkv")});
    EXPECT_EQ(failed.exitCode, 1);
    ASSERT_EQ(failed.lines.size(), 1);
    EXPECT_EQ(failed.lines[0]["result"].toString(), "-2003");
}

}  // namespace
}  // namespace tolvane
