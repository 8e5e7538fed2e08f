#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "support/probe_runner.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::ProbeRun;
using test::runProbe;

QStringList stringsOf(const QJsonValue &array) {
    QStringList strings;
    for (const QJsonValue &value : array.toArray()) {
        strings.append(value.toString());
    }
    return strings;
}

TEST(ProbeSeries, PrintsTheVerdictAndBothStrippedNames) {
    const ProbeRun run = runProbe({"series", "Show [720p] 01.mkv", "/videos/Show 02.mkv"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.json["isSeries"].toBool(false));
    EXPECT_EQ(run.json["a"].toString(), "Show    ");
    EXPECT_EQ(run.json["b"].toString(), "Show   ");
    EXPECT_FALSE(runProbe({"series", "Alpha 1.mkv", "Beta 1.mkv"}).json["isSeries"].toBool(true));
    EXPECT_EQ(runProbe({"series", "only-one.mkv"}).exitCode, 2);
}

TEST(ProbePlaylist, BuildsAsTheOpeningWould) {
    QTemporaryDir tree;
    ASSERT_TRUE(tree.isValid());
    const QString root = QDir(tree.path()).canonicalPath();
    QDir().mkpath(root + "/where/show");
    for (const char *name : {"Ep 10.mkv", "Ep 2.mkv", "Ep 1.mkv", "Notes 1.mkv"}) {
        QFile file(root + "/where/show/" + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const QString opened = root + "/where/show/Ep 10.mkv";
    const QStringList series = {root + "/where/show/Ep 1.mkv", root + "/where/show/Ep 2.mkv",
                                opened};

    ProbeRun run = runProbe({"playlist", "--where", root + "/where", opened});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(stringsOf(run.json["playList"]), series);
    EXPECT_EQ(stringsOf(run.json["titles"]), QStringList({"Ep 1 and 2 more"}));
    EXPECT_FALSE(run.json["isFolder"].toBool(true));

    run = runProbe({"playlist", opened});
    EXPECT_EQ(stringsOf(run.json["playList"]), QStringList({opened}));

    run = runProbe({"playlist", root + "/where/show"});
    EXPECT_EQ(stringsOf(run.json["playList"]),
              series + QStringList({root + "/where/show/Notes 1.mkv"}));
    EXPECT_EQ(stringsOf(run.json["titles"]), QStringList({"show"}));
    EXPECT_TRUE(run.json["isFolder"].toBool(false));

    EXPECT_EQ(runProbe({"playlist"}).exitCode, 2);
    EXPECT_EQ(runProbe({"playlist", "--where", root}).exitCode, 2);
}

}  // namespace
}  // namespace tolvane
