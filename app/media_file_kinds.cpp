#include "media_file_kinds.h"

#include <QDir>
#include <QFileInfo>
#include <array>

namespace tolvane {
namespace {

constexpr std::array<const char *, 12> kVideoFileExtensions = {
    "mov", "mp4", "m4v", "avi", "mkv", "flv", "wmv", "rmvb", "m2ts", "ts", "tp", "trp"};
constexpr std::array<const char *, 5> kNativeModeFileExtensions = {"mov", "mp4", "m4v", "avi",
                                                                   "m2ts"};
constexpr std::array<const char *, 2> kSubtitleFileExtensions = {"smi", "srt"};
constexpr const char *kBlurayStreamFolder = "/BDMV/STREAM";

template <std::size_t N>
bool isInExtensionList(const std::array<const char *, N> &list, const QString &extension) {
    const QString lowered = extension.toLower();
    for (const char *candidate : list) {
        if (lowered == QLatin1String(candidate)) {
            return true;
        }
    }
    return false;
}

QString extensionOfURL(const QUrl &url) { return QFileInfo(url.toLocalFile()).suffix(); }

}  // namespace

bool isVideoFileExtension(const QString &extension) {
    return isInExtensionList(kVideoFileExtensions, extension);
}

bool isNativeModeFileExtension(const QString &extension) {
    return isInExtensionList(kNativeModeFileExtensions, extension);
}

bool isSubtitleFileExtension(const QString &extension) {
    return isInExtensionList(kSubtitleFileExtensions, extension);
}

bool isVideoFileURL(const QUrl &url) { return isVideoFileExtension(extensionOfURL(url)); }

bool isSubtitleFileURL(const QUrl &url) { return isSubtitleFileExtension(extensionOfURL(url)); }

bool isDirectoryURL(const QUrl &url) {
    return url.isLocalFile() && QFileInfo(url.toLocalFile()).isDir();
}

bool isExistingURL(const QUrl &url) {
    return url.isLocalFile() && QFileInfo::exists(url.toLocalFile());
}

QString canonicalPathOfURL(const QUrl &url) {
    if (!url.isLocalFile()) {
        return {};
    }
    const QFileInfo info(url.toLocalFile());
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

QUrl canonicalURL(const QUrl &url) {
    const QString path = canonicalPathOfURL(url);
    return path.isEmpty() ? QUrl() : QUrl::fromLocalFile(path);
}

QUrl blurayStreamFolderURL(const QUrl &folderURL) {
    return QUrl::fromLocalFile(folderURL.toLocalFile() + QLatin1String(kBlurayStreamFolder));
}

bool isBlurayFolderStructure(const QUrl &folderURL) {
    return folderURL.isLocalFile() &&
           QFileInfo(blurayStreamFolderURL(folderURL).toLocalFile()).isDir();
}

quint64 currentFileSizeOfURL(const QUrl &url) {
    const QFileInfo info(url.toLocalFile());
    return info.isFile() ? quint64(info.size()) : 0;
}

}  // namespace tolvane
