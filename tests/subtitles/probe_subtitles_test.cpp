#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "subtitle_test_folder.h"
#include "support/probe_runner.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::encodeAs;
using test::SubtitleTestFolder;

using test::ProbeRun;
using test::runProbe;

const QByteArray kTwoClassSami = QStringLiteral(
                                     "<SAMI><BODY>\n"
                                     "<SYNC Start=1000><P Class=KRCC>하나<br>둘\n"
                                     "<SYNC Start=1000><P Class=ENCC>One\n"
                                     "<SYNC Start=2000><P Class=KRCC>셋\n"
                                     "<SYNC Start=2000><P Class=ENCC>Three\n"
                                     "</BODY></SAMI>\n")
                                     .toUtf8();

class ProbeSubtitlesTest : public ::testing::Test {
protected:
    void SetUp() override {
        video = folder.write("show/v.mkv");
        folder.write("show/v.smi", kTwoClassSami);
        folder.write("show/v.srt", "no captions");
    }
    SubtitleTestFolder folder;
    QString video;
};

TEST_F(ProbeSubtitlesTest, SubtitlesListsTheEntriesAndTheDefaultChoice) {
    const ProbeRun run = runProbe({"subtitles", video});
    ASSERT_EQ(run.exitCode, 0);
    const QJsonObject json = run.document.object();
    EXPECT_EQ(json["firstOrderIdx"].toInt(), 1) << "the Korean class";
    EXPECT_EQ(json["secondOrderIdx"].toInt(), -100);
    const QJsonArray entries = json["entries"].toArray();
    ASSERT_EQ(entries.size(), 3);
    const QJsonObject korean = entries[1].toObject();
    EXPECT_EQ(korean.keys(), (QStringList{"delay", "error", "fileType", "fullKey", "keyCount",
                                          "lang", "order", "pathType", "url"}));
    EXPECT_EQ(korean["url"].toString(), folder.path("show/v.smi"));
    EXPECT_EQ(korean["fileType"].toString(), "smi");
    EXPECT_EQ(korean["pathType"].toString(), "v");
    EXPECT_EQ(korean["error"].toString(), "x");
    EXPECT_EQ(korean["order"].toString(), "f");
    EXPECT_EQ(korean["lang"].toString(), "KRCC");
    EXPECT_EQ(korean["keyCount"].toInt(), 3);
    EXPECT_EQ(korean["delay"].toInt(), -100000000);
    EXPECT_EQ(korean["fullKey"].toString(),
              "v#*QZR*SPC*KEY*#smi#*QZR*SPC*KEY*#smi#*QZR*SPC*KEY*#v#*QZR*SPC*KEY*#KRCC");
    const QJsonObject failed = entries[2].toObject();
    EXPECT_EQ(failed["error"].toString(), "f");
    EXPECT_EQ(failed["keyCount"].toInt(), 0);
}

TEST_F(ProbeSubtitlesTest, SubtitlesTakesTheChosenFolderDiscTitleAndEncoding) {
    const QString disc = folder.write("discs/Title/BDMV/STREAM/00001.m2ts");
    folder.write("where/Tolvane/Title.srt",
                 encodeAs(QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\n字幕\n"), "Shift_JIS"));
    const ProbeRun run = runProbe(
        {"subtitles", disc, "--where", folder.path("where"), "--bdmv", "--encoding-item", "6"});
    ASSERT_EQ(run.exitCode, 0);
    const QJsonArray entries = run.document.object()["entries"].toArray();
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0]["pathType"].toString(), "b");
    EXPECT_EQ(entries[0]["error"].toString(), "x");
    EXPECT_EQ(entries[0]["lang"].toString(), "1");

    const ProbeRun withoutDisc = runProbe({"subtitles", disc, "--where", folder.path("where")});
    EXPECT_EQ(withoutDisc.document.object()["entries"].toArray().size(), 0);
    EXPECT_EQ(withoutDisc.document.object()["firstOrderIdx"].toInt(), -100);
}

TEST_F(ProbeSubtitlesTest, CaptionsFollowsClicksDelayAndTheIntegratedMode) {
    struct Case {
        const char *what;
        QStringList options;
        const char *expected;  // compact JSON
    };
    const Case cases[] = {
        {"the default track, forward and backward",
         {"--at", "0,1000,1500,2000,500"},
         R"([{"at":0,"fst":{"entry":1,"key":"-900000000","rows":[" "]},"snd":null},)"
         R"({"at":1000,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},"snd":null},)"
         R"({"at":1500,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},"snd":null},)"
         R"({"at":2000,"fst":{"entry":1,"key":"2000","rows":["셋"]},"snd":null},)"
         R"({"at":500,"fst":{"entry":1,"key":"-900000000","rows":[" "]},"snd":null}])"},
        {"a second track clicked, both delayed",
         {"--at", "600", "--toggle", "0", "--delay", "500"},
         R"([{"at":600,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},)"
         R"("snd":{"entry":0,"key":"1000","rows":["One"]}}])"},
        {"the first clicked away promotes the second",
         {"--at", "2000", "--toggle", "0,1"},
         R"([{"at":2000,"fst":{"entry":0,"key":"2000","rows":["Three"]},"snd":null}])"},
        {"integrated mode moves both tracks",
         {"--at", "1000", "--toggle", "0", "--integrated"},
         R"([{"at":1000,"fst":{"entry":1,"key":"1000","rows":["하나","둘"]},)"
         R"("snd":{"entry":0,"key":"1000","rows":["One"]}}])"},
        {"no track at all",
         {"--at", "1000", "--toggle", "1"},
         R"([{"at":1000,"fst":null,"snd":null}])"},
    };
    for (const Case &c : cases) {
        const ProbeRun run = runProbe(QStringList{"captions", video} + c.options);
        EXPECT_EQ(run.exitCode, 0) << c.what;
        EXPECT_EQ(QString::fromUtf8(run.document.toJson(QJsonDocument::Compact)),
                  QString::fromUtf8(c.expected))
            << c.what;
    }
}

TEST_F(ProbeSubtitlesTest, BadArgumentsGiveTheUsage) {
    for (const QStringList &arguments :
         {QStringList{"subtitles"}, QStringList{"subtitles", video, "--at", "1000"},
          QStringList{"subtitles", video, "--encoding-item", "999"}, QStringList{"captions", video},
          QStringList{"captions", video, "--at", "1,x"},
          QStringList{"captions", video, "--at", "1", "--delay", "1,2"}}) {
        EXPECT_EQ(runProbe(arguments).exitCode, 2) << arguments.join(' ').toStdString();
    }
}

}  // namespace
}  // namespace tolvane
