#pragma once

#include <QList>
#include <QUrl>
#include <optional>

namespace tolvane {

class OpenedItems;
class PlayedStateRecords;
class PlaylistBuilder;
struct Playlist;

// What an open came to, for the interface to finish it.
enum class OpeningOutcome {
    nothingToOpen,   // no video, folder or new subtitle among the items
    subtitlesAdded,  // only subtitles, added to a loaded playlist: reapply the text encoding
    playlistBuilt,   // load the current item (reOpenURL)
    emptyPlaylist,   // the builder found nothing playable
};

// The sorting and building part of finallyOpenFilesFolders: items sorted into
// videos, subtitles and folders, a new opened list, the playlist built (an
// episode brings its series, a folder its videos), and the records saved. The loading circle,
// the engine and the table stay with the interface.
// Thread-safety: main thread only.
class FilesFoldersOpening {
public:
    FilesFoldersOpening(Playlist &playlist, OpenedItems &openedItems, PlaylistBuilder &builder,
                        PlayedStateRecords &records);

    // `positionOfPlayingFileSec`: where the file being played stopped, when one
    // was playing; it is stored for that file before the new playlist replaces it.
    OpeningOutcome finallyOpenFilesFolders(const QList<QUrl> &urls,
                                           std::optional<double> positionOfPlayingFileSec = {});

    // The opening part of reOpenFile after a restart: restores the opened
    // lists from the recent record and rebuilds the playlist with the reopen
    // builder of the last open's kind (the folder at the chooser's index, or
    // the files), which may offer files that appeared since.
    OpeningOutcome reOpenFromRecentRecord();

private:
    Playlist &playlist;
    OpenedItems &openedItems;
    PlaylistBuilder &builder;
    PlayedStateRecords &records;
};

}  // namespace tolvane
