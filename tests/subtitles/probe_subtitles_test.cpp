// The probe's caption subcommands: their options and JSON. The parsing and
// timeline rules behind them are the unit tests'.

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include "subtitle_test_folder.h"
#include "support/probe_runner.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::encodeAs;
using test::ProbeRun;
using test::runProbe;
using test::SubtitleTestFolder;

QString fixture(const char *name) {
    return QStringLiteral(TOLVANE_FIXTURE_DIR "/subtitles/") + QString::fromUtf8(name);
}

QString compact(const QJsonValue &value) {
    return QString::fromUtf8(value.isArray()
                                 ? QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact)
                                 : QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
}

TEST(ProbeParse, SamiTracksWithColoursMarksAndRuby) {
    const ProbeRun run = runProbe({"parse", fixture("two_classes.smi")});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["format"].toString(), "smi");
    EXPECT_TRUE(run.json["lastcuenumber"].isNull());
    const QJsonObject tracks = run.json["tracks"].toObject();
    EXPECT_EQ(tracks.keys(), QStringList({"ENCC", "KRCC"}));
    const QJsonArray korean = tracks["KRCC"].toArray();
    ASSERT_EQ(korean.size(), 4);
    EXPECT_EQ(
        compact(korean[1]),
        R"({"colors":[[2,0,1,"#FF0000"]],"key":"1000","marks":[[2,3,5,"i"]],"rows":["빨간 기울임"],"ruby":[]})");
    EXPECT_EQ(korean[2]["key"].toString(), "2500");  // written in quotes, stored without
    EXPECT_EQ(compact(korean[2]["rows"]), R"(["漢字와 「3」 괄호","둘째 줄"])");
    EXPECT_EQ(compact(korean[2]["ruby"]), R"([[2,0,1,"한자"]])");
    EXPECT_EQ(compact(tracks["ENCC"][1]["marks"]), R"([[2,8,18,"ib"]])");
}

TEST(ProbeParse, SubRipWithTheTypeAndEncodingOptions) {
    const ProbeRun run = runProbe({"parse", fixture("basic.srt"), "--encoding", "UTF-8"});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["format"].toString(), "srt");
    EXPECT_EQ(run.json["lastcuenumber"].toString(), "3");

    QTemporaryFile korean;
    ASSERT_TRUE(korean.open());
    korean.write("1\r\n00:00:01,000 --> 00:00:02,000\r\n\xb0\xa1\r\n");  // "가" in windows-949
    korean.close();
    const ProbeRun decoded = runProbe({"parse", korean.fileName(), "--encoding", "windows-949"});
    EXPECT_EQ(compact(decoded.json["tracks"]["srt"][1]["rows"]), R"(["가"])");
    EXPECT_EQ(runProbe({"parse", korean.fileName()}).exitCode, 1);  // not UTF-8

    const ProbeRun forced = runProbe({"parse", fixture("basic.srt"), "--type", "smi"});
    EXPECT_EQ(forced.json["format"].toString(), "smi");
    EXPECT_TRUE(forced.json["tracks"].toObject().isEmpty());
    EXPECT_EQ(runProbe({"parse", fixture("markup.txt")}).json["format"].toString(), "none");
}

class ProbeSubtitlesTest : public ::testing::Test {
protected:
    void SetUp() override {
        video = folder.write("show/v.mkv");
        folder.write("show/v.smi",
                     "<SAMI><BODY>\n<SYNC Start=1000><P Class=KRCC>하나<br>둘\n"
                     "<SYNC Start=1000><P Class=ENCC>One\n<SYNC Start=2000><P Class=KRCC>셋\n"
                     "<SYNC Start=2000><P Class=ENCC>Three\n</BODY></SAMI>\n");
        folder.write("show/v.srt", "no captions");
    }
    SubtitleTestFolder folder;
    QString video;
};

TEST_F(ProbeSubtitlesTest, SubtitlesListsTheEntriesAndTheDefaultChoice) {
    const ProbeRun run = runProbe({"subtitles", video});
    ASSERT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.json["firstOrderIdx"].toInt(), 1) << "the Korean class";
    EXPECT_EQ(run.json["secondOrderIdx"].toInt(), -100);
    const QJsonArray entries = run.json["entries"].toArray();
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(compact(entries[1]),
              QStringLiteral(
                  R"({"delay":-100000000,"error":"x","fileType":"smi","fullKey":)"
                  R"("v#*QZR*SPC*KEY*#smi#*QZR*SPC*KEY*#smi#*QZR*SPC*KEY*#v#*QZR*SPC*KEY*#KRCC",)"
                  R"("keyCount":3,"lang":"KRCC","order":"f","pathType":"v","url":"%1"})")
                  .arg(folder.path("show/v.smi")));
    EXPECT_EQ(entries[2]["error"].toString(), "f");
    EXPECT_EQ(entries[2]["keyCount"].toInt(), 0);
}

TEST_F(ProbeSubtitlesTest, SubtitlesTakesTheChosenFolderDiscTitleAndEncoding) {
    const QString disc = folder.write("discs/Title/BDMV/STREAM/00001.m2ts");
    folder.write("where/Tolvane/Title.srt",
                 encodeAs(QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\n字幕\n"), "Shift_JIS"));
    const ProbeRun run = runProbe(
        {"subtitles", disc, "--where", folder.path("where"), "--bdmv", "--encoding-item", "6"});
    ASSERT_EQ(run.exitCode, 0);
    const QJsonArray entries = run.json["entries"].toArray();
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0]["pathType"].toString(), "b");
    EXPECT_EQ(entries[0]["error"].toString(), "x");
    const ProbeRun withoutDisc = runProbe({"subtitles", disc, "--where", folder.path("where")});
    EXPECT_EQ(withoutDisc.json["entries"].toArray().size(), 0);
}

TEST_F(ProbeSubtitlesTest, CaptionsFollowsClicksDelayAndTheIntegratedMode) {
    struct Case {
        QStringList options;
        const char *expected;  // compact JSON
    };
    const Case cases[] = {
        {{"--at", "600", "--toggle", "0", "--delay", "500"},
         R"([{"at":600,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},)"
         R"("snd":{"entry":0,"key":"1000","rows":["One"]}}])"},
        {{"--at", "1000", "--toggle", "0", "--integrated"},
         R"([{"at":1000,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},)"
         R"("snd":{"entry":0,"key":"1000","rows":["One"]}}])"},
        {{"--at", "1000", "--toggle", "1"}, R"([{"at":1000,"fst":null,"snd":null}])"},
    };
    for (const Case &c : cases) {
        const ProbeRun run = runProbe(QStringList{"captions", video} + c.options);
        EXPECT_EQ(run.exitCode, 0) << c.expected;
        EXPECT_EQ(compact(run.document.array()), QString::fromUtf8(c.expected));
    }
}

TEST_F(ProbeSubtitlesTest, BadArgumentsGiveTheUsage) {
    const QString srt = fixture("basic.srt");
    for (const QStringList &arguments :
         {QStringList{"parse"}, QStringList{"parse", srt, "--type", "vtt"},
          QStringList{"parse", srt, "--encoding", "no-such"}, QStringList{"subtitles"},
          QStringList{"subtitles", video, "--at", "1000"},
          QStringList{"subtitles", video, "--encoding-item", "999"}, QStringList{"captions", video},
          QStringList{"captions", video, "--at", "1,x"},
          QStringList{"captions", video, "--at", "1", "--delay", "1,2"}}) {
        EXPECT_EQ(runProbe(arguments).exitCode, 2) << arguments.join(' ').toStdString();
    }
}

}  // namespace
}  // namespace tolvane
