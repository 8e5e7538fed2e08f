#pragma once

#include <QString>
#include <QUrl>
#include <optional>

#include "record_layouts.h"

namespace tolvane {

class OpenedItems;
struct Playlist;

// The three persisted records: "QZRTotalFdFlsData" (the played state of every
// file and folder), "QZRRecentFdFlsData" (what was opened last) and
// "QZRRecentIsFolder". Each is one value under its key in the user defaults,
// a CBOR-serialised property list; an absent value reads as an empty record.
// An unreadable one is copied into a file of its own beside the settings
// ("Tolvane.<key>.<time>.damaged"), removed, and read as empty, so the next
// save cannot overwrite the only copy; when no copy can be made, reading and
// saving that record fail and leave it in place. Writes go through QSettings' atomic save, so a
// crash during a save leaves the previous record readable. A failed save is logged and leaves the
// stored record as it was. Thread-safety: main thread only (it reads the playlist and the opened
// items).
class PlayedStateRecords {
public:
    PlayedStateRecords(const Playlist &playlist, OpenedItems &openedItems);

    // Rewrites the played-state record from the current file's reopen fields;
    // `mode` "folder" (or "auto" after a folder open) also writes the entry of
    // the current file's folder; "file" (or "auto" after an open of files)
    // only keeps the folder part. Nothing is written while no file is current.
    void saveTotalFdFlsData(const QString &mode);
    // The file part with the current file's entry replaced (oldest entries
    // evicted first when full); unchanged when nothing is current.
    QMap<QString, FileEntry> newDicFromTtFileDic(const QMap<QString, FileEntry> &ttfile) const;
    TtFolderDic newDicFromTtFolderDic(const TtFolderDic &ttfolder, const QString &mode) const;

    static TotalFdFlsData readTotalFdFlsData();
    // Replaces the stored played-state record; throws when it cannot be written.
    static void storeTotalFdFlsData(const TotalFdFlsData &totalFdFlsDic);
    static std::optional<FileEntry> getSavedEachFileDicFromURL(const QUrl &url,
                                                               const TotalFdFlsData &totalFdFlsDic);
    static std::optional<FolderEntry> getSavedEachFolderDicFromURL(
        const QUrl &folderURL, const TotalFdFlsData &totalFdFlsDic);
    // The file's entry when its stored size equals the size now on disk, and a
    // fresh entry otherwise: a file replaced by another starts from the start.
    static FileEntry getResetEachFileDicFromURL(const QUrl &url,
                                                const TotalFdFlsData &totalFdFlsDic);
    static QString getSavedRecentFolderPathFromTotalFdFlsDic(const TotalFdFlsData &totalFdFlsDic);
    static QStringList getSavedRecentPList1DicFromTotalFdFlsDic(
        const TotalFdFlsData &totalFdFlsDic);

    // Replaces `part` ("folder", "subtitle", "video", "index" or "all") of the
    // recent record with the current state.
    void saveRecentFdFlsData(const QString &part);
    RecentURLGroup newDicFromRcFolderDic() const;
    RecentURLGroup newDicFromRcSubtitleDic() const;
    RecentURLGroup newDicFromRcVideoDic() const;

    // The recent record's entry of one opened item: on Linux its bookmark is
    // the path, which a read-only disk does not prevent.
    static RecentURLEntry recentURLEntryFromURL(const QUrl &url, bool writable);
    // False for a file that cannot be written in place or moved away (its
    // disk is mounted read-only, or it or its folder refuse writing).
    static bool isOnWritableDisk(const QUrl &url);
    // The recent videos that were stored, or are now, on a disk that cannot
    // be written, whether or not that disk is present now.
    static QList<QUrl> getSavedRecentVideosOnNotWritableDisk(const RecentFdFlsData &recent);

    static RecentFdFlsData readRecentFdFlsData();
    static RecentURLGroup getSavedRecentFolderDicFromRecentFdFlsDic(const RecentFdFlsData &recent);
    static RecentURLGroup getSavedRecentSubtitleDicFromRecentFdFlsDic(
        const RecentFdFlsData &recent);
    static RecentURLGroup getSavedRecentVideoDicFromRecentFdFlsDic(const RecentFdFlsData &recent);
    static int getSavedRecentPList0IndexFromRecentFdFlsDic(const RecentFdFlsData &recent);

    // Restores the opened lists and the chooser index from the recent record;
    // items whose bookmark no longer resolves are left out.
    void loadRecentFdFlsData();

    static void saveRecentIsFolder(bool isFolder);
    static bool getSavedRecentIsFolder();

private:
    // As the readers above, but throwing when a damaged record could not be
    // set aside, so that the save which called them leaves it in place.
    static TotalFdFlsData readTotalFdFlsDataForSaving();
    static RecentFdFlsData readRecentFdFlsDataForSaving();

    const Playlist &playlist;
    OpenedItems &openedItems;
};

}  // namespace tolvane
