#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include "support/probe_runner.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::ProbeRun;
using test::runProbe;

QString fixture(const char *name) {
    return QStringLiteral(TOLVANE_FIXTURE_DIR "/subtitles/") + QString::fromUtf8(name);
}

QJsonArray array(std::initializer_list<QJsonValue> values) { return QJsonArray(values); }

TEST(ProbeParse, SamiTracksWithColoursMarksAndRuby) {
    const ProbeRun run = runProbe({"parse", fixture("two_classes.smi")});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["format"].toString(), "smi");
    EXPECT_TRUE(run.json["lastcuenumber"].isNull());
    const QJsonObject tracks = run.json["tracks"].toObject();
    EXPECT_EQ(tracks.keys(), QStringList({"ENCC", "KRCC"}));
    const QJsonArray korean = tracks["KRCC"].toArray();
    ASSERT_EQ(korean.size(), 4);
    EXPECT_EQ(korean[0]["key"].toString(), "-900000000");
    const QJsonObject first = korean[1].toObject();
    EXPECT_EQ(first["key"].toString(), "1000");
    EXPECT_EQ(first["rows"].toArray(), array({"빨간 기울임"}));
    EXPECT_EQ(first["colors"].toArray(), array({array({2, 0, 1, "#FF0000"})}));
    EXPECT_EQ(first["marks"].toArray(), array({array({2, 3, 5, "i"})}));
    const QJsonObject second = korean[2].toObject();
    EXPECT_EQ(second["key"].toString(), "2500");  // written in quotes, stored without
    EXPECT_EQ(second["rows"].toArray(), array({"漢字와 「3」 괄호", "둘째 줄"}));
    EXPECT_EQ(second["ruby"].toArray(), array({array({2, 0, 1, "한자"})}));
    const QJsonObject english = tracks["ENCC"].toArray()[1].toObject();
    EXPECT_EQ(english["marks"].toArray(), array({array({2, 8, 18, "ib"})}));
}

TEST(ProbeParse, SubRipCuesInIntegerOrder) {
    const ProbeRun run = runProbe({"parse", fixture("basic.srt"), "--encoding", "UTF-8"});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["format"].toString(), "srt");
    EXPECT_EQ(run.json["lastcuenumber"].toString(), "3");
    QStringList keys;
    for (const QJsonValue &cue : run.json["tracks"]["srt"].toArray()) {
        keys.append(cue["key"].toString());
    }
    EXPECT_EQ(keys,
              QStringList({"-900000000", "1000", "2500", "3000", "4000", "3723004", "3724040"}));
    EXPECT_EQ(run.json["tracks"]["srt"][1]["rows"].toArray(),
              array({"Hello there", "second line"}));
    EXPECT_EQ(run.json["tracks"]["srt"][1]["colors"].toArray(),
              array({array({2, 6, 10, "#00FF00"})}));
}

TEST(ProbeParse, TypeAndEncodingOptions) {
    QTemporaryFile korean;
    ASSERT_TRUE(korean.open());
    korean.write("1\r\n00:00:01,000 --> 00:00:02,000\r\n\xb0\xa1\r\n");  // "가" in windows-949
    korean.close();
    const ProbeRun decoded = runProbe({"parse", korean.fileName(), "--encoding", "windows-949"});
    ASSERT_EQ(decoded.exitCode, 0);
    EXPECT_EQ(decoded.json["tracks"]["srt"][1]["rows"].toArray(), array({"가"}));
    EXPECT_EQ(runProbe({"parse", korean.fileName()}).exitCode, 1);  // not UTF-8

    const ProbeRun forced = runProbe({"parse", fixture("basic.srt"), "--type", "smi"});
    EXPECT_EQ(forced.json["format"].toString(), "smi");
    EXPECT_TRUE(forced.json["tracks"].toObject().isEmpty());
    EXPECT_EQ(runProbe({"parse", fixture("markup.txt")}).json["format"].toString(), "none");
}

TEST(ProbeParse, BadUsageExitsTwo) {
    EXPECT_EQ(runProbe({"parse"}).exitCode, 2);
    EXPECT_EQ(runProbe({"parse", fixture("basic.srt"), "--type", "vtt"}).exitCode, 2);
    EXPECT_EQ(runProbe({"parse", fixture("basic.srt"), "--encoding", "no-such"}).exitCode, 2);
}

}  // namespace
}  // namespace tolvane
