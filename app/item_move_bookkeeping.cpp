#include "item_move_bookkeeping.h"

#include "played_state_records.h"
#include "playlist.h"
#include "series.h"
#include "subtitles/carry_over_forms.h"

namespace tolvane {

double resumePositionFromStoredPosition(double storedPositionSec) {
    return storedPositionSec > kResumeRewindSec ? storedPositionSec - kResumeRewindSec
                                                : storedPositionSec;
}

ItemMoveBookkeeping::ItemMoveBookkeeping(Playlist &playlist_, PlayedStateRecords &records_)
    : playlist(playlist_), records(records_) {}

void ItemMoveBookkeeping::continueOpenFile(int indexOfItemLeft,
                                           std::optional<double> playingPositionSec) {
    const int indexOfNewItem = playlist.indexPlay;
    storeStateOfItemLeft(indexOfItemLeft, playingPositionSec);
    playlist.loadReOpenFieldsFromItemAtIndex(indexOfNewItem);
    if (carryOverToNextEpisode(indexOfItemLeft)) {
        records.saveTotalFdFlsData(QStringLiteral("auto"));
    }
    playlist.reOpen.reOpenCTimeSec =
        resumePositionFromStoredPosition(playlist.reOpen.reOpenCTimeSec);
}

void ItemMoveBookkeeping::storeStateOfItemLeft(int indexOfItemLeft,
                                               std::optional<double> playingPositionSec) {
    ReOpenFields &left = playlist.reOpen;
    if (left.reOpenCTimeSec == kStartFromBeginningTimeSec) {
        left.reOpenCTimeSec = 0.0;
    } else if (playingPositionSec) {
        left.reOpenCTimeSec = *playingPositionSec;
    }
    if (indexOfItemLeft >= 0 && indexOfItemLeft < playlist.playList.size() &&
        playlist.playList[indexOfItemLeft].url == left.reOpenURL) {
        PlaylistItem &row = playlist.playList[indexOfItemLeft];
        row.playTime = left.reOpenCTimeSec;
        row.playAudio = left.reOpenAudioIdx;
        row.playSubtitle = left.reOpenSubtitleIdxs;
        row.playDelay = left.reOpenDelayDic;
        row.playDone = left.reOpenDone;
    }
    records.saveTotalFdFlsData(QStringLiteral("auto"));
}

bool ItemMoveBookkeeping::carryOverToNextEpisode(int indexOfItemLeft) {
    const int indexOfNewItem = playlist.indexPlay;
    if (indexOfItemLeft < 0 || indexOfItemLeft >= playlist.playList.size() ||
        indexOfNewItem < indexOfItemLeft + 1 || playlist.reOpen.reOpenDone) {
        return false;
    }
    const PlaylistItem &previous = playlist.playList[indexOfItemLeft];
    ReOpenFields &next = playlist.reOpen;
    if (!isSeries(next.reOpenURL, previous.url)) {
        return false;
    }
    if (next.reOpenAudioIdx == kNoAudioTrackChosen) {
        next.reOpenAudioIdx = previous.playAudio;
    }
    if (next.reOpenSubtitleIdxs.isEmpty()) {
        next.reOpenSubtitleIdxs = cofIdxsFromReOpenSubtitleIdxs(previous.playSubtitle);
    }
    if (next.reOpenDelayDic.isEmpty()) {
        next.reOpenDelayDic = cofDicFromReOpenDelayDic(previous.playDelay);
    }
    return true;
}

}  // namespace tolvane
