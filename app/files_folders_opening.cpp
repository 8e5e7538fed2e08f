#include "files_folders_opening.h"

#include <algorithm>

#include "opened_items.h"
#include "played_state_records.h"
#include "playlist.h"
#include "playlist_builder.h"

namespace tolvane {

FilesFoldersOpening::FilesFoldersOpening(Playlist &playlist_, OpenedItems &openedItems_,
                                         PlaylistBuilder &builder_, PlayedStateRecords &records_)
    : playlist(playlist_), openedItems(openedItems_), builder(builder_), records(records_) {}

OpeningOutcome FilesFoldersOpening::finallyOpenFilesFolders(
    const QList<QUrl> &urls, std::optional<double> positionOfPlayingFileSec) {
    const SortedOpenedURLs sorted = openedItems.sortOpenedURLs(urls);
    if (!sorted.hasVideosOrFolders()) {
        if (sorted.addedSubtitleCount > 0 && !playlist.isEmpty()) {
            records.saveRecentFdFlsData(QStringLiteral("all"));
            return OpeningOutcome::subtitlesAdded;
        }
        return OpeningOutcome::nothingToOpen;
    }
    openedItems.startNewOpenedLists(sorted);

    if (!playlist.isEmpty()) {
        if (positionOfPlayingFileSec) {
            playlist.reOpen.reOpenCTimeSec = *positionOfPlayingFileSec;
        }
        records.saveTotalFdFlsData(QStringLiteral("auto"));
    }

    if (!openedItems.openedVideoFileURLs.isEmpty()) {
        builder.makePListWithFilesFromAllowedSandbox();
        builder.refreshFirstTitleInCurrentPList0UsingPList1();
        records.saveTotalFdFlsData(QStringLiteral("auto"));
    } else {
        builder.makePListWithFolderFromAlwaysallowedSandbox();
    }

    if (playlist.isEmpty()) {
        return OpeningOutcome::emptyPlaylist;
    }
    records.saveRecentFdFlsData(QStringLiteral("all"));
    return OpeningOutcome::playlistBuilt;
}

OpeningOutcome FilesFoldersOpening::reOpenFromRecentRecord() {
    records.loadRecentFdFlsData();
    const bool isFolder = PlayedStateRecords::getSavedRecentIsFolder();
    const QList<QUrl> &folders = openedItems.openedFolderURLs;
    if (isFolder && !folders.isEmpty()) {
        const int folderIndex = std::clamp(openedItems.indexList, 0, int(folders.size()) - 1);
        builder.makePListWithFolderWhenReOpen(folders[folderIndex]);
    } else if (!isFolder && !openedItems.openedVideoFileURLs.isEmpty()) {
        builder.makePListWithFileWhenReOpen(openedItems.openedVideoFileURLs);
    } else {
        playlist.cleanAndAllocPlayBeforeRestoring();
        playlist.reOpen = ReOpenFields{};
        return OpeningOutcome::nothingToOpen;
    }
    openedItems.openedListTitles.clear();
    if (!openedItems.openedVideoFileURLs.isEmpty()) {
        openedItems.openedListTitles.append(OpenedItems::titleForFiles(
            openedItems.openedVideoFileURLs.first(), openedItems.openedVideoFileURLs.size()));
    }
    for (const QUrl &folder : folders) {
        openedItems.openedListTitles.append(folder.fileName());
    }
    if (!isFolder) {
        builder.refreshFirstTitleInCurrentPList0UsingPList1();
    }
    return playlist.isEmpty() ? OpeningOutcome::emptyPlaylist : OpeningOutcome::playlistBuilt;
}

}  // namespace tolvane
