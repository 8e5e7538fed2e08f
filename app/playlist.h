#pragma once

#include <QList>
#include <QUrl>

#include "subtitles/carry_over_forms.h"

namespace tolvane {

// The audio index that means "no track chosen", and the stored position that
// means "start from the beginning next time".
inline constexpr int kNoAudioTrackChosen = -100;
inline constexpr double kStartFromBeginningTimeSec = -100.0;

// One row of the playlist: the item and its played state, the columns that
// the controller keeps as playList, playTime, playAudio, playSubtitle,
// playDelay, playDone and playSize.
struct PlaylistItem {
    QUrl url;
    double playTime = 0.0;
    int playAudio = kNoAudioTrackChosen;
    QStringList playSubtitle;
    SubtitleDelayDic playDelay;
    bool playDone = false;
    quint64 playSize = 0;
    // A Blu-ray stream file far smaller than the disc's largest (a menu, a
    // trailer, a logo): the original's "!" in playSize. Listed, but previous
    // and next step over it.
    bool isSkipped = false;
};

// The state of the item to load now, restored into the player after a load.
struct ReOpenFields {
    QUrl reOpenURL;
    double reOpenCTimeSec = 0.0;
    int reOpenAudioIdx = kNoAudioTrackChosen;
    QStringList reOpenSubtitleIdxs;
    SubtitleDelayDic reOpenDelayDic;
    bool reOpenDone = false;
};

// The playlist in play order, the index of the current item and the reopen
// fields. Owned by the controller; used from the main thread only.
struct Playlist {
    QList<PlaylistItem> playList;
    int indexPlay = 0;
    ReOpenFields reOpen;

    bool isEmpty() const { return playList.isEmpty(); }
    bool hasCurrentItem() const { return !playList.isEmpty() && !reOpen.reOpenURL.isEmpty(); }
    // The items' file paths, the form the records and the probe keep.
    QStringList playListPaths() const;

    // Empties the rows before a builder fills them.
    void cleanAndAllocPlayBeforeRestoring();
    // Makes `index` current and copies its row into the reopen fields.
    void loadReOpenFieldsFromItemAtIndex(int index);
};

}  // namespace tolvane
