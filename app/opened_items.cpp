#include "opened_items.h"

#include <QFileInfo>

#include "base/localized_strings.h"
#include "finder_order.h"
#include "media_file_kinds.h"
#include "series.h"

namespace tolvane {
namespace {

bool isUnderAnyFolder(const QString &path, const QList<QUrl> &folderURLs) {
    for (const QUrl &folder : folderURLs) {
        const QString folderPath = canonicalPathOfURL(folder);
        if (!folderPath.isEmpty() && path.startsWith(folderPath)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool OpenedItems::isAllowedFolderURLInSandbox(const QUrl &url) const {
    if (whereURL.isEmpty()) {
        return false;
    }
    const QString wherePath = canonicalPathOfURL(whereURL);
    return !wherePath.isEmpty() && canonicalPathOfURL(url).startsWith(wherePath);
}

bool OpenedItems::isCanGetAccessToVideoFileURL(const QUrl &url) const {
    const QString path = canonicalPathOfURL(url);
    return isUnderAnyFolder(path, openedFolderURLs) ||
           thisURLs(openedVideoFileURLs, QUrl::fromLocalFile(path));
}

bool OpenedItems::isCanGetAccessToSubtitleFileURL(const QUrl &url) const {
    const QString path = canonicalPathOfURL(url);
    return isUnderAnyFolder(path, openedFolderURLs) ||
           thisURLs(openedSubtitleFileURLs, QUrl::fromLocalFile(path));
}

SortedOpenedURLs OpenedItems::sortOpenedURLs(const QList<QUrl> &urls) {
    SortedOpenedURLs sorted;
    for (const QUrl &opened : urls) {
        if (!isExistingURL(opened)) {
            continue;
        }
        const QUrl url = canonicalURL(opened);
        if (isDirectoryURL(url)) {
            if (!thisURLs(sorted.folders, url)) {
                sorted.folders.append(url);
            }
        } else if (isSubtitleFileURL(url)) {
            if (!thisURLs(openedSubtitleFileURLs, url)) {
                openedSubtitleFileURLs.append(url);
                ++sorted.addedSubtitleCount;
            }
        } else if (isVideoFileURL(url)) {
            if (!thisURLs(sorted.videos, url)) {
                sorted.videos.append(url);
            }
        }
    }
    sortURLsInFinderOrder(sorted.videos);
    sortURLsInFinderOrder(sorted.folders);
    return sorted;
}

void OpenedItems::startNewOpenedLists(const SortedOpenedURLs &sorted) {
    indexList = 0;
    openedListTitles.clear();
    openedVideoFileURLs = sorted.videos;
    openedFolderURLs = sorted.folders;
    if (!openedVideoFileURLs.isEmpty()) {
        openedListTitles.append(
            titleForFiles(openedVideoFileURLs.first(), openedVideoFileURLs.size()));
    }
    for (const QUrl &folder : openedFolderURLs) {
        openedListTitles.append(folder.fileName());
    }
}

QString OpenedItems::titleForFiles(const QUrl &firstFileURL, qsizetype fileCount) {
    const QString baseName = QFileInfo(firstFileURL.path(QUrl::FullyDecoded)).completeBaseName();
    if (fileCount <= 1) {
        return baseName;
    }
    return localizedString("FILEINLIST").arg(baseName).arg(fileCount - 1);
}

}  // namespace tolvane
