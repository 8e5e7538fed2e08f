#include "playlist_builder.h"

#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <exception>

#include "base/log.h"
#include "base/operation_boundary.h"
#include "finder_order.h"
#include "media_file_kinds.h"
#include "opened_items.h"
#include "played_state_records.h"
#include "playlist.h"
#include "series.h"

namespace tolvane {
namespace {

QUrl folderURLOfFile(const QUrl &fileURL) {
    return QUrl::fromLocalFile(QFileInfo(fileURL.toLocalFile()).path());
}

bool isVideoFileEntry(const QUrl &entry) {
    return isVideoFileURL(entry) && QFileInfo(entry.toLocalFile()).isFile();
}

QList<QUrl> videoFilesOfFolder(const QUrl &folderURL) {
    QList<QUrl> videos;
    for (const QUrl &entry : listFolderInFinderOrder(folderURL)) {
        if (isVideoFileEntry(entry)) {
            videos.append(entry);
        }
    }
    return videos;
}

QList<QUrl> existingURLsFromPaths(const QStringList &paths) {
    QList<QUrl> urls;
    for (const QString &path : paths) {
        const QUrl url = QUrl::fromLocalFile(path);
        if (QFileInfo(path).isFile()) {
            urls.append(url);
        }
    }
    return urls;
}

}  // namespace

PlaylistBuilder::PlaylistBuilder(Playlist &playlist_, OpenedItems &openedItems_,
                                 MoreFilesQuestion &question_)
    : playlist(playlist_), openedItems(openedItems_), question(question_) {}

void markSmallBlurayStreamFiles(QList<PlaylistItem> &items) {
    const auto streamFolderOf = [](const PlaylistItem &item) {
        const QString path = item.url.toLocalFile();
        return path.contains(QLatin1String("/BDMV/STREAM/"), Qt::CaseInsensitive)
                   ? QFileInfo(path).path()
                   : QString();
    };
    QHash<QString, qint64> largestOfDisc;
    QList<qint64> sizes;
    sizes.reserve(items.size());
    for (const PlaylistItem &item : items) {
        const QString folder = streamFolderOf(item);
        sizes.append(folder.isEmpty() ? 0 : QFileInfo(item.url.toLocalFile()).size());
        if (!folder.isEmpty()) {
            largestOfDisc[folder] = std::max(largestOfDisc.value(folder), sizes.last());
        }
    }
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QString folder = streamFolderOf(items[i]);
        items[i].isSkipped = !folder.isEmpty() && sizes[i] * 10 < largestOfDisc.value(folder);
    }
}

void PlaylistBuilder::fillPlaylist(const QList<QUrl> &urls, const TotalFdFlsData &total,
                                   const QUrl &currentURL, bool isFolder) {
    playlist.cleanAndAllocPlayBeforeRestoring();
    int currentIndex = 0;
    for (const QUrl &url : urls) {
        const FileEntry saved = PlayedStateRecords::getResetEachFileDicFromURL(url, total);
        if (url.path(QUrl::FullyDecoded) == currentURL.path(QUrl::FullyDecoded)) {
            currentIndex = int(playlist.playList.size());
        }
        playlist.playList.append(PlaylistItem{url, saved.ctime, saved.caudio, saved.csubtitleidxs,
                                              saved.cdelaydic, saved.cdone, saved.fsize});
    }
    markSmallBlurayStreamFiles(playlist.playList);
    if (playlist.playList.isEmpty()) {
        playlist.reOpen = ReOpenFields{};
    } else {
        playlist.loadReOpenFieldsFromItemAtIndex(currentIndex);
    }
    PlayedStateRecords::saveRecentIsFolder(isFolder);
}

void PlaylistBuilder::makePListWithFilesFromAllowedSandbox() {
    runAtOperationBoundary("mplwffas", [&] {
        const QList<QUrl> &opened = openedItems.openedVideoFileURLs;
        QList<QUrl> taken;
        for (const QUrl &video : opened) {
            for (const QUrl &entry : listFolderInFinderOrder(folderURLOfFile(video))) {
                if (thisURLs(taken, entry)) {
                    continue;
                }
                if (thisURLs(opened, entry) ||
                    (isVideoFileEntry(entry) && isSeries(entry, video))) {
                    taken.append(entry);
                }
            }
        }
        fillPlaylist(taken, PlayedStateRecords::readTotalFdFlsData(),
                     opened.isEmpty() ? QUrl() : opened.first(), false);
    });
}

void PlaylistBuilder::makePListWithFolderFromAlwaysallowedSandbox() {
    runAtOperationBoundary("mplwffaas", [&] {
        const TotalFdFlsData total = PlayedStateRecords::readTotalFdFlsData();
        QList<QUrl> items;
        QUrl currentURL;
        for (const QUrl &folder : openedItems.openedFolderURLs) {
            QUrl savedCurrentURL;
            if (isBlurayFolderStructure(folder)) {
                items += videoURLsOfFolderWhenReOpen(folder, total, &savedCurrentURL);
            } else {
                items += videoFilesOfFolder(folder);
                if (const auto saved =
                        PlayedStateRecords::getSavedEachFolderDicFromURL(folder, total)) {
                    savedCurrentURL = QUrl::fromLocalFile(saved->cpath);
                }
            }
            if (currentURL.isEmpty() && folder == openedItems.openedFolderURLs.first()) {
                currentURL = savedCurrentURL;
            }
        }
        fillPlaylist(items, total, currentURL, true);
    });
}

void PlaylistBuilder::makePListWithFileWhenReOpen(const QList<QUrl> &savedVideoFileURLs) {
    runAtOperationBoundary("mplwfwro:", [&] {
        QList<QUrl> items;
        for (const QUrl &video : savedVideoFileURLs) {
            if (QFileInfo(video.toLocalFile()).isFile() && !thisURLs(items, video)) {
                items.append(video);
            }
        }
        if (!items.isEmpty()) {
            QList<QUrl> sameSeries;
            for (const QUrl &entry : videoFilesOfFolder(folderURLOfFile(items.first()))) {
                if (isSeries(entry, items.first())) {
                    sameSeries.append(entry);
                }
            }
            items = appendAfterAskingForMoreFiles(items, sameSeries);
        }
        fillPlaylist(items, PlayedStateRecords::readTotalFdFlsData(),
                     savedVideoFileURLs.isEmpty() ? QUrl() : savedVideoFileURLs.first(), false);
    });
}

void PlaylistBuilder::makePListWithFolderWhenReOpen(const QUrl &folderURL) {
    runAtOperationBoundary("mplwfwro:", [&] {
        const TotalFdFlsData total = PlayedStateRecords::readTotalFdFlsData();
        QUrl savedCurrentURL;
        const QList<QUrl> items = videoURLsOfFolderWhenReOpen(folderURL, total, &savedCurrentURL);
        fillPlaylist(items, total, savedCurrentURL, true);
    });
}

// The saved playlist of a folder (of its stream folder for a Blu-ray
// structure) without vanished files, and the folder's further videos when the
// user agrees; the whole folder when nothing was saved.
QList<QUrl> PlaylistBuilder::videoURLsOfFolderWhenReOpen(const QUrl &folderURL,
                                                         const TotalFdFlsData &total,
                                                         QUrl *savedCurrentURL) {
    const QUrl listedFolder =
        isBlurayFolderStructure(folderURL) ? blurayStreamFolderURL(folderURL) : folderURL;
    const QList<QUrl> videosNow = videoFilesOfFolder(listedFolder);
    QStringList savedPaths;
    if (const auto saved = PlayedStateRecords::getSavedEachFolderDicFromURL(listedFolder, total)) {
        savedPaths = saved->lurls;
        *savedCurrentURL = QUrl::fromLocalFile(saved->cpath);
    } else if (total.ttfolder.QZRrcfdpath == listedFolder.toLocalFile()) {
        savedPaths = total.ttfolder.QZRrcplist1;
    }
    if (savedPaths.isEmpty()) {
        return videosNow;
    }
    return appendAfterAskingForMoreFiles(existingURLsFromPaths(savedPaths), videosNow);
}

QList<QUrl> PlaylistBuilder::appendAfterAskingForMoreFiles(QList<QUrl> items,
                                                           const QList<QUrl> &candidates) {
    QList<QUrl> newFiles;
    for (const QUrl &candidate : candidates) {
        if (!thisURLs(items, candidate) && !thisURLs(newFiles, candidate)) {
            newFiles.append(candidate);
        }
    }
    if (!newFiles.isEmpty() && question.askToAddMoreFiles(int(newFiles.size()))) {
        items += newFiles;
    }
    return items;
}

void PlaylistBuilder::refreshFirstTitleInCurrentPList0UsingPList1() {
    if (playlist.playList.isEmpty()) {
        return;
    }
    const QString title =
        OpenedItems::titleForFiles(playlist.playList.first().url, playlist.playList.size());
    if (openedItems.openedListTitles.isEmpty()) {
        openedItems.openedListTitles.append(title);
    } else {
        openedItems.openedListTitles.first() = title;
    }
}

}  // namespace tolvane
