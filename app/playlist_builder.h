#pragma once

#include <QList>
#include <QUrl>

namespace tolvane {

class OpenedItems;
class PlayedStateRecords;
struct Playlist;
struct PlaylistItem;
struct TotalFdFlsData;

// The offer made when a reopened file's or folder's folder now holds videos
// that the saved playlist lacks: a modal question titled "MOREFILES" with
// "MOREFILESCONT" formatted with `countOfNewFiles`, answered "ADD" (true) or
// "CANCEL" (false). The interface answers it with a dialog, tests directly.
class MoreFilesQuestion {
public:
    virtual ~MoreFilesQuestion() = default;
    virtual bool askToAddMoreFiles(int countOfNewFiles) = 0;
};

// Marks the stream files of a Blu-ray disc ("/BDMV/STREAM", any case) that
// are smaller than a tenth of the same disc's largest: menus, trailers and
// logos, which previous and next step over while the playlist lists them.
void markSmallBlurayStreamFiles(QList<PlaylistItem> &items);

// Builds the playlist from what was opened. Every builder empties the playlist
// first, fills each item's played state from the played-state record (a file
// whose size changed starts afresh), makes one item current and copies its
// state into the reopen fields, and records whether the playlist came from
// folders ("QZRRecentIsFolder"). Items are in Finder order. A folder that cannot
// be listed gives no items; vanished files are left out.
// Thread-safety: main thread only.
class PlaylistBuilder {
public:
    PlaylistBuilder(Playlist &playlist, OpenedItems &openedItems, MoreFilesQuestion &question);

    // Every folder the user can read may be listed (there is no sandbox): the
    // playlist holds the opened videos and every video beside them of the same
    // series, so opening one episode brings its series; the first opened
    // video is current.
    void makePListWithFilesFromAllowedSandbox();
    // The videos of every opened folder, folder after folder; a Blu-ray
    // structure contributes its stream files. The file that was current in
    // the first folder last time is current again.
    void makePListWithFolderFromAlwaysallowedSandbox();
    // Reopening the recent files: the saved videos that still exist, plus, when
    // the user agrees, the videos of the same series that appeared beside the
    // first one since.
    void makePListWithFileWhenReOpen(const QList<QUrl> &savedVideoFileURLs);
    // Reopening a recent folder: its saved playlist without vanished files,
    // plus, when the user agrees, the folder's videos that the list lacks.
    void makePListWithFolderWhenReOpen(const QUrl &folderURL);

    // The chooser's first title made from the built playlist.
    void refreshFirstTitleInCurrentPList0UsingPList1();

private:
    QList<QUrl> videoURLsOfFolderWhenReOpen(const QUrl &folderURL, const TotalFdFlsData &total,
                                            QUrl *savedCurrentURL);
    QList<QUrl> appendAfterAskingForMoreFiles(QList<QUrl> items, const QList<QUrl> &candidates);
    void fillPlaylist(const QList<QUrl> &urls, const TotalFdFlsData &total, const QUrl &currentURL,
                      bool isFolder);

    Playlist &playlist;
    OpenedItems &openedItems;
    MoreFilesQuestion &question;
};

}  // namespace tolvane
