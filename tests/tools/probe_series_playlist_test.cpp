#include <gtest/gtest.h>

#include <QJsonArray>

#include "support/probe_runner.h"
#include "support/qt_printers.h"
#include "support/temporary_tree.h"

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

    const test::TemporaryTree tree;
    const QString root = tree.path();
    tree.write("Ep 2.mkv");
    tree.write("Ep 1.mkv");
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
