#include "app/played_state_records.h"

#include <gtest/gtest.h>

#include <QCborArray>
#include <QCborValue>
#include <QDir>
#include <QFile>

#include "app/bookmarks.h"
#include "app/opened_items.h"
#include "app/playlist.h"
#include "app/user_defaults.h"
#include "app_test_support.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

QVariantMap storedRecord(const char *key) {
    const QByteArray data = openTolvaneSettings()->value(QLatin1String(key)).toByteArray();
    return QCborValue::fromCbor(data).toVariant().toMap();
}

QString diagnosticOf(const FileEntry &entry) {
    return QCborValue::fromVariant(entry.toVariantMap()).toDiagnosticNotation();
}

// Entries named "/f/<i>" accessed one millisecond apart, oldest first.
template <typename Entry>
QMap<QString, Entry> entriesAccessedInTurn(int count) {
    const QDateTime start = QDateTime::fromString("2024-03-01T10:00:00", Qt::ISODate);
    QMap<QString, Entry> entries;
    for (int i = 0; i < count; ++i) {
        Entry entry;
        entry.laccs = laccsStringFromDateTime(start.addMSecs(i));
        entries.insert(QStringLiteral("/f/%1").arg(i), entry);
    }
    return entries;
}

class Records : public ::testing::Test {
protected:
    void SetUp() override { test::clearTolvaneSettings(); }

    // Makes `file` the only playlist item and the current one.
    void playOnly(const QUrl &file) {
        PlaylistItem item;
        item.url = file;
        item.playSize = QFileInfo(file.toLocalFile()).size();
        playlist.playList = {item};
        playlist.loadReOpenFieldsFromItemAtIndex(0);
    }

    test::TemporaryTree tree;
    Playlist playlist;
    OpenedItems openedItems;
    PlayedStateRecords records{playlist, openedItems};
};

TEST_F(Records, ModesDecideWhetherTheFolderEntryIsWrittenInTheStoredLayout) {
    const QUrl file = tree.touch("show/Ep 1.mkv", "12345");
    playOnly(file);
    ReOpenFields &chosen = playlist.reOpen;
    chosen.reOpenSubtitleIdxs = {"a#*QZR*SPC*KEY*#smi", "integrated"};
    chosen.reOpenDelayDic = {{"a#*QZR*SPC*KEY*#smi", -500}};
    const QString folderPath = tree.path("show");
    const struct {
        const char *mode;
        bool lastOpenWasFolder;
        bool writesFolder;
    } cases[] = {{"file", true, false},
                 {"auto", false, false},
                 {"folder", false, true},
                 {"auto", true, true}};
    for (const auto &c : cases) {
        test::clearTolvaneSettings();
        PlayedStateRecords::saveRecentIsFolder(c.lastOpenWasFolder);
        records.saveTotalFdFlsData(QString::fromUtf8(c.mode));
        const TotalFdFlsData total = PlayedStateRecords::readTotalFdFlsData();
        EXPECT_EQ(total.ttfile.size(), 1) << c.mode;
        EXPECT_EQ(total.ttfolder.folders.contains(folderPath), c.writesFolder) << c.mode;
    }

    const QVariantMap total = storedRecord("QZRTotalFdFlsData");
    const QVariantMap entry = total["ttfile"].toMap()[file.toLocalFile()].toMap();
    const QVariantMap folders = total["ttfolder"].toMap();
    EXPECT_EQ(total.keys(), QStringList({"ttfile", "ttfolder"}));
    EXPECT_EQ(entry.keys(), QStringList({"caudio", "cdelaydic", "cdone", "csubtitleidxs", "ctime",
                                         "fsize", "laccs"}));
    EXPECT_EQ(folders.keys(), QStringList({folderPath, "QZRrcfdpath", "QZRrcplist1"}));
    EXPECT_EQ(folders[folderPath].toMap().keys(), QStringList({"cpath", "laccs", "lurls"}));
    const FileEntry saved = FileEntry::fromVariantMap(entry);
    EXPECT_EQ(saved.fsize, 5u);
    EXPECT_EQ(saved.csubtitleidxs, chosen.reOpenSubtitleIdxs);
    EXPECT_EQ(saved.cdelaydic, chosen.reOpenDelayDic);
}

TEST_F(Records, NothingCurrentLeavesTheRecordUntouched) {
    records.saveTotalFdFlsData("auto");
    EXPECT_FALSE(openTolvaneSettings()->contains("QZRTotalFdFlsData"));

    TotalFdFlsData stored;
    stored.ttfile.insert("/f/old.mkv", FileEntry{});
    PlayedStateRecords::storeTotalFdFlsData(stored);
    const QByteArray before = openTolvaneSettings()->value("QZRTotalFdFlsData").toByteArray();
    records.saveTotalFdFlsData("folder");
    EXPECT_EQ(openTolvaneSettings()->value("QZRTotalFdFlsData").toByteArray(), before);
}

TEST_F(Records, FileEntriesAreEvictedAtTheirThreshold) {
    playOnly(tree.touch("new.mkv"));
    const struct {
        int storedEntries;
        bool firstTwoShareLaccs;  // entries of one time take one place in the walk
        int entriesAfter;
    } cases[] = {{8000, false, 8001}, {8001, false, 4000}, {9000, false, 4000}, {8001, true, 4001}};
    for (const auto &c : cases) {
        QMap<QString, FileEntry> stored = entriesAccessedInTurn<FileEntry>(c.storedEntries);
        if (c.firstTwoShareLaccs) {
            stored["/f/1"].laccs = stored["/f/0"].laccs;
        }
        const QMap<QString, FileEntry> after = records.newDicFromTtFileDic(stored);
        EXPECT_EQ(after.size(), c.entriesAfter) << c.storedEntries;
        EXPECT_TRUE(after.contains(playlist.reOpen.reOpenURL.toLocalFile()));
        EXPECT_TRUE(after.contains(QStringLiteral("/f/%1").arg(c.storedEntries - 1)));
        if (c.entriesAfter == 4000) {
            EXPECT_FALSE(after.contains(QStringLiteral("/f/%1").arg(c.storedEntries - 4000)));
            EXPECT_TRUE(after.contains(QStringLiteral("/f/%1").arg(c.storedEntries - 3999)));
        }
    }
}

TEST_F(Records, FolderEntriesAreEvictedAtTheirThresholdKeepingTheFixedEntries) {
    playOnly(tree.touch("show/new.mkv"));
    for (const auto &[storedFolders, foldersAfter] : {std::pair{5000, 5001}, {5001, 2500}}) {
        TtFolderDic stored;
        stored.folders = entriesAccessedInTurn<FolderEntry>(storedFolders);
        stored.QZRrcfdpath = "/f/0";
        const TtFolderDic after = records.newDicFromTtFolderDic(stored, "folder");
        EXPECT_EQ(after.folders.size(), foldersAfter) << storedFolders;
        EXPECT_EQ(after.QZRrcfdpath, tree.path("show"));
        EXPECT_EQ(records.newDicFromTtFolderDic(stored, "file").QZRrcfdpath, "/f/0");
    }
}

TEST_F(Records, AFileOfAnotherSizeGetsAFreshEntry) {
    const QUrl file = tree.touch("movie.mkv", "abc");
    TotalFdFlsData total;
    FileEntry &saved = total.ttfile[file.toLocalFile()];
    saved.fsize = 3;
    saved.ctime = 80.0;
    saved.caudio = 1;
    saved.csubtitleidxs = {"k"};
    saved.cdelaydic = {{"k", 5}};
    saved.cdone = true;
    EXPECT_EQ(PlayedStateRecords::getResetEachFileDicFromURL(file, total).ctime, 80.0);

    tree.touch("movie.mkv", "abcd");
    FileEntry reset = PlayedStateRecords::getResetEachFileDicFromURL(file, total);
    EXPECT_FALSE(reset.laccs.isEmpty());
    reset.laccs.clear();
    FileEntry fresh;
    fresh.fsize = 4;
    EXPECT_EQ(diagnosticOf(reset), diagnosticOf(fresh));
}

TEST_F(Records, RecentRecordHasTheStoredLayoutAndReplacesOnlyItsPart) {
    const QUrl video = tree.touch("v.mkv");
    const QUrl subtitle = tree.touch("v.srt");
    openedItems.openedVideoFileURLs = {video};
    openedItems.openedSubtitleFileURLs = {subtitle};
    openedItems.indexList = 1;
    records.saveRecentFdFlsData("all");

    const QVariantMap recent = storedRecord("QZRRecentFdFlsData");
    EXPECT_EQ(recent.keys(), QStringList({"rcfolder", "rcplist0idx", "rcsubtitle", "rcvideo"}));
    const QVariantMap entry = recent["rcvideo"].toMap()["lurls"].toList().value(0).toMap();
    EXPECT_EQ(entry.keys(), QStringList({"absolute", "bookmark", "writable"}));
    EXPECT_EQ(entry["absolute"].toString(), video.toString());

    // Reopening resolves what still exists.
    QFile::remove(subtitle.toLocalFile());
    OpenedItems restored;
    PlayedStateRecords(playlist, restored).loadRecentFdFlsData();
    EXPECT_EQ(restored.openedVideoFileURLs, QList<QUrl>({video}));
    EXPECT_TRUE(restored.openedSubtitleFileURLs.isEmpty());
    EXPECT_EQ(restored.indexList, 1);

    openedItems.openedVideoFileURLs.clear();
    openedItems.indexList = 0;
    records.saveRecentFdFlsData("index");
    const RecentFdFlsData afterIndex = PlayedStateRecords::readRecentFdFlsData();
    EXPECT_EQ(afterIndex.rcplist0idx, 0);
    EXPECT_EQ(afterIndex.rcvideo.lurls.size(), 1);
    records.saveRecentFdFlsData("video");
    EXPECT_TRUE(PlayedStateRecords::readRecentFdFlsData().rcvideo.lurls.isEmpty());
    EXPECT_EQ(PlayedStateRecords::readRecentFdFlsData().rcsubtitle.lurls.size(), 1);
}

// The contents of the files that damaged records were set aside in, by name.
QMap<QString, QByteArray> setAsideRecords(const char *key) {
    const QFileInfo settingsFile(openTolvaneSettings()->fileName());
    QMap<QString, QByteArray> found;
    for (const QFileInfo &file :
         QDir(settingsFile.path()).entryInfoList({QStringLiteral("*%1*").arg(key)}, QDir::Files)) {
        QFile stored(file.filePath());
        if (stored.open(QIODevice::ReadOnly)) {
            found.insert(file.fileName(), stored.readAll());
        }
    }
    return found;
}

void storeRawRecord(const char *key, const QVariant &value) {
    const auto settings = openTolvaneSettings();
    settings->setValue(QLatin1String(key), value);
    settings->sync();
}

// One damaged byte must not cost every file's position: the unreadable record
// is kept aside, once per damage, and the next save starts from empty.
TEST_F(Records, DamagedRecordsAreSetAsideBeforeTheNextSaveReplacesThem) {
    EXPECT_TRUE(PlayedStateRecords::readTotalFdFlsData().ttfile.isEmpty());
    EXPECT_FALSE(PlayedStateRecords::getSavedRecentIsFolder());
    const QUrl file = tree.touch("movie.mkv", "123");
    playOnly(file);
    openedItems.openedVideoFileURLs = {file};
    const struct {
        const char *key;
        QVariant stored;
    } cases[] = {
        {"QZRTotalFdFlsData", QByteArray("\xff\x00garbage", 9)},
        {"QZRTotalFdFlsData", QCborValue(QCborArray{1, 2}).toCbor()},  // not a map
        {"QZRTotalFdFlsData",
         QCborValue::fromVariant(QVariantMap{{"ttfile", 1}}).toCbor().chopped(1)},
        {"QZRRecentFdFlsData", QByteArray("not cbor")},
        {"QZRRecentFdFlsData", QCborValue(QCborArray{}).toCbor()},
    };
    for (const auto &c : cases) {
        const QMap<QString, QByteArray> before = setAsideRecords(c.key);
        storeRawRecord(c.key, c.stored);
        records.saveTotalFdFlsData("file");
        records.saveRecentFdFlsData("all");
        records.saveTotalFdFlsData("file");

        const QMap<QString, QByteArray> after = setAsideRecords(c.key);
        ASSERT_EQ(after.size(), before.size() + 1) << c.key << " set aside once";
        for (auto kept = before.cbegin(); kept != before.cend(); ++kept) {
            EXPECT_EQ(after.value(kept.key()), kept.value()) << "an earlier damage is kept";
        }
        for (auto added = after.cbegin(); added != after.cend(); ++added) {
            if (!before.contains(added.key())) {
                EXPECT_EQ(added.value(), c.stored.toByteArray()) << c.key;
            }
        }
        EXPECT_EQ(PlayedStateRecords::readTotalFdFlsData().ttfile.keys(),
                  QStringList{file.toLocalFile()});
        EXPECT_EQ(PlayedStateRecords::readRecentFdFlsData().rcvideo.lurls.size(), 1);
    }
}

// On Linux the saved form of an item is its path, which a read-only disk does
// not prevent; the controller asks which recent videos cannot be written.
TEST_F(Records, RecentVideosOnReadOnlyDisksAreKeptAndReported) {
    const QUrl readOnlyVideo = tree.touch("disc/movie.mkv");
    const QUrl olderRecordVideo = tree.touch("disc/older.mkv");
    const RecentURLEntry entry = PlayedStateRecords::recentURLEntryFromURL(readOnlyVideo, false);
    EXPECT_FALSE(entry.writable);
    EXPECT_EQ(resolvedURLFromBookmarkData(entry.bookmark), readOnlyVideo);

    RecentFdFlsData recent;
    recent.rcvideo.lurls = {entry, RecentURLEntry{{}, olderRecordVideo.toString(), false}};
    storeRawRecord("QZRRecentFdFlsData", QCborValue::fromVariant(recent.toVariantMap()).toCbor());
    OpenedItems restored;
    PlayedStateRecords(playlist, restored).loadRecentFdFlsData();
    EXPECT_EQ(restored.openedVideoFileURLs, QList<QUrl>({readOnlyVideo, olderRecordVideo}));
    EXPECT_EQ(PlayedStateRecords::getSavedRecentVideosOnNotWritableDisk(
                  PlayedStateRecords::readRecentFdFlsData()),
              QList<QUrl>({readOnlyVideo, olderRecordVideo}));
}

TEST(Bookmarks, RecordTheCanonicalPathAndRejectEmptyOrJunkData) {
    test::TemporaryTree tree;
    const QUrl file = tree.touch("a/b.mkv");
    ASSERT_TRUE(QFile::link(tree.path("a"), tree.path("link")));
    const QByteArray bookmark = bookmarkDataFromURL(tree.url("link/b.mkv"));
    ASSERT_FALSE(bookmark.isEmpty());
    EXPECT_EQ(resolvedURLFromBookmarkData(bookmark), file);

    EXPECT_TRUE(bookmarkDataFromURL(QUrl()).isEmpty());
    EXPECT_TRUE(bookmarkDataFromURL(tree.url("missing.mkv")).isEmpty());
    EXPECT_EQ(resolvedURLFromBookmarkData({}), std::nullopt);
    EXPECT_EQ(resolvedURLFromBookmarkData("junk"), std::nullopt);
}

TEST(Bookmarks, TheWhereFolderKeepsItsChosenURLWhenTheBookmarkFails) {
    test::TemporaryTree tree;
    const QUrl where = tree.makeFolder("subtitles");
    const QByteArray data = whereURLDataFromFolderURL(where);
    EXPECT_EQ(whereFolderFromWhereURLData(data).whereURL, where);
    EXPECT_EQ(whereFolderFromWhereURLData(data).whereAbsoluteURL, where);

    QDir(where.toLocalFile()).removeRecursively();
    const WhereFolder gone = whereFolderFromWhereURLData(data);
    EXPECT_TRUE(gone.whereURL.isEmpty());
    EXPECT_EQ(gone.whereAbsoluteURL, where);

    EXPECT_TRUE(whereURLDataFromFolderURL(QUrl()).isEmpty());
    EXPECT_TRUE(whereFolderFromWhereURLData({}).whereAbsoluteURL.isEmpty());
    EXPECT_TRUE(whereFolderFromWhereURLData("\xa1").whereAbsoluteURL.isEmpty());
}

}  // namespace
}  // namespace tolvane
