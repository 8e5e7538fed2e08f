#include "bookmarks.h"

#include <sys/xattr.h>

#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "media_file_kinds.h"

namespace tolvane {
namespace {

constexpr const char *kPathKey = "path";
constexpr const char *kPortalPathKey = "portal";
constexpr const char *kWhereAbsoluteKey = "absolute";
constexpr const char *kWhereBookmarkKey = "bookmark";
// Set by the document portal's FUSE file system on every exported document.
constexpr const char *kPortalHostPathAttribute = "user.document-portal.host-path";

bool isRunningInFlatpak() { return QFileInfo::exists(QStringLiteral("/.flatpak-info")); }

bool isInsideDocumentPortal(const QString &path) {
    const QString runtimeFolder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return (!runtimeFolder.isEmpty() && path.startsWith(runtimeFolder + QStringLiteral("/doc/"))) ||
           path.startsWith(QStringLiteral("/run/flatpak/doc/"));
}

QString hostPathOfPortalDocument(const QString &portalPath) {
    QByteArray hostPath(4096, '\0');
    const ssize_t length =
        getxattr(QFile::encodeName(portalPath).constData(), kPortalHostPathAttribute,
                 hostPath.data(), std::size_t(hostPath.size()));
    if (length <= 0) {
        return {};
    }
    hostPath.truncate(length);
    return QFile::decodeName(hostPath);
}

}  // namespace

QByteArray bookmarkDataFromURL(const QUrl &url) {
    if (url.isEmpty() || !isExistingURL(url)) {
        return {};
    }
    const QString canonicalPath = canonicalPathOfURL(url);
    QCborMap record;
    record.insert(QLatin1String(kPathKey), canonicalPath);
    if (isRunningInFlatpak() && isInsideDocumentPortal(canonicalPath)) {
        record.insert(QLatin1String(kPortalPathKey), canonicalPath);
        const QString hostPath = hostPathOfPortalDocument(canonicalPath);
        if (!hostPath.isEmpty()) {
            record.insert(QLatin1String(kPathKey), hostPath);
        }
    }
    return record.toCborValue().toCbor();
}

std::optional<QUrl> resolvedURLFromBookmarkData(const QByteArray &bookmarkData) {
    if (bookmarkData.isEmpty()) {
        return std::nullopt;
    }
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(bookmarkData, &error);
    if (error.error != QCborError::NoError || !value.isMap()) {
        return std::nullopt;
    }
    const QCborMap record = value.toMap();
    for (const char *key : {kPortalPathKey, kPathKey}) {
        const QString path = record.value(QLatin1String(key)).toString();
        if (!path.isEmpty() && QDir::isAbsolutePath(path) && QFileInfo::exists(path)) {
            return QUrl::fromLocalFile(path);
        }
    }
    return std::nullopt;
}

QByteArray whereURLDataFromFolderURL(const QUrl &folderURL) {
    if (folderURL.isEmpty()) {
        return {};
    }
    QCborMap record;
    record.insert(QLatin1String(kWhereAbsoluteKey), folderURL.toString());
    record.insert(QLatin1String(kWhereBookmarkKey), bookmarkDataFromURL(folderURL));
    return record.toCborValue().toCbor();
}

WhereFolder whereFolderFromWhereURLData(const QByteArray &whereURLData) {
    WhereFolder folder;
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(whereURLData, &error);
    if (whereURLData.isEmpty() || error.error != QCborError::NoError || !value.isMap()) {
        return folder;
    }
    const QCborMap record = value.toMap();
    folder.whereAbsoluteURL = QUrl(record.value(QLatin1String(kWhereAbsoluteKey)).toString());
    folder.whereURL =
        resolvedURLFromBookmarkData(record.value(QLatin1String(kWhereBookmarkKey)).toByteArray())
            .value_or(QUrl());
    return folder;
}

}  // namespace tolvane
