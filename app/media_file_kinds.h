#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace tolvane {

// Which files the player treats as videos and subtitles, and how a file or
// folder URL is reduced to one path for comparing grants and records.
// Thread-safety: every function is reentrant (it touches only the file system).

// "mov", "mp4", ... compared in lower case; the same list serves every opening
// road and every playlist builder.
bool isVideoFileExtension(const QString &extension);
// The extensions Native mode plays: "mov", "mp4", "m4v", "avi", "m2ts", any case.
bool isNativeModeFileExtension(const QString &extension);
// "smi" and "srt", compared in lower case.
bool isSubtitleFileExtension(const QString &extension);
bool isVideoFileURL(const QUrl &url);
bool isSubtitleFileURL(const QUrl &url);
bool isDirectoryURL(const QUrl &url);
bool isExistingURL(const QUrl &url);

// The canonical absolute path (links resolved) when the item exists, otherwise
// the cleaned absolute path; empty for a URL that is not a local file.
QString canonicalPathOfURL(const QUrl &url);
QUrl canonicalURL(const QUrl &url);

// A Blu-ray folder structure: the folder holds the directory "BDMV/STREAM".
bool isBlurayFolderStructure(const QUrl &folderURL);
QUrl blurayStreamFolderURL(const QUrl &folderURL);

// The size in bytes of the file now on disk, 0 when it cannot be read.
quint64 currentFileSizeOfURL(const QUrl &url);

}  // namespace tolvane
