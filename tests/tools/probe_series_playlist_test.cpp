#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

#include "support/probe_runner.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::runProbe;

// The rules themselves are tested in tests/app; these check the command line and the output.
TEST(ProbeAppCommands, PrintTheirVerdictsAsJsonAndRefuseMissingArguments) {
    const test::ProbeRun series = runProbe({"series", "Show [720p] 01.mkv", "/videos/Show 02.mkv"});
    EXPECT_EQ(series.exitCode, 0);
    EXPECT_TRUE(series.json["isSeries"].toBool(false));
    EXPECT_EQ(series.json["a"].toString(), "Show    ");
    EXPECT_EQ(series.json["b"].toString(), "Show   ");

    QTemporaryDir tree;
    const QString root = QDir(tree.path()).canonicalPath();
    for (const char *name : {"/Ep 2.mkv", "/Ep 1.mkv"}) {
        ASSERT_TRUE(QFile(root + name).open(QIODevice::WriteOnly));
    }
    // Without a where folder too, one episode brings its series.
    const test::ProbeRun playlist = runProbe({"playlist", root + "/Ep 2.mkv"});
    EXPECT_EQ(playlist.exitCode, 0);
    EXPECT_EQ(playlist.json["playList"].toArray(),
              QJsonArray({root + "/Ep 1.mkv", root + "/Ep 2.mkv"}));
    EXPECT_EQ(playlist.json["titles"].toArray(), QJsonArray({"Ep 1 and 1 more"}));
    EXPECT_FALSE(playlist.json["isFolder"].toBool(true));

    for (const QStringList &arguments :
         {QStringList{"series", "only-one.mkv"}, QStringList{"playlist"},
          QStringList{"playlist", "--where", root}}) {
        EXPECT_EQ(runProbe(arguments).exitCode, 2) << arguments.join(' ').toStdString();
    }
}

}  // namespace
}  // namespace tolvane
