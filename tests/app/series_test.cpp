#include "app/series.h"

#include <gtest/gtest.h>

#include <QUrl>

#include "app/finder_order.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

QUrl fileURL(const QString &name) { return QUrl::fromLocalFile(QStringLiteral("/videos/") + name); }

// The series table below covers the common names; these are the unmatched brackets.
TEST(RemoveAllNumbers, LeavesUnmatchedBracketsAlone) {
    const struct {
        const char *name;
        const char *stripped;
    } cases[] = {
        {"Open [ bracket 5", "Open [ bracket  "},
        {"Close ] then [x]", "Close ] then "},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(removeAllNumbers(QString::fromUtf8(c.name)), QString::fromUtf8(c.stripped))
            << c.name;
    }
}

TEST(IsSeries, FollowsThePrefixAndFirstNonEmptyWordRules) {
    const struct {
        const char *a;
        const char *b;
        bool isSeries;
    } cases[] = {
        {"Show.S01E01.mkv", "Show.S01E02.mkv", true},
        {"Show [720p] 01.mkv", "Show 02.mkv", true},
        {"Movie.mkv", "Movie2.mkv", true},
        {"show_01.mkv", "SHOW_02.mkv", true},          // the prefix test ignores case
        {"Show Part 1.mkv", "Show Finale.mkv", true},  // same first word
        {"Show.One.01.mkv", "Show.Two.01.mkv", true},  // dots split words too
        {"[Group] Show 01.mkv", "[Group] Show 02.mkv", true},
        {"[Group] Alpha 01.mkv", "[Other] Beta 01.mkv", false},
        // A stripped group tag or number leaves blanks in front: the first
        // non-empty words decide.
        {"[G] Show - 01 [720p].mkv", "[G] Show - 02 [1080p].mkv", true},
        {"[G] Show - 01 (1080p) [A1B2C3D4].mkv", "[H] Show - 02 (1080p) [E5F6A7B8].mkv", true},
        {"[G] Alpha - 01 [720p].mkv", "[G] Beta - 01 [720p].mkv", false},
        {"01 Intro.mkv", "02 Outro.mkv", false},
        {"01.mkv", "1x.mkv", false},  // no word on one side names no series
        {"01.mkv", "02.mkv", true},
        {"Alpha 01.mkv", "Beta 01.mkv", false},
        {"Show 01.mkv", "show Extra.mkv", false},  // first words compare case-sensitively
        {"Ep 1.mkv", "Ep 10.mp4", true},
        {"Dr.Who.01.avi", "Dr.No.avi", true},  // deliberately loose: same first word
    };
    for (const auto &c : cases) {
        const QUrl a = fileURL(QString::fromUtf8(c.a));
        const QUrl b = fileURL(QString::fromUtf8(c.b));
        EXPECT_EQ(isSeries(a, b), c.isSeries) << c.a << " / " << c.b;
        EXPECT_EQ(isSeries(b, a), c.isSeries) << c.b << " / " << c.a;
    }
}

TEST(RealFileNameStringWhetherBDMV, NamesStreamFilesAfterTheirDisc) {
    EXPECT_EQ(realFileNameStringWhetherBDMV(QUrl::fromLocalFile("/m/Disc/BDMV/STREAM/00001.m2ts")),
              "Disc.m2ts");
    EXPECT_EQ(realFileNameStringWhetherBDMV(QUrl::fromLocalFile("/m/Show/Ep 1.mkv")), "Ep 1.mkv");
    EXPECT_EQ(realFileNameStringWhetherBDMV(QUrl::fromLocalFile("/BDMV/STREAM/00001.m2ts")),
              "00001.m2ts");
    EXPECT_EQ(realFileNameStringWhetherBDMV(QUrl::fromLocalFile("/m/50% #1/BDMV/STREAM/1.m2ts")),
              "50% #1.m2ts");
    EXPECT_EQ(realFileNameStringWhetherBDMV(QUrl()), " ");
}

TEST(FinderOrder, SortsNumbersByValueAndBreaksTiesByTheName) {
    QList<QUrl> urls;
    for (const char *name : {"Ep 10.mkv", "ep 2.mkv", "Ep 1.mkv", "2.mkv", "02.mkv", "Ep 02.mkv"}) {
        urls.append(fileURL(QString::fromUtf8(name)));
    }
    sortURLsInFinderOrder(urls);
    QStringList names;
    for (const QUrl &url : urls) {
        names.append(url.fileName());
    }
    EXPECT_EQ(names,
              QStringList({"02.mkv", "2.mkv", "Ep 1.mkv", "Ep 02.mkv", "ep 2.mkv", "Ep 10.mkv"}));
}

}  // namespace
}  // namespace tolvane
