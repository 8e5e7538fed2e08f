#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

namespace tolvane {

// What the user opened last, sorted into videos, subtitles and folders: the
// grant list that decides which files and folders the player may read, the
// chooser titles, and the user's chosen subtitle folder (the where folder).
// Paths are canonical, so a link and its target are granted alike.
// Thread-safety: main thread only.

// The items of one open, sorted (finallyOpenFilesFolders step 2).
struct SortedOpenedURLs {
    QList<QUrl> videos;
    QList<QUrl> folders;
    int addedSubtitleCount = 0;

    bool hasVideosOrFolders() const { return !videos.isEmpty() || !folders.isEmpty(); }
};

class OpenedItems {
public:
    QList<QUrl> openedVideoFileURLs;
    QList<QUrl> openedSubtitleFileURLs;  // accumulates across opens
    QList<QUrl> openedFolderURLs;
    QStringList openedListTitles;
    int indexList = 0;
    QUrl whereURL;          // resolved from its bookmark; empty when none or unresolvable
    QUrl whereAbsoluteURL;  // as the user chose it

    // Whether `url` lies in the where folder: a plain prefix test of the
    // paths, so a sibling folder whose name extends the where folder's name
    // passes too (intended). NO for everything without a where folder.
    bool isAllowedFolderURLInSandbox(const QUrl &url) const;
    // Whether `url` lies under an opened folder or is one of the opened files.
    bool isCanGetAccessToVideoFileURL(const QUrl &url) const;
    bool isCanGetAccessToSubtitleFileURL(const QUrl &url) const;

    // Sorts what was opened: folders, videos (by extension) and subtitles;
    // new subtitles are added to openedSubtitleFileURLs at once. Items that do
    // not exist or have another extension are ignored.
    SortedOpenedURLs sortOpenedURLs(const QList<QUrl> &urls);

    // Replaces the video and folder lists with those of a new open, in Finder
    // order, and makes their chooser titles: for the files, the first file's
    // base name ("FILEINLIST" with the count of further files when there are
    // more), then each folder's name.
    void startNewOpenedLists(const SortedOpenedURLs &sorted);

    // The chooser title of a set of files led by `firstFileURL`.
    static QString titleForFiles(const QUrl &firstFileURL, qsizetype fileCount);
};

}  // namespace tolvane
