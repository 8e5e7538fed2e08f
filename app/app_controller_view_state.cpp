// What the views show: playlist rows, counts, transport state, the caption
// clock, the recent item, and the companion windows.

#include <QFileInfo>
#include <cmath>

#include "app/app_controller.h"
#include "app/opened_items.h"
#include "app/played_state_records.h"
#include "app/playlist_durations.h"
#include "app/series.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

QList<PlaylistRow> AppController::playlistRows() const {
    NamedLockGuard lock(displayCellMutex);
    QList<PlaylistRow> rows;
    const QList<PlaylistItem> &items = playlistState.playList;
    for (int i = 0; i < items.size(); ++i) {
        const PlaylistItem &item = items[i];
        PlaylistRow row;
        row.displayName = realFileNameStringWhetherBDMV(item.url);
        row.isCurrent = i == playlistState.indexPlay;
        row.isSkipped = item.isSkipped;
        row.isDone =
            row.isCurrent ? playlistState.reOpen.reOpenDone || item.playDone : item.playDone;
        if (row.isCurrent && currentPlayPercentage >= 0.0) {
            row.playedFraction = currentPlayPercentage;
        } else if (!row.isDone && item.playTime > 0.0) {
            // Until its duration is read the row shows no fraction.
            const double duration =
                playlistDurations->durationSecOf(item.url.toLocalFile()).value_or(-1.0);
            row.playedFraction =
                duration > 0.0 ? std::clamp(item.playTime / duration, 0.0, 1.0) : 0.0;
        }
        rows.append(row);
    }
    return rows;
}

QString AppController::playlistCountText() const {
    return localizedString("ITEMS").arg(playlistState.playList.size());
}

TransportState AppController::transportState() const {
    TransportState state;
    const qsizetype count = playlistState.playList.size();
    state.volume = volumeSliderValue;
    state.isPrevFileEnabled = state.isNextFileEnabled = count >= 2;
    state.playlistLabel = count >= 2
                              ? QStringLiteral("%1/%2").arg(playlistState.indexPlay + 1).arg(count)
                              : QStringLiteral(" ");
    if (shownPictureMode == PictureMode::ffmpeg && myGLLayer->isAlsoHaveMovie()) {
        state.isPlaying = myGLLayer->rate() != 0.0;
        state.positionSec = std::max(myGLLayer->currentTimeSec() - myGLLayer->startTimeSec(), 0.0);
        state.durationSec = std::max(myGLLayer->fileDurationSec(), 0.0);
    } else if (shownPictureMode == PictureMode::native && services.nativePlayer) {
        state.isPlaying = services.nativePlayer->rate() != 0.0;
        state.positionSec = services.nativePlayer->currentTimeSec();
        state.durationSec = std::max(services.nativePlayer->durationSec(), 0.0);
    }
    state.isPlayEnabled = state.isCaptionEnabled = shownPictureMode != PictureMode::none;
    state.currentTimeText = representHMSfromSEC(state.positionSec);
    state.durationText = representHMSfromSEC(state.durationSec);
    return state;
}

qint32 AppController::playbackTimeMsec() const {
    double positionSec = 0.0;
    if (shownPictureMode == PictureMode::ffmpeg) {
        positionSec = myGLLayer->currentTimeSec() - myGLLayer->startTimeSec();
    } else if (shownPictureMode == PictureMode::native && services.nativePlayer) {
        positionSec = services.nativePlayer->currentTimeSec();
    }
    return qint32(std::lround(std::max(positionSec, 0.0) * 1000.0));
}

bool AppController::hasRecentItem() const {
    const RecentFdFlsData recent = PlayedStateRecords::readRecentFdFlsData();
    return !recent.rcvideo.lurls.isEmpty() || !recent.rcfolder.lurls.isEmpty();
}

QString AppController::recentItemTitle() const {
    const RecentFdFlsData recent = PlayedStateRecords::readRecentFdFlsData();
    if (PlayedStateRecords::getSavedRecentIsFolder() && !recent.rcfolder.lurls.isEmpty()) {
        return QUrl(recent.rcfolder.lurls.first().absolute).fileName();
    }
    if (!recent.rcvideo.lurls.isEmpty()) {
        return OpenedItems::titleForFiles(QUrl(recent.rcvideo.lurls.first().absolute),
                                          recent.rcvideo.lurls.size());
    }
    return {};
}

void AppController::clickInspectorButton() {
    menu.isInspectorShown = !menu.isInspectorShown;
    defaults->setValue(QStringLiteral("IsShowInspector"), menu.isInspectorShown);
    Q_EMIT windowVisibilityRequested(WindowKind::inspector, menu.isInspectorShown);
    Q_EMIT menuStateChanged();
}

void AppController::clickPlaylistButton() {
    menu.isPlaylistShown = !menu.isPlaylistShown;
    defaults->setValue(QStringLiteral("IsShowPlaylist"), menu.isPlaylistShown);
    Q_EMIT windowVisibilityRequested(WindowKind::list, menu.isPlaylistShown);
    Q_EMIT menuStateChanged();
}

// A companion window closed by its own button; while quitting, its state at
// the quit is what the next launch restores.
void AppController::willCloseInspector() {
    if (willTerminateNotified || !menu.isInspectorShown) {
        return;
    }
    menu.isInspectorShown = false;
    defaults->setValue(QStringLiteral("IsShowInspector"), false);
    Q_EMIT menuStateChanged();
}

void AppController::willClosePlaylist() {
    if (willTerminateNotified || !menu.isPlaylistShown) {
        return;
    }
    menu.isPlaylistShown = false;
    defaults->setValue(QStringLiteral("IsShowPlaylist"), false);
    Q_EMIT menuStateChanged();
}

}  // namespace tolvane
