#include "app/playlist_builder.h"

#include <gtest/gtest.h>

#include <QFile>

#include "app/files_folders_opening.h"
#include "app/opened_items.h"
#include "app/played_state_records.h"
#include "app/playlist.h"
#include "app_test_support.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

class AnsweringMoreFiles final : public MoreFilesQuestion {
public:
    bool askToAddMoreFiles(int countOfNewFiles) override {
        askedCounts.append(countOfNewFiles);
        return answer;
    }
    bool answer = true;
    QList<int> askedCounts;
};

// One opening road, as the controller holds it; files are named relative to the tree.
class PlaylistBuilding : public ::testing::Test {
protected:
    void SetUp() override { test::clearTolvaneSettings(); }

    void touch(const QStringList &names) {
        for (const QString &name : names) {
            tree.touch(name);
        }
    }
    QList<QUrl> urls(const QStringList &names) const {
        QList<QUrl> result;
        for (const QString &name : names) {
            result.append(tree.url(name));
        }
        return result;
    }
    OpeningOutcome open(const QStringList &names) {
        return opening.finallyOpenFilesFolders(urls(names));
    }
    QString nameOf(const QUrl &url) const { return url.toLocalFile().mid(tree.path().size() + 1); }
    QStringList playListNames() const {
        return playlist.playListPaths().replaceInStrings(tree.path() + QLatin1Char('/'), "");
    }

    test::TemporaryTree tree;
    Playlist playlist;
    OpenedItems openedItems;
    AnsweringMoreFiles question;
    PlaylistBuilder builder{playlist, openedItems, question};
    PlayedStateRecords records{playlist, openedItems};
    FilesFoldersOpening opening{playlist, openedItems, builder, records};
};

TEST_F(PlaylistBuilding, FirstOpeningsBuildTheirPlaylists) {
    const QUrl where = tree.makeFolder("where");
    touch({"where/show/Ep 10.mkv", "where/show/Ep 2.mkv", "where/show/Ep 1.mkv",
           "where/show/Other 1.mkv", "where/show/Ep 3.txt", "where/show/Ep 4.srt",
           "where/show/.Ep 5.mkv", "outside/Ep 1.mkv", "outside/Ep 2.mkv", "outside/Ep 3.mkv",
           "B show/Ep 10.mp4", "B show/Ep 9.mp4", "B show/notes.txt",
           "A disc/BDMV/STREAM/00002.m2ts", "A disc/BDMV/STREAM/00001.m2ts",
           "A disc/BDMV/index.bdmv"});
    tree.makeFolder("where/show/Ep 6.mkv");  // a folder named like a video is no video
    tree.makeFolder("empty");
    const struct {
        QStringList opened;
        bool hasWhereFolder;
        OpeningOutcome outcome;
        QStringList playList;
        int indexPlay;
        QStringList titles;
        bool isFolder;
    } cases[] = {
        // clang-format off
        // An episode in the where folder brings its series, in numeric order.
        {{"where/show/Ep 10.mkv"}, true, OpeningOutcome::playlistBuilt,
         {"where/show/Ep 1.mkv", "where/show/Ep 2.mkv", "where/show/Ep 10.mkv"}, 2,
         {"Ep 1 and 2 more"}, false},
        // Every folder may be listed: an episode anywhere brings its series.
        {{"outside/Ep 3.mkv", "outside/Ep 1.mkv"}, true, OpeningOutcome::playlistBuilt,
         {"outside/Ep 1.mkv", "outside/Ep 2.mkv", "outside/Ep 3.mkv"}, 0, {"Ep 1 and 2 more"},
         false},
        {{"outside/Ep 2.mkv"}, false, OpeningOutcome::playlistBuilt,
         {"outside/Ep 1.mkv", "outside/Ep 2.mkv", "outside/Ep 3.mkv"}, 1, {"Ep 1 and 2 more"},
         false},
        // Folders give their videos, a Blu-ray folder its streams.
        {{"B show", "A disc"}, false, OpeningOutcome::playlistBuilt,
         {"A disc/BDMV/STREAM/00001.m2ts", "A disc/BDMV/STREAM/00002.m2ts",
          "B show/Ep 9.mp4", "B show/Ep 10.mp4"}, 0, {"A disc", "B show"}, true},
        {{"empty"}, false, OpeningOutcome::emptyPlaylist, {}, 0, {"empty"}, true},
        // clang-format on
    };
    for (const auto &c : cases) {
        const std::string what = c.opened.join(", ").toStdString();
        openedItems = OpenedItems{};
        openedItems.whereURL = c.hasWhereFolder ? where : QUrl();
        EXPECT_EQ(open(c.opened), c.outcome) << what;
        EXPECT_EQ(playListNames(), c.playList) << what;
        EXPECT_EQ(nameOf(playlist.reOpen.reOpenURL), c.playList.value(c.indexPlay)) << what;
        EXPECT_EQ(playlist.indexPlay, c.indexPlay) << what;
        EXPECT_EQ(openedItems.openedListTitles, c.titles) << what;
        EXPECT_EQ(PlayedStateRecords::getSavedRecentIsFolder(), c.isFolder) << what;
    }
    EXPECT_TRUE(question.askedCounts.isEmpty());
}

TEST_F(PlaylistBuilding, MarksBlurayStreamsFarSmallerThanTheDiscsLargest) {
    const QByteArray title(1000, 'x');
    tree.touch("disc/BDMV/STREAM/00001.m2ts", title.left(99));  // under a tenth: a menu
    tree.touch("disc/BDMV/STREAM/00002.m2ts", title);
    tree.touch("disc/BDMV/STREAM/00003.m2ts", title.left(100));  // exactly a tenth stays
    tree.touch("other/BDMV/STREAM/00001.m2ts", title.left(50));  // another disc, its own largest
    tree.touch("other/BDMV/STREAM/00002.m2ts", title.left(60));
    tree.touch("show/tiny.mkv", title.left(1));  // outside a disc nothing is marked
    tree.touch("show/big.mkv", title);
    ASSERT_EQ(open({"disc", "other", "show"}), OpeningOutcome::playlistBuilt);
    QStringList skipped;
    for (const PlaylistItem &item : playlist.playList) {
        if (item.isSkipped) {
            skipped.append(nameOf(item.url));
        }
    }
    EXPECT_EQ(skipped, QStringList({"disc/BDMV/STREAM/00001.m2ts"}));
    EXPECT_EQ(playlist.playList.size(), 7);
}

TEST_F(PlaylistBuilding, SortsWhatWasOpenedAndKeepsSubtitlesAcrossOpens) {
    touch({"a.SRT", "b.smi", "c.doc"});
    EXPECT_EQ(open({"a.SRT", "c.doc", "missing.mkv"}), OpeningOutcome::nothingToOpen);
    EXPECT_EQ(openedItems.openedSubtitleFileURLs.size(), 1);

    tree.touch("v.MKV");
    EXPECT_EQ(open({"v.MKV", "b.smi", "a.SRT"}), OpeningOutcome::playlistBuilt);
    EXPECT_EQ(openedItems.openedSubtitleFileURLs.size(), 2);
    EXPECT_EQ(playListNames(), QStringList({"v.MKV"}));

    // Subtitles alone, with a playlist loaded, are added to it.
    tree.touch("d.srt");
    EXPECT_EQ(open({"d.srt"}), OpeningOutcome::subtitlesAdded);
    EXPECT_EQ(playListNames(), QStringList({"v.MKV"}));
    EXPECT_EQ(PlayedStateRecords::readRecentFdFlsData().rcsubtitle.lurls.size(), 3);
}

TEST_F(PlaylistBuilding, ReopenedFolderDropsVanishedFilesAndOffersNewOnes) {
    touch({"show/Ep 1.mkv", "show/Ep 2.mkv", "show/Ep 3.mkv"});
    open({"show"});
    playlist.loadReOpenFieldsFromItemAtIndex(1);
    records.saveTotalFdFlsData(QStringLiteral("auto"));  // remembers Ep 2 as current

    QFile::remove(tree.path("show/Ep 3.mkv"));
    touch({"show/Ep 4.mkv", "show/Ep 5.mkv"});
    question.answer = false;
    builder.makePListWithFolderWhenReOpen(tree.url("show"));
    EXPECT_EQ(playListNames(), QStringList({"show/Ep 1.mkv", "show/Ep 2.mkv"}));
    EXPECT_EQ(nameOf(playlist.reOpen.reOpenURL), "show/Ep 2.mkv");

    question.answer = true;
    builder.makePListWithFolderWhenReOpen(tree.url("show"));
    EXPECT_EQ(question.askedCounts, QList<int>({2, 2}));
    EXPECT_EQ(playListNames(),
              QStringList({"show/Ep 1.mkv", "show/Ep 2.mkv", "show/Ep 4.mkv", "show/Ep 5.mkv"}));
    EXPECT_EQ(nameOf(playlist.reOpen.reOpenURL), "show/Ep 2.mkv");
}

TEST_F(PlaylistBuilding, ReopenedFileOffersNewEpisodesOfItsSeriesOnly) {
    touch({"show/Ep 1.mkv", "show/Ep 2.mkv", "show/Ep 3.mkv", "show/Other 1.mkv"});
    builder.makePListWithFileWhenReOpen(urls({"show/Ep 2.mkv", "show/gone.mkv"}));
    EXPECT_EQ(question.askedCounts, QList<int>({2}));
    EXPECT_EQ(playListNames(), QStringList({"show/Ep 2.mkv", "show/Ep 1.mkv", "show/Ep 3.mkv"}));
    EXPECT_EQ(nameOf(playlist.reOpen.reOpenURL), "show/Ep 2.mkv");
}

}  // namespace
}  // namespace tolvane
