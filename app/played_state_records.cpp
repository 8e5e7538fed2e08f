#include "played_state_records.h"

#include <QCborValue>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStorageInfo>
#include <stdexcept>

#include "base/log.h"
#include "base/named_mutex.h"
#include "base/operation_boundary.h"
#include "bookmarks.h"
#include "media_file_kinds.h"
#include "opened_items.h"
#include "playlist.h"
#include "user_defaults.h"

namespace tolvane {
namespace {

constexpr const char *kTotalFdFlsDataKey = "QZRTotalFdFlsData";
constexpr const char *kRecentFdFlsDataKey = "QZRRecentFdFlsData";
constexpr const char *kRecentIsFolderKey = "QZRRecentIsFolder";

QByteArray storedRecordData(const char *key) {
    return openTolvaneSettings()->value(QLatin1String(key)).toByteArray();
}

// Copies a damaged record into a file of its own beside the settings. Each
// damage gets a new name, so a later one never replaces an earlier copy.
// Throws when no copy could be made: the record must then stay where it is.
void setAsideDamagedRecord(const char *key, const QByteArray &data, const QString &reason) {
    const QFileInfo settingsFile(openTolvaneSettings()->fileName());
    QDir().mkpath(settingsFile.path());
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString path =
            QStringLiteral("%1/%2.%3.%4%5.damaged")
                .arg(settingsFile.path(), settingsFile.completeBaseName(), QLatin1String(key),
                     stamp, attempt == 0 ? QString() : QStringLiteral("-%1").arg(attempt));
        QFile copy(path);
        if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (copy.exists()) {
                continue;
            }
            break;
        }
        if (copy.write(data) != data.size() || !copy.flush()) {
            copy.remove();
            break;
        }
        logWarning(QStringLiteral("The record \"%1\" is unreadable (%2): it was kept in %3 and "
                                  "starts again empty")
                       .arg(QLatin1String(key), reason, path));
        return;
    }
    throw std::runtime_error("a damaged record could not be set aside");
}

// Reads the record under `key`. A value that is not a CBOR map is damage: it
// is set aside and removed, so that it reads as empty from then on and the
// next save cannot destroy the only copy.
QVariantMap readRecordSettingAsideDamage(const char *key, const QByteArray &data) {
    if (data.isEmpty()) {
        return {};
    }
    // A damaged value must not be converted at all: Qt's conversion of a
    // partly decoded value can crash.
    QCborParserError error;
    const QCborValue record = QCborValue::fromCbor(data, &error);
    if (error.error == QCborError::NoError && record.isMap()) {
        return record.toVariant().toMap();
    }
    setAsideDamagedRecord(key, data,
                          error.error != QCborError::NoError ? error.errorString()
                                                             : QStringLiteral("not a dictionary"));
    const auto settings = openTolvaneSettings();
    settings->remove(QLatin1String(key));
    settings->sync();
    return {};
}

// Returns the bytes stored. Throws so that the caller's boundary logs the
// failure once.
QByteArray writeRecord(const char *key, const QVariantMap &record) {
    const QByteArray data = QCborValue::fromVariant(record).toCbor();
    const auto settings = openTolvaneSettings();
    settings->setValue(QLatin1String(key), data);
    settings->sync();
    if (settings->status() != QSettings::NoError) {
        throw std::runtime_error("the settings file could not be written");
    }
    return data;
}

// The played-state record last read or written, with the bytes it came from.
// Every save reads the record before writing it, and decoding megabytes of a
// full record took as long as writing it; the decoded record is reused while
// the stored bytes are the same (a write by another process changes them).
struct TotalFdFlsDataCache {
    NamedRecursiveMutex mutex{"totalFdFlsDataCache"};
    QByteArray data;       // guarded by mutex
    TotalFdFlsData total;  // guarded by mutex
};

TotalFdFlsDataCache &totalFdFlsDataCache() {
    static TotalFdFlsDataCache cache;
    return cache;
}

QString folderPathOfFile(const QString &filePath) { return QFileInfo(filePath).path(); }

// The size the file had when the playlist was built: the state being saved
// belongs to that file, even if another one has replaced it on disk since.
quint64 sizeOfCurrentFileWhenLoaded(const Playlist &playlist) {
    const QUrl &current = playlist.reOpen.reOpenURL;
    if (playlist.indexPlay >= 0 && playlist.indexPlay < playlist.playList.size()) {
        const PlaylistItem &item = playlist.playList[playlist.indexPlay];
        if (item.url == current) {
            return item.playSize;
        }
    }
    return currentFileSizeOfURL(current);
}

RecentURLGroup recentGroupFromURLs(const QList<QUrl> &urls) {
    RecentURLGroup group;
    for (const QUrl &url : urls) {
        group.lurls.append(PlayedStateRecords::recentURLEntryFromURL(
            url, PlayedStateRecords::isOnWritableDisk(url)));
    }
    return group;
}

// Records written before every item kept its bookmark hold the path alone.
std::optional<QUrl> resolvedURLOfEntry(const RecentURLEntry &entry) {
    if (std::optional<QUrl> url = resolvedURLFromBookmarkData(entry.bookmark)) {
        return url;
    }
    const QUrl absolute(entry.absolute);
    if (entry.bookmark.isEmpty() && absolute.isLocalFile() &&
        QFileInfo::exists(absolute.toLocalFile())) {
        return absolute;
    }
    return std::nullopt;
}

QList<QUrl> resolvedURLsOfGroup(const RecentURLGroup &group) {
    QList<QUrl> urls;
    for (const RecentURLEntry &entry : group.lurls) {
        if (const std::optional<QUrl> url = resolvedURLOfEntry(entry)) {
            urls.append(*url);
        }
    }
    return urls;
}

}  // namespace

PlayedStateRecords::PlayedStateRecords(const Playlist &playlist_, OpenedItems &openedItems_)
    : playlist(playlist_), openedItems(openedItems_) {}

void PlayedStateRecords::saveTotalFdFlsData(const QString &mode) {
    if (!playlist.hasCurrentItem()) {
        return;
    }
    runAtOperationBoundary("stffd", [&] {
        TotalFdFlsData total = readTotalFdFlsDataForSaving();
        total.ttfolder = newDicFromTtFolderDic(total.ttfolder, mode);
        total.ttfile = newDicFromTtFileDic(total.ttfile);
        storeTotalFdFlsData(total);
    });
}

QMap<QString, FileEntry> PlayedStateRecords::newDicFromTtFileDic(
    const QMap<QString, FileEntry> &ttfile) const {
    QMap<QString, FileEntry> files = ttfile;
    if (!playlist.hasCurrentItem()) {
        return files;
    }
    evictLeastRecentlyAccessedEntries(files, kFileEntriesEvictionTrigger, kFileEntriesKeptBelow);
    const ReOpenFields &current = playlist.reOpen;
    FileEntry entry;
    entry.fsize = sizeOfCurrentFileWhenLoaded(playlist);
    entry.laccs = laccsStringForNow();
    entry.ctime = current.reOpenCTimeSec;
    entry.caudio = current.reOpenAudioIdx;
    entry.csubtitleidxs = current.reOpenSubtitleIdxs;
    entry.cdelaydic = current.reOpenDelayDic;
    entry.cdone = current.reOpenDone;
    files.insert(current.reOpenURL.toLocalFile(), entry);
    return files;
}

TtFolderDic PlayedStateRecords::newDicFromTtFolderDic(const TtFolderDic &ttfolder,
                                                      const QString &mode) const {
    TtFolderDic folders = ttfolder;
    evictLeastRecentlyAccessedEntries(folders.folders, kFolderEntriesEvictionTrigger,
                                      kFolderEntriesKeptBelow);
    const bool isFolderMode = mode == QLatin1String("folder") ||
                              (mode == QLatin1String("auto") && getSavedRecentIsFolder());
    if (!isFolderMode || !playlist.hasCurrentItem()) {
        return folders;
    }
    const QString currentPath = playlist.reOpen.reOpenURL.toLocalFile();
    const QString folderPath = folderPathOfFile(currentPath);
    FolderEntry entry;
    entry.cpath = currentPath;
    entry.laccs = laccsStringForNow();
    entry.lurls = playlist.playListPaths();
    folders.folders.insert(folderPath, entry);
    folders.QZRrcfdpath = folderPath;
    folders.QZRrcplist1 = entry.lurls;
    return folders;
}

TotalFdFlsData PlayedStateRecords::readTotalFdFlsData() {
    try {
        return readTotalFdFlsDataForSaving();
    } catch (const std::exception &error) {
        logException("rtffd", error.what());
        return {};
    }
}

TotalFdFlsData PlayedStateRecords::readTotalFdFlsDataForSaving() {
    const QByteArray data = storedRecordData(kTotalFdFlsDataKey);
    TotalFdFlsDataCache &cache = totalFdFlsDataCache();
    const NamedLockGuard guard(cache.mutex);
    if (data.isEmpty() || data != cache.data) {
        cache.total =
            TotalFdFlsData::fromVariantMap(readRecordSettingAsideDamage(kTotalFdFlsDataKey, data));
        cache.data = data;
    }
    return cache.total;
}

void PlayedStateRecords::storeTotalFdFlsData(const TotalFdFlsData &totalFdFlsDic) {
    const QByteArray data = writeRecord(kTotalFdFlsDataKey, totalFdFlsDic.toVariantMap());
    TotalFdFlsDataCache &cache = totalFdFlsDataCache();
    const NamedLockGuard guard(cache.mutex);
    cache.data = data;
    cache.total = totalFdFlsDic;
}

std::optional<FileEntry> PlayedStateRecords::getSavedEachFileDicFromURL(
    const QUrl &url, const TotalFdFlsData &totalFdFlsDic) {
    const auto found = totalFdFlsDic.ttfile.constFind(url.toLocalFile());
    if (found == totalFdFlsDic.ttfile.cend()) {
        return std::nullopt;
    }
    return *found;
}

std::optional<FolderEntry> PlayedStateRecords::getSavedEachFolderDicFromURL(
    const QUrl &folderURL, const TotalFdFlsData &totalFdFlsDic) {
    const auto found = totalFdFlsDic.ttfolder.folders.constFind(folderURL.toLocalFile());
    if (found == totalFdFlsDic.ttfolder.folders.cend()) {
        return std::nullopt;
    }
    return *found;
}

FileEntry PlayedStateRecords::getResetEachFileDicFromURL(const QUrl &url,
                                                         const TotalFdFlsData &totalFdFlsDic) {
    const quint64 currentSize = currentFileSizeOfURL(url);
    if (std::optional<FileEntry> saved = getSavedEachFileDicFromURL(url, totalFdFlsDic);
        saved && saved->fsize == currentSize) {
        return *saved;
    }
    FileEntry fresh;
    fresh.fsize = currentSize;
    fresh.laccs = laccsStringForNow();
    return fresh;
}

QString PlayedStateRecords::getSavedRecentFolderPathFromTotalFdFlsDic(
    const TotalFdFlsData &totalFdFlsDic) {
    return totalFdFlsDic.ttfolder.QZRrcfdpath;
}

QStringList PlayedStateRecords::getSavedRecentPList1DicFromTotalFdFlsDic(
    const TotalFdFlsData &totalFdFlsDic) {
    return totalFdFlsDic.ttfolder.QZRrcplist1;
}

void PlayedStateRecords::saveRecentFdFlsData(const QString &part) {
    runAtOperationBoundary("srffd", [&] {
        RecentFdFlsData recent = readRecentFdFlsDataForSaving();
        const bool isAll = part == QLatin1String("all");
        if (isAll || part == QLatin1String("folder")) {
            recent.rcfolder = newDicFromRcFolderDic();
        }
        if (isAll || part == QLatin1String("subtitle")) {
            recent.rcsubtitle = newDicFromRcSubtitleDic();
        }
        if (isAll || part == QLatin1String("video")) {
            recent.rcvideo = newDicFromRcVideoDic();
        }
        if (isAll || part == QLatin1String("index")) {
            recent.rcplist0idx = openedItems.indexList;
        }
        writeRecord(kRecentFdFlsDataKey, recent.toVariantMap());
    });
}

RecentURLGroup PlayedStateRecords::newDicFromRcFolderDic() const {
    return recentGroupFromURLs(openedItems.openedFolderURLs);
}

RecentURLGroup PlayedStateRecords::newDicFromRcSubtitleDic() const {
    return recentGroupFromURLs(openedItems.openedSubtitleFileURLs);
}

RecentURLGroup PlayedStateRecords::newDicFromRcVideoDic() const {
    return recentGroupFromURLs(openedItems.openedVideoFileURLs);
}

RecentFdFlsData PlayedStateRecords::readRecentFdFlsData() {
    try {
        return readRecentFdFlsDataForSaving();
    } catch (const std::exception &error) {
        logException("rrffd", error.what());
        return {};
    }
}

RecentFdFlsData PlayedStateRecords::readRecentFdFlsDataForSaving() {
    return RecentFdFlsData::fromVariantMap(
        readRecordSettingAsideDamage(kRecentFdFlsDataKey, storedRecordData(kRecentFdFlsDataKey)));
}

RecentURLGroup PlayedStateRecords::getSavedRecentFolderDicFromRecentFdFlsDic(
    const RecentFdFlsData &recent) {
    return recent.rcfolder;
}

RecentURLGroup PlayedStateRecords::getSavedRecentSubtitleDicFromRecentFdFlsDic(
    const RecentFdFlsData &recent) {
    return recent.rcsubtitle;
}

RecentURLGroup PlayedStateRecords::getSavedRecentVideoDicFromRecentFdFlsDic(
    const RecentFdFlsData &recent) {
    return recent.rcvideo;
}

int PlayedStateRecords::getSavedRecentPList0IndexFromRecentFdFlsDic(const RecentFdFlsData &recent) {
    return recent.rcplist0idx;
}

RecentURLEntry PlayedStateRecords::recentURLEntryFromURL(const QUrl &url, bool writable) {
    RecentURLEntry entry;
    entry.absolute = url.toString();
    entry.writable = writable;
    entry.bookmark = bookmarkDataFromURL(url);
    return entry;
}

bool PlayedStateRecords::isOnWritableDisk(const QUrl &url) {
    const QFileInfo file(url.toLocalFile());
    const QStorageInfo storage(file.absoluteFilePath());
    if (storage.isValid() && storage.isReadOnly()) {
        return false;
    }
    // A missing file is not judged: its disk may simply be elsewhere now.
    return !file.exists() || (file.isWritable() && QFileInfo(file.absolutePath()).isWritable());
}

QList<QUrl> PlayedStateRecords::getSavedRecentVideosOnNotWritableDisk(
    const RecentFdFlsData &recent) {
    QList<QUrl> urls;
    for (const RecentURLEntry &entry : recent.rcvideo.lurls) {
        const std::optional<QUrl> resolved = resolvedURLOfEntry(entry);
        const QUrl url = resolved.value_or(QUrl(entry.absolute));
        if (url.isLocalFile() && (!entry.writable || !isOnWritableDisk(url))) {
            urls.append(url);
        }
    }
    return urls;
}

void PlayedStateRecords::loadRecentFdFlsData() {
    const RecentFdFlsData recent = readRecentFdFlsData();
    openedItems.openedFolderURLs = resolvedURLsOfGroup(recent.rcfolder);
    openedItems.openedSubtitleFileURLs = resolvedURLsOfGroup(recent.rcsubtitle);
    openedItems.openedVideoFileURLs = resolvedURLsOfGroup(recent.rcvideo);
    openedItems.indexList = recent.rcplist0idx;
}

void PlayedStateRecords::saveRecentIsFolder(bool isFolder) {
    const auto settings = openTolvaneSettings();
    settings->setValue(QLatin1String(kRecentIsFolderKey), isFolder);
    settings->sync();
}

bool PlayedStateRecords::getSavedRecentIsFolder() {
    return openTolvaneSettings()->value(QLatin1String(kRecentIsFolderKey), false).toBool();
}

}  // namespace tolvane
