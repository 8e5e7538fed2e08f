#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include "subtitles/carry_over_forms.h"

namespace tolvane {

// The persisted records, typed. Each struct's fields carry the stored keys as
// names; toVariantMap/fromVariantMap are the only conversions, and reading
// tolerates missing or mistyped values (they read as the defaults below).

// The played state of one file, under its path in "ttfile".
struct FileEntry {
    quint64 fsize = 0;
    QString laccs;
    double ctime = 0.0;
    qint32 caudio = -100;
    QStringList csubtitleidxs;
    SubtitleDelayDic cdelaydic;
    bool cdone = false;

    QVariantMap toVariantMap() const;
    static FileEntry fromVariantMap(const QVariantMap &map);
};

// The current file and the playlist of one folder, under the folder's path.
struct FolderEntry {
    QString cpath;
    QString laccs;
    QStringList lurls;

    QVariantMap toVariantMap() const;
    static FolderEntry fromVariantMap(const QVariantMap &map);
};

// "ttfolder": the folder entries beside the two fixed entries "QZRrcfdpath"
// (the folder written last) and "QZRrcplist1" (its playlist).
struct TtFolderDic {
    QMap<QString, FolderEntry> folders;
    QString QZRrcfdpath;
    QStringList QZRrcplist1;

    QVariantMap toVariantMap() const;
    static TtFolderDic fromVariantMap(const QVariantMap &map);
};

// "QZRTotalFdFlsData".
struct TotalFdFlsData {
    QMap<QString, FileEntry> ttfile;
    TtFolderDic ttfolder;

    QVariantMap toVariantMap() const;
    static TotalFdFlsData fromVariantMap(const QVariantMap &map);
};

// One opened item of the recent record.
struct RecentURLEntry {
    QByteArray bookmark;
    QString absolute;
    bool writable = false;

    QVariantMap toVariantMap() const;
    static RecentURLEntry fromVariantMap(const QVariantMap &map);
};

// "rcfolder", "rcsubtitle", "rcvideo": {"lurls": [entry, ...]}.
struct RecentURLGroup {
    QList<RecentURLEntry> lurls;

    QVariantMap toVariantMap() const;
    static RecentURLGroup fromVariantMap(const QVariantMap &map);
};

// "QZRRecentFdFlsData".
struct RecentFdFlsData {
    RecentURLGroup rcfolder;
    RecentURLGroup rcsubtitle;
    RecentURLGroup rcvideo;
    int rcplist0idx = 0;

    QVariantMap toVariantMap() const;
    static RecentFdFlsData fromVariantMap(const QVariantMap &map);
};

// The "laccs" form "yyyy-MM-dd HH:mm:ss.mmm" in local time; strings of this
// form sort in time order, which the eviction relies on.
QString laccsStringFromDateTime(const QDateTime &dateTime);
QString laccsStringForNow();

inline constexpr qsizetype kFileEntriesEvictionTrigger = 8001;
inline constexpr qsizetype kFileEntriesKeptBelow = 4001;
inline constexpr qsizetype kFolderEntriesEvictionTrigger = 5001;
inline constexpr qsizetype kFolderEntriesKeptBelow = 2501;

// When `entries` holds `trigger` entries or more, removes the least recently
// accessed ones, oldest first, until fewer than `keptBelow` are left in the
// walk. Entries sharing one "laccs" share one place in the walk: only the
// later of them can be removed in that pass (accepted: it takes two writes in
// one millisecond).
template <typename Entry>
void evictLeastRecentlyAccessedEntries(QMap<QString, Entry> &entries, qsizetype trigger,
                                       qsizetype keptBelow) {
    if (entries.size() < trigger) {
        return;
    }
    QMap<QString, QString> pathByLaccs;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        pathByLaccs.insert(entry->laccs, entry.key());
    }
    const qsizetype walked = pathByLaccs.size();
    QStringList evicted;
    qsizetype position = 0;
    for (auto oldest = pathByLaccs.cbegin(); oldest != pathByLaccs.cend(); ++oldest, ++position) {
        evicted.append(oldest.value());
        if (walked - position < keptBelow) {
            break;
        }
    }
    for (const QString &path : evicted) {
        entries.remove(path);
    }
}

}  // namespace tolvane
