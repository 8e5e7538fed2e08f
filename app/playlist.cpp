#include "playlist.h"

namespace tolvane {

QStringList Playlist::playListPaths() const {
    QStringList paths;
    paths.reserve(playList.size());
    for (const PlaylistItem &item : playList) {
        paths.append(item.url.toLocalFile());
    }
    return paths;
}

void Playlist::cleanAndAllocPlayBeforeRestoring() {
    playList.clear();
    indexPlay = 0;
}

void Playlist::loadReOpenFieldsFromItemAtIndex(int index) {
    if (index < 0 || index >= playList.size()) {
        return;
    }
    indexPlay = index;
    const PlaylistItem &item = playList[index];
    reOpen.reOpenURL = item.url;
    reOpen.reOpenCTimeSec = item.playTime;
    reOpen.reOpenAudioIdx = item.playAudio;
    reOpen.reOpenSubtitleIdxs = item.playSubtitle;
    reOpen.reOpenDelayDic = item.playDelay;
    reOpen.reOpenDone = item.playDone;
}

}  // namespace tolvane
