#pragma once

#include <QCollator>
#include <QList>
#include <QUrl>

namespace tolvane {

// The order a file manager shows names in: digits compare by value ("Ep 2"
// before "Ep 10"), letters by the user's collation. The collation follows the
// system locale except the C/POSIX locale of a server or a test run, which is
// pinned to English so that numbers still sort by value. Names that collate
// equal ("02" and "2") are ordered by their plain text, so the order is total.
// Thread-safety: reentrant.
QCollator finderCollator();
bool isBeforeInFinderOrder(const QCollator &collator, const QString &a, const QString &b);

// Sorts ascending by last path component.
void sortURLsInFinderOrder(QList<QUrl> &urls);

// The visible entries (files and folders, no hidden ones) of a folder in
// Finder order; empty when the folder cannot be listed.
QList<QUrl> listFolderInFinderOrder(const QUrl &folderURL);

}  // namespace tolvane
