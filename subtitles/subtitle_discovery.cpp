#include "subtitle_discovery.h"

#include <QDir>
#include <QFileInfo>

namespace tolvane {

namespace {

constexpr const char *kChosenFolderSubfolder = "/Tolvane";

// Tries the plain and then the asterisk name of `stem` in `folder`. Names are
// matched without regard to case, as on the file systems these captions come
// from; files whose names differ only in case are all taken, in code-point
// order of their names, so the order does not depend on the directory.
void addExistingCandidates(const QString &folder, const QString &stem, const QString &type,
                           const QString &ptype, std::vector<FoundSubtitleFile> &found) {
    const QString names[] = {QStringLiteral("%1.%2").arg(stem, type),
                             QStringLiteral("%1*.%2").arg(stem, type)};
    const QString ptypes[] = {ptype, ptype + QLatin1Char('*')};
    const QDir directory(folder);
    const QStringList entries =
        directory.entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Unsorted);
    for (int i = 0; i < 2; ++i) {
        QStringList matching;
        for (const QString &entry : entries) {
            if (entry.size() == names[i].size() &&
                entry.compare(names[i], Qt::CaseInsensitive) == 0) {
                matching.append(entry);
            }
        }
        matching.sort(Qt::CaseSensitive);
        for (const QString &name : matching) {
            const QFileInfo candidate(directory.filePath(name));
            if (candidate.isFile()) {
                found.push_back({candidate.canonicalFilePath(), ptypes[i]});
            }
        }
    }
}

}  // namespace

QString discTitleInPath(const QString &path) {
    const QStringList components =
        QDir::cleanPath(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const qsizetype bdmvAt = components.indexOf(QStringLiteral("BDMV"));
    return bdmvAt > 0 ? components[bdmvAt - 1] : QString();
}

std::vector<FoundSubtitleFile> realSubtitleURL(const QString &videoPath, const QString &type,
                                               bool bdmv, const QString &whereFolder) {
    std::vector<FoundSubtitleFile> found;
    const QFileInfo video(videoPath);
    addExistingCandidates(video.absolutePath(), video.completeBaseName(), type, QStringLiteral("v"),
                          found);
    if (!found.empty() || whereFolder.isEmpty()) {
        return found;
    }
    const QString chosen = QDir(whereFolder).absolutePath() + QLatin1String(kChosenFolderSubfolder);
    addExistingCandidates(chosen, video.completeBaseName(), type, QStringLiteral("k"), found);
    if (!found.empty() || !bdmv) {
        return found;
    }
    const QString title = discTitleInPath(video.absoluteFilePath());
    if (!title.isEmpty()) {
        addExistingCandidates(chosen, title, type, QStringLiteral("b"), found);
    }
    return found;
}

}  // namespace tolvane
