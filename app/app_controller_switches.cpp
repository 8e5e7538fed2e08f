// The user's switches: decoding mode, hardware decoding, 10-bit output; the
// reset of the played state, moving watched files to the trash, the where folder.

#include <QFile>

#include "app/app_controller.h"
#include "app/bookmarks.h"
#include "app/played_state_records.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

constexpr auto kModeMessageShownFor = 1500ms;

}  // namespace

// A movie plays whose playlist was replaced by an empty one: there is no
// item to reopen it from, so no setting may force a reopen.
bool AppController::isChangeRefused() const {
    const bool hasMovie = myGLLayer->isAlsoHaveMovie() ||
                          (services.nativePlayer && services.nativePlayer->hasMedia());
    return hasMovie && playlistState.isEmpty();
}

void AppController::clickChangeDecoding() {
    runAtOperationBoundary("ccd", [this] {
        {
            NamedLockGuard lock(modeMutex);
            if (isChangeRefused()) {
                services.userInteraction->showAlert(localizedString("NOTCHANGEDEC"),
                                                    localizedString("NOTCHANGEDECCONT"));
                return;
            }
            switchDecodingModeTo(currentDecodingMode() == 0 ? 1 : 0);
        }
        reopenAfterSwitchingDecodingMode();
    });
}

void AppController::clickDecodingPUBT(int decodingPopUpItem) {
    runAtOperationBoundary("cdpubt", [this, decodingPopUpItem] {
        {
            NamedLockGuard lock(modeMutex);
            if ((decodingPopUpItem == 0) == (currentDecodingMode() == 0)) {
                return;
            }
            if (isChangeRefused()) {
                services.userInteraction->showAlert(localizedString("NOTCHANGEDEC"),
                                                    localizedString("NOTCHANGEDECCONT"));
                Q_EMIT inspectorChanged();  // the pop-up shows the stored mode again
                return;
            }
            switchDecodingModeTo(decodingPopUpItem);
        }
        reopenAfterSwitchingDecodingMode();
    });
}

// Called with modeMutex held: the setting and what shows it, nothing else.
void AppController::switchDecodingModeTo(int decodingPopUpItem) {
    Q_EMIT messageChanged({});
    countFinalForFF = 0;
    cTimeSecForFF = 0.0;
    isEndForFF = false;
    const bool isNativeMode = decodingPopUpItem == 0;
    inspector.isGPUAccCheckEnabled = !isNativeMode;
    inspector.decodingLabel = isNativeMode ? QStringLiteral("NT") : QStringLiteral("FF");
    defaults->setValue(QStringLiteral("DecodingPopUpItem"), decodingPopUpItem);
    Q_EMIT inspectorChanged();
}

void AppController::reopenAfterSwitchingDecodingMode() {
    if (playlistState.hasCurrentItem()) {
        reopenCurrentFileAtSamePosition();
    }
    showMessage(currentDecodingMode() == 0 ? QStringLiteral("Native") : QStringLiteral("FFmpeg"),
                kModeMessageShownFor);
}

void AppController::reopenCurrentFileAtSamePosition() {
    bool wasPlaying = false;
    {
        NamedLockGuard lock(movieMutex);
        if (const std::optional<double> position = playingPositionSec()) {
            playlistState.reOpen.reOpenCTimeSec = *position;
        }
        if (shownPictureMode == PictureMode::ffmpeg) {
            wasPlaying = myGLLayer->rate() != 0.0;
            myGLLayer->setRate(0.0);
        } else if (shownPictureMode == PictureMode::native) {
            wasPlaying = services.nativePlayer->rate() != 0.0;
            services.nativePlayer->setRate(0.0);
        } else {
            wasPlaying = defaults->value(QStringLiteral("AutoPlay")).toInt() == 1;
        }
    }
    isAutomaticStartPlay = wasPlaying;
    reOpenFile();
}

void AppController::clickIsGPUAccCheck(bool isOn) {
    runAtOperationBoundary("cigpuac", [this, isOn] {
        {
            NamedLockGuard lock(modeMutex);
            if (isChangeRefused()) {
                services.userInteraction->showAlert(localizedString("NOTCHANGEACC"),
                                                    localizedString("NOTCHANGEDECCONT"));
                Q_EMIT inspectorChanged();  // the check box shows the stored setting again
                return;
            }
            defaults->setValue(QStringLiteral("IsGPUAccForFF"), isOn ? 1 : 0);
        }
        if (playlistState.hasCurrentItem() && currentDecodingMode() != 0) {
            reopenCurrentFileAtSamePosition();
        }
    });
}

void AppController::clickIs10bitModeCheck(bool isOn) {
    runAtOperationBoundary("ci10bmc", [this, isOn] {
        {
            NamedLockGuard lock(modeMutex);
            if (isChangeRefused()) {
                services.userInteraction->showAlert(localizedString("NOTCHANGEACC"),
                                                    localizedString("NOTCHANGEDECCONT"));
                Q_EMIT inspectorChanged();
                return;
            }
            defaults->setValue(QStringLiteral("Is10bitModeForFF"), isOn ? 1 : 0);
        }
        if (playlistState.hasCurrentItem() && currentDecodingMode() != 0) {
            reopenCurrentFileAtSamePosition();
        }
    });
}

void AppController::clickResetPlayedStateButton() {
    if (playlistState.isEmpty()) {
        return;
    }
    const int answer = services.userInteraction->askChoice(
        localizedString("RESETPLAYED"), localizedString("RESETPLAYEDCONT"),
        {localizedString("RESET"), localizedString("CANCEL")});
    if (answer == 0) {
        resetPlayedState();
    }
}

void AppController::resetPlayedState() {
    runAtOperationBoundary("rps", [this] {
        NamedLockGuard lock(resetMutex);
        TotalFdFlsData total = PlayedStateRecords::readTotalFdFlsData();
        for (PlaylistItem &item : playlistState.playList) {
            total.ttfile.remove(item.url.toLocalFile());
            item.playTime = 0.0;
            item.playAudio = kNoAudioTrackChosen;
            item.playSubtitle.clear();
            item.playDelay.clear();
            item.playDone = false;
        }
        PlayedStateRecords::storeTotalFdFlsData(total);
        // The file playing now keeps its place and its choices until it is left.
        playlistState.reOpen.reOpenDone = false;
        refreshMoveToTrashEnabled();
        Q_EMIT playlistChanged();
    });
}

void AppController::moveToTrash() {
    runAtOperationBoundary("mtt", [this] {
        if (playlistState.reOpen.reOpenDone && playlistState.hasCurrentItem()) {
            playlistState.playList[playlistState.indexPlay].playDone = true;
        }
        const QUrl currentURL = playlistState.reOpen.reOpenURL;
        bool isCurrentTrashed = false;
        QStringList notTrashed;
        for (qsizetype i = playlistState.playList.size() - 1; i >= 0; --i) {
            const PlaylistItem &item = playlistState.playList[i];
            if (!item.playDone) {
                continue;
            }
            if (item.url == currentURL) {
                // The engine holds the file open; release it before it moves.
                cleanBeforeLoading();
            }
            QString trashedPath;
            if (!QFile::moveToTrash(item.url.toLocalFile(), &trashedPath)) {
                notTrashed.append(item.url.toLocalFile());
                continue;
            }
            isCurrentTrashed = isCurrentTrashed || item.url == currentURL;
            playlistState.playList.removeAt(i);
            if (i < playlistState.indexPlay) {
                --playlistState.indexPlay;
            }
        }
        if (!notTrashed.isEmpty()) {
            services.userInteraction->showAlert(localizedString("NOTTRASHED"),
                                                notTrashed.join(QLatin1Char('\n')));
        }
        Q_EMIT playlistChanged();
        refreshMoveToTrashEnabled();
        if (playlistState.isEmpty()) {
            playlistState.reOpen = ReOpenFields{};
            finishOpeningWithEmptyPlaylist(false);
            return;
        }
        if (isCurrentTrashed || !isAutoPlayed) {
            // The item left is gone: nothing of it is stored again.
            playlistState.indexPlay =
                std::clamp(playlistState.indexPlay, 0, int(playlistState.playList.size()) - 1);
            playlistState.loadReOpenFieldsFromItemAtIndex(playlistState.indexPlay);
            continueOpenFile();
        }
    });
}

void AppController::setWhereFolder(const QUrl &folder) {
    runAtOperationBoundary("swf", [this, &folder] {
        defaults->setValue(QStringLiteral("WhereURLData"), whereURLDataFromFolderURL(folder));
        const WhereFolder where = whereFolderFromWhereURLData(whereURLDataFromFolderURL(folder));
        openedItems.whereAbsoluteURL = where.whereAbsoluteURL;
        openedItems.whereURL = where.whereURL;
        isWhereFolderRestored = !where.whereAbsoluteURL.isEmpty();
    });
}

QUrl AppController::whereFolder() const { return openedItems.whereAbsoluteURL; }

}  // namespace tolvane
