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

// One opening road, as the controller holds it.
class PlaylistBuilding : public ::testing::Test {
protected:
    void SetUp() override {
        test::clearTolvaneSettings();
        ASSERT_TRUE(tree.isValid());
    }

    OpeningOutcome open(const QList<QUrl> &urls) { return opening.finallyOpenFilesFolders(urls); }

    // The playlist as paths relative to the tree.
    QStringList playListNames() const {
        QStringList names;
        for (const PlaylistItem &item : playlist.playList) {
            names.append(item.url.toLocalFile().mid(tree.path().size() + 1));
        }
        return names;
    }
    QString currentName() const {
        return playlist.reOpen.reOpenURL.toLocalFile().mid(tree.path().size() + 1);
    }

    test::TemporaryTree tree;
    Playlist playlist;
    OpenedItems openedItems;
    AnsweringMoreFiles question;
    PlaylistBuilder builder{playlist, openedItems, question};
    PlayedStateRecords records{playlist, openedItems};
    FilesFoldersOpening opening{playlist, openedItems, builder, records};
};

TEST_F(PlaylistBuilding, AnEpisodeInTheWhereFolderBringsItsSeriesInNumericOrder) {
    openedItems.whereURL = tree.makeFolder("where");
    for (const char *name : {"Ep 10.mkv", "Ep 2.mkv", "Ep 1.mkv", "Other 1.mkv", "Ep 3.txt",
                             "Ep 4.srt", ".Ep 5.mkv"}) {
        tree.touch(QStringLiteral("where/show/") + name);
    }
    tree.makeFolder("where/show/Ep 6.mkv");  // a folder named like a video is no video
    EXPECT_EQ(open({tree.url("where/show/Ep 10.mkv")}), OpeningOutcome::playlistBuilt);
    EXPECT_EQ(playListNames(),
              QStringList({"where/show/Ep 1.mkv", "where/show/Ep 2.mkv", "where/show/Ep 10.mkv"}));
    EXPECT_EQ(currentName(), "where/show/Ep 10.mkv");
    EXPECT_EQ(playlist.indexPlay, 2);
    EXPECT_EQ(openedItems.openedListTitles, QStringList({"Ep 1 and 2 more"}));
    EXPECT_FALSE(PlayedStateRecords::getSavedRecentIsFolder());
}

TEST_F(PlaylistBuilding, FilesOutsideTheWhereFolderNeverBringSiblings) {
    openedItems.whereURL = tree.makeFolder("where");
    tree.makeFolder("where2");
    for (const char *name : {"outside/Ep 1.mkv", "outside/Ep 2.mkv", "outside/Ep 3.mkv"}) {
        tree.touch(QString::fromUtf8(name));
    }
    open({tree.url("outside/Ep 3.mkv"), tree.url("outside/Ep 1.mkv")});
    EXPECT_EQ(playListNames(), QStringList({"outside/Ep 1.mkv", "outside/Ep 3.mkv"}));
    EXPECT_EQ(currentName(), "outside/Ep 1.mkv");
    EXPECT_EQ(openedItems.openedListTitles, QStringList({"Ep 1 and 1 more"}));

    // Without any where folder, nothing is allowed either.
    openedItems.whereURL.clear();
    open({tree.url("outside/Ep 2.mkv")});
    EXPECT_EQ(playListNames(), QStringList({"outside/Ep 2.mkv"}));
    EXPECT_EQ(openedItems.openedListTitles, QStringList({"Ep 2"}));
}

TEST_F(PlaylistBuilding, FoldersGiveTheirVideosAndABlurayFolderItsStreams) {
    tree.touch("B show/Ep 10.mp4");
    tree.touch("B show/Ep 9.mp4");
    tree.touch("B show/notes.txt");
    tree.touch("A disc/BDMV/STREAM/00002.m2ts");
    tree.touch("A disc/BDMV/STREAM/00001.m2ts");
    tree.touch("A disc/BDMV/index.bdmv");
    EXPECT_EQ(open({tree.url("B show"), tree.url("A disc")}), OpeningOutcome::playlistBuilt);
    EXPECT_EQ(playListNames(),
              QStringList({"A disc/BDMV/STREAM/00001.m2ts", "A disc/BDMV/STREAM/00002.m2ts",
                           "B show/Ep 9.mp4", "B show/Ep 10.mp4"}));
    EXPECT_EQ(openedItems.openedListTitles, QStringList({"A disc", "B show"}));
    EXPECT_TRUE(PlayedStateRecords::getSavedRecentIsFolder());
    EXPECT_TRUE(question.askedCounts.isEmpty());
}

TEST_F(PlaylistBuilding, SortsWhatWasOpenedAndKeepsSubtitlesAcrossOpens) {
    tree.touch("a.SRT");
    tree.touch("b.smi");
    tree.touch("c.doc");
    EXPECT_EQ(open({tree.url("a.SRT"), tree.url("c.doc"), tree.url("missing.mkv")}),
              OpeningOutcome::nothingToOpen);
    EXPECT_EQ(openedItems.openedSubtitleFileURLs.size(), 1);

    tree.touch("v.MKV");
    EXPECT_EQ(open({tree.url("v.MKV"), tree.url("b.smi"), tree.url("a.SRT")}),
              OpeningOutcome::playlistBuilt);
    EXPECT_EQ(openedItems.openedSubtitleFileURLs.size(), 2);
    EXPECT_EQ(playListNames(), QStringList({"v.MKV"}));

    // Subtitles alone, with a playlist loaded, are added to it.
    tree.touch("d.srt");
    EXPECT_EQ(open({tree.url("d.srt")}), OpeningOutcome::subtitlesAdded);
    EXPECT_EQ(playListNames(), QStringList({"v.MKV"}));
    EXPECT_EQ(PlayedStateRecords::readRecentFdFlsData().rcsubtitle.lurls.size(), 3);
}

TEST_F(PlaylistBuilding, AnEmptyFolderGivesAnEmptyPlaylist) {
    tree.makeFolder("empty");
    EXPECT_EQ(open({tree.url("empty")}), OpeningOutcome::emptyPlaylist);
    EXPECT_TRUE(playlist.isEmpty());
    EXPECT_TRUE(playlist.reOpen.reOpenURL.isEmpty());
}

TEST_F(PlaylistBuilding, ReopenedFolderDropsVanishedFilesAndOffersNewOnes) {
    for (const char *name : {"show/Ep 1.mkv", "show/Ep 2.mkv", "show/Ep 3.mkv"}) {
        tree.touch(QString::fromUtf8(name));
    }
    open({tree.url("show")});
    playlist.loadReOpenFieldsFromItemAtIndex(1);
    records.saveTotalFdFlsData(QStringLiteral("auto"));  // remembers Ep 2 as current

    QFile::remove(tree.path("show/Ep 3.mkv"));
    tree.touch("show/Ep 4.mkv");
    tree.touch("show/Ep 5.mkv");
    const struct {
        bool answer;
        QStringList playList;
    } cases[] = {
        {false, {"show/Ep 1.mkv", "show/Ep 2.mkv"}},
        {true, {"show/Ep 1.mkv", "show/Ep 2.mkv", "show/Ep 4.mkv", "show/Ep 5.mkv"}},
    };
    for (const auto &c : cases) {
        question.answer = c.answer;
        question.askedCounts.clear();
        builder.makePListWithFolderWhenReOpen(tree.url("show"));
        EXPECT_EQ(question.askedCounts, QList<int>({2})) << c.answer;
        EXPECT_EQ(playListNames(), c.playList) << c.answer;
        EXPECT_EQ(currentName(), "show/Ep 2.mkv") << c.answer;
    }
}

TEST_F(PlaylistBuilding, ReopenedFileOffersNewEpisodesOfItsSeriesOnly) {
    openedItems.whereURL = tree.makeFolder("where");
    for (const char *name :
         {"where/Ep 1.mkv", "where/Ep 2.mkv", "where/Ep 3.mkv", "where/Other 1.mkv"}) {
        tree.touch(QString::fromUtf8(name));
    }
    question.answer = true;
    builder.makePListWithFileWhenReOpen({tree.url("where/Ep 2.mkv"), tree.url("where/gone.mkv")});
    EXPECT_EQ(question.askedCounts, QList<int>({2}));
    EXPECT_EQ(playListNames(), QStringList({"where/Ep 2.mkv", "where/Ep 1.mkv", "where/Ep 3.mkv"}));
    EXPECT_EQ(currentName(), "where/Ep 2.mkv");
}

TEST_F(PlaylistBuilding, ARestartReopensTheLastOpenWhereItStopped) {
    for (const char *name : {"show/Ep 1.mkv", "show/Ep 2.mkv", "solo/Film.mkv"}) {
        tree.touch(QString::fromUtf8(name));
    }
    const struct {
        const char *what;
        QList<QUrl> opened;
        int currentIndex;
        QStringList playList;
        QStringList titles;
    } cases[] = {
        {"a folder", {tree.url("show")}, 1, {"show/Ep 1.mkv", "show/Ep 2.mkv"}, {"show"}},
        {"a file", {tree.url("solo/Film.mkv")}, 0, {"solo/Film.mkv"}, {"Film"}},
    };
    for (const auto &c : cases) {
        open(c.opened);
        playlist.loadReOpenFieldsFromItemAtIndex(c.currentIndex);
        playlist.reOpen.reOpenCTimeSec = 61.0;
        records.saveTotalFdFlsData(QStringLiteral("auto"));

        Playlist restartedPlaylist;
        OpenedItems restartedItems;
        PlaylistBuilder restartedBuilder{restartedPlaylist, restartedItems, question};
        PlayedStateRecords restartedRecords{restartedPlaylist, restartedItems};
        FilesFoldersOpening restarted{restartedPlaylist, restartedItems, restartedBuilder,
                                      restartedRecords};
        EXPECT_EQ(restarted.reOpenFromRecentRecord(), OpeningOutcome::playlistBuilt) << c.what;
        playlist = restartedPlaylist;
        EXPECT_EQ(playListNames(), c.playList) << c.what;
        EXPECT_EQ(playlist.indexPlay, c.currentIndex) << c.what;
        EXPECT_EQ(playlist.reOpen.reOpenCTimeSec, 61.0) << c.what;
        EXPECT_EQ(restartedItems.openedListTitles, c.titles) << c.what;
    }
    EXPECT_TRUE(question.askedCounts.isEmpty());
}

TEST_F(PlaylistBuilding, AReplacedFileStartsFromTheBeginning) {
    const QUrl video = tree.touch("movie.mkv", "first version");
    open({video});
    playlist.reOpen.reOpenCTimeSec = 42.0;
    playlist.reOpen.reOpenAudioIdx = 2;
    playlist.reOpen.reOpenSubtitleIdxs = {"key"};
    records.saveTotalFdFlsData(QStringLiteral("auto"));

    open({video});
    EXPECT_EQ(playlist.reOpen.reOpenCTimeSec, 42.0);
    EXPECT_EQ(playlist.reOpen.reOpenAudioIdx, 2);

    tree.touch("movie.mkv", "another file of another size");
    open({video});
    EXPECT_EQ(playlist.reOpen.reOpenCTimeSec, 0.0);
    EXPECT_EQ(playlist.reOpen.reOpenAudioIdx, kNoAudioTrackChosen);
    EXPECT_TRUE(playlist.reOpen.reOpenSubtitleIdxs.isEmpty());
}

TEST(SandboxGrants, FollowOpenedFoldersFilesAndTheWhereFolder) {
    test::TemporaryTree tree;
    OpenedItems items;
    const QUrl where = tree.makeFolder("where");
    const QUrl inside = tree.touch("where/a.mkv");
    const QUrl sibling = tree.touch("where2/b.mkv");
    const QUrl outside = tree.touch("other/c.mkv");
    const QUrl subtitle = tree.touch("other/c.srt");
    EXPECT_FALSE(items.isAllowedFolderURLInSandbox(inside));

    items.whereURL = where;
    EXPECT_TRUE(items.isAllowedFolderURLInSandbox(inside));
    EXPECT_TRUE(items.isAllowedFolderURLInSandbox(sibling));  // plain prefix, intended
    EXPECT_FALSE(items.isAllowedFolderURLInSandbox(outside));

    items.sortOpenedURLs({subtitle});
    items.startNewOpenedLists(items.sortOpenedURLs({outside}));
    EXPECT_TRUE(items.isCanGetAccessToVideoFileURL(outside));
    EXPECT_FALSE(items.isCanGetAccessToVideoFileURL(inside));
    EXPECT_TRUE(items.isCanGetAccessToSubtitleFileURL(subtitle));
    EXPECT_FALSE(items.isCanGetAccessToSubtitleFileURL(tree.touch("other/d.srt")));

    // A link into an opened folder is judged by where it leads.
    items.startNewOpenedLists(items.sortOpenedURLs({where}));
    ASSERT_TRUE(QFile::link(tree.path("where"), tree.path("link")));
    EXPECT_TRUE(items.isCanGetAccessToVideoFileURL(tree.url("link/a.mkv")));
    EXPECT_FALSE(items.isCanGetAccessToVideoFileURL(outside));
}

}  // namespace
}  // namespace tolvane
