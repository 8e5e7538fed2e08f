#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <QUrl>

#include "app/files_folders_opening.h"
#include "app/opened_items.h"
#include "app/played_state_records.h"
#include "app/playlist.h"
#include "app/playlist_builder.h"
#include "probe_commands.h"

namespace tolvane::probe {
namespace {

// The probe shows what a first opening builds; it never offers more files.
class DeclineMoreFiles final : public MoreFilesQuestion {
public:
    bool askToAddMoreFiles(int) override { return false; }
};

}  // namespace

int runPlaylistCommand(const QStringList &arguments) {
    QStringList paths = arguments;
    QUrl whereURL;
    if (paths.size() >= 2 && paths.first() == QLatin1String("--where")) {
        paths.removeFirst();
        whereURL = QUrl::fromLocalFile(QFileInfo(paths.takeFirst()).absoluteFilePath());
    }
    if (paths.isEmpty()) {
        QTextStream(stderr) << "usage: tolvane-probe playlist [--where DIR] PATH...\n";
        return 2;
    }
    // Build with a memory of its own, so that the user's records are neither
    // read nor written.
    const QTemporaryDir privateSettings;
    if (!privateSettings.isValid()) {
        QTextStream(stderr) << "tolvane-probe: no temporary folder for the settings\n";
        return 1;
    }
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(privateSettings.path()));

    Playlist playlist;
    OpenedItems openedItems;
    openedItems.whereURL = whereURL;
    openedItems.whereAbsoluteURL = whereURL;
    DeclineMoreFiles question;
    PlaylistBuilder builder(playlist, openedItems, question);
    PlayedStateRecords records(playlist, openedItems);
    FilesFoldersOpening opening(playlist, openedItems, builder, records);
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    }
    opening.finallyOpenFilesFolders(urls);

    printJson(QVariantMap{
        {QStringLiteral("playList"), playlist.playListPaths()},
        {QStringLiteral("titles"), openedItems.openedListTitles},
        {QStringLiteral("isFolder"), PlayedStateRecords::getSavedRecentIsFolder()},
    });
    return 0;
}

}  // namespace tolvane::probe
