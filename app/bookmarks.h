#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

namespace tolvane {

// Bookmark data: what the records keep to find an opened file or folder again
// after a restart. On Linux it is a small CBOR record of the item's canonical
// absolute path and, inside a Flatpak sandbox, of the document-portal path
// through which the sandbox reached the item (the portal keeps that path for a
// granted document across restarts). Thread-safety: reentrant.

// Empty data for an absent URL or an item that does not exist.
QByteArray bookmarkDataFromURL(const QUrl &url);

// The item's URL, or nothing when the data is empty or unreadable or the item
// no longer exists at any of the recorded paths.
std::optional<QUrl> resolvedURLFromBookmarkData(const QByteArray &bookmarkData);

// The user's chosen subtitle folder (the where folder) as "WhereURLData"
// stores it: {"absolute": the folder as chosen, "bookmark": its bookmark data}.
struct WhereFolder {
    QUrl whereAbsoluteURL;
    QUrl whereURL;  // resolved from the bookmark; empty when that fails
};

// Empty data for an absent folder URL.
QByteArray whereURLDataFromFolderURL(const QUrl &folderURL);
// Empty URLs for empty or unreadable data.
WhereFolder whereFolderFromWhereURLData(const QByteArray &whereURLData);

}  // namespace tolvane
