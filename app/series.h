#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace tolvane {

// Series detection and display names of playlist items.
// Thread-safety: reentrant.

// Every digit, "_", "-" and "." becomes a blank; then the first "[...]" part
// (from the first "[" to the first "]" after it) is removed.
QString removeAllNumbers(const QString &name);

// The name compared by isSeries: the last path component without its
// extension, stripped by removeAllNumbers.
QString seriesNameOfURL(const QUrl &url);

// Whether `url` and `before` are episodes of one series: one stripped name is
// a case-insensitive prefix of the other, or their first non-empty words are
// the same (case-sensitive; words end at a blank, digit, "_", "-" or ".", so
// "[Group] Show - 01" begins with "Show"). Deliberately loose: "Dr.Who.01" and
// "Dr.No" are one series.
bool isSeries(const QUrl &url, const QUrl &before);

// Whether any URL of `urls` has the same path as `haveURL`.
bool thisURLs(const QList<QUrl> &urls, const QUrl &haveURL);

// The name shown for an item: a stream file inside a Blu-ray structure
// (".../Disc/BDMV/STREAM/00001.m2ts") shows as "Disc.m2ts", every other file
// as its last path component; an absent URL as " ".
QString realFileNameStringWhetherBDMV(const QUrl &url);

}  // namespace tolvane
