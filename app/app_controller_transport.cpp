// The transport controls of AppController: play and pause, the seek presses
// and their coalescing, volume and mute, auto-play, previous and next file,
// the caption delay and position buttons. Main thread only.

#include <QMetaObject>
#include <algorithm>
#include <exception>

#include "app/app_controller.h"
#include "app/transport_rules.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

using std::chrono::milliseconds;

// Keyboard seeks resume a moment after the last press, so that a held key
// moves picture by picture; the time slider resumes at the next turn of the
// event loop, once the drag has delivered its value.
constexpr milliseconds kKeySeekRestoreDelay{100};
constexpr milliseconds kSliderSeekRestoreDelay{0};
constexpr milliseconds kMessageShownFor{1500};
constexpr qint32 kCaptionDelayStepMsec = 500;
constexpr double kCaptionMarginStep = 0.01;
constexpr double kCaptionMarginMaximum = 0.45;

QList<PlaylistStepItem> stepItemsOf(const Playlist &playlist) {
    QList<PlaylistStepItem> items;
    items.reserve(playlist.playList.size());
    for (const PlaylistItem &item : playlist.playList) {
        items.append({item.url.toLocalFile(), item.isSkipped});
    }
    return items;
}

}  // namespace

// The player whose pictures are shown: the mode a file was loaded in, even
// when the decoding setting has changed since.
std::unique_ptr<TransportPlayer> AppController::activeTransportPlayer() {
    NativeModePlayer *native = services.nativePlayer.get();
    if (shownPictureMode == PictureMode::native && native && native->hasMedia()) {
        return std::make_unique<NativeTransportPlayer>(*native, movieMutex);
    }
    if (shownPictureMode == PictureMode::ffmpeg && myGLLayer && myGLLayer->isAlsoHaveMovie()) {
        return std::make_unique<EngineTransportPlayer>(*myGLLayer, movieMutex);
    }
    return nullptr;
}

double AppController::finalCurrentTimeSecForFF() const {
    NamedLockGuard lock(movieMutex);
    return myGLLayer ? shownPositionSec(myGLLayer->currentTimeSec(), myGLLayer->startTimeSec())
                     : 0.0;
}

QString AppController::representHMSfromSEC(double sec) { return tolvane::representHMSfromSEC(sec); }

void AppController::clickPlayPauseButton() {
    runAtOperationBoundary("cppb", [&] {
        Q_EMIT messageChanged(QString());
        const std::unique_ptr<TransportPlayer> player = activeTransportPlayer();
        if (!player) {
            Q_EMIT transportChanged();
            reOpenFile();
            return;
        }
        if (player->rate() == 0.0) {
            if (isRewindBeforePlay(player->positionSec(), player->durationSec(), isEndForFF)) {
                player->rewind();
                Q_EMIT seeked(0.0);
            }
            isEndForFF = false;
            player->setRate(1.0);
        } else {
            player->setRate(0.0);
        }
        Q_EMIT transportChanged();
    });
}

void AppController::seekPressWith(double targetSec, milliseconds restoreDelay) {
    const std::unique_ptr<TransportPlayer> player = activeTransportPlayer();
    if (!player) {
        return;
    }
    const double durationSec = player->durationSec();
    if (seekPressRun.countPlay() == 0) {
        seekPressRunURL = playlistState.reOpen.reOpenURL;
    }
    seekPressRun.pressTo(*player, targetSec);
    iSubtitle.resetSortedIdx();
    if (durationSec > 0.0) {
        currentPlayPercentage = targetSec / durationSec;
    }
    Q_EMIT seeked(targetSec);
    Q_EMIT transportChanged();
    QTimer::singleShot(restoreDelay, this, &AppController::restorePlayRate);
}

void AppController::clickForwardMenu() {
    runAtOperationBoundary("cfm", [&] {
        if (const auto player = activeTransportPlayer()) {
            const double target = forwardTargetSec(player->positionSec(), player->durationSec());
            seekPressWith(target, kKeySeekRestoreDelay);
            showMessage(representHMSfromSEC(target), kMessageShownFor);
        }
    });
}

void AppController::clickBackwardMenu() {
    runAtOperationBoundary("cbm", [&] {
        if (const auto player = activeTransportPlayer()) {
            const double target = backwardTargetSec(player->positionSec());
            seekPressWith(target, kKeySeekRestoreDelay);
            showMessage(representHMSfromSEC(target), kMessageShownFor);
        }
    });
}

void AppController::clickSkipForwardMenu() {
    runAtOperationBoundary("csfm", [&] {
        if (const auto player = activeTransportPlayer()) {
            const double target =
                skipForwardTargetSec(player->positionSec(), player->durationSec());
            seekPressWith(target, kKeySeekRestoreDelay);
            showMessage(representHMSfromSEC(target), kMessageShownFor);
        }
    });
}

void AppController::clickTimeSlider(double targetSec) {
    runAtOperationBoundary("cts", [&] {
        if (const auto player = activeTransportPlayer()) {
            Q_EMIT messageChanged(QString());
            seekPressWith(std::clamp(targetSec, 0.0, std::max(0.0, player->durationSec())),
                          kSliderSeekRestoreDelay);
        }
    });
}

void AppController::seekPressTo(double targetSec) {
    runAtOperationBoundary("spt", [&] {
        if (const auto player = activeTransportPlayer()) {
            const double target = std::clamp(targetSec, 0.0, std::max(0.0, player->durationSec()));
            seekPressWith(target, kKeySeekRestoreDelay);
            showMessage(representHMSfromSEC(target), kMessageShownFor);
        }
    });
}

void AppController::restorePlayRate() {
    runAtOperationBoundary("rpr", [&] {
        const std::unique_ptr<TransportPlayer> player = activeTransportPlayer();
        if (!player || playlistState.reOpen.reOpenURL != seekPressRunURL) {
            seekPressRun.forgetRun();
            return;
        }
        if (seekPressRun.restorePlayRate(*player)) {
            Q_EMIT transportChanged();
        }
        const double durationSec = player->durationSec();
        if (durationSec > 0.0) {
            currentPlayPercentage = player->positionSec() / durationSec;
        }
        if (menu.isPlaylistShown) {
            Q_EMIT playlistChanged();
        }
    });
}

void AppController::setVolumeOfActivePlayer(double volume) {
    volumeSliderValue = std::clamp(volume, 0.0, kMaximumVolume);
    if (const auto player = activeTransportPlayer()) {
        player->setVolume(float(volumeSliderValue));
    }
    Q_EMIT transportChanged();
}

void AppController::clickVolumeUpMenu() {
    runAtOperationBoundary("cvum", [&] {
        const double volume = volumeUp(volumeSliderValue);
        defaults->setValue(QStringLiteral("Volume"), volume);
        setVolumeOfActivePlayer(volume);
        showMessage(volumePercentageMessage(volume), kMessageShownFor);
    });
}

void AppController::clickVolumeDownMenu() {
    runAtOperationBoundary("cvdm", [&] {
        const double volume = volumeDown(volumeSliderValue);
        defaults->setValue(QStringLiteral("Volume"), volume);
        setVolumeOfActivePlayer(volume);
        showMessage(volumePercentageMessage(volume), kMessageShownFor);
    });
}

void AppController::clickVolumeSlider(double value) {
    runAtOperationBoundary("cvs", [&] {
        const double volume = std::clamp(roundedVolume(value), 0.0, kMaximumVolume);
        defaults->setValue(QStringLiteral("Volume"), volume);
        setVolumeOfActivePlayer(volume);
    });
}

// "Volume" is deliberately left alone: unmuting finds the old level there.
void AppController::clickMuteButton() {
    runAtOperationBoundary("cmb", [&] {
        setVolumeOfActivePlayer(
            mutedVolume(volumeSliderValue, defaults->value(QStringLiteral("Volume")).toDouble()));
    });
}

void AppController::clickAutoPlayMenu() {
    runAtOperationBoundary("capm", [&] {
        const int autoPlay = defaults->value(QStringLiteral("AutoPlay")).toInt() == 1 ? 0 : 1;
        defaults->setValue(QStringLiteral("AutoPlay"), autoPlay);
        menu.isAutoPlay = autoPlay == 1;
        Q_EMIT menuStateChanged();
    });
}

bool AppController::hasPlaylistItemInDirection(int direction) const {
    const int index = playlistState.indexPlay;
    return !playlistState.isEmpty() &&
           steppedPlaylistIndex(stepItemsOf(playlistState), index, direction) != index;
}

void AppController::clickPrevFileButton() {
    runAtOperationBoundary("cpfb", [&] {
        if (!hasPlaylistItemInDirection(-1)) {
            return;
        }
        playlistState.indexPlay =
            steppedPlaylistIndex(stepItemsOf(playlistState), playlistState.indexPlay, -1);
        isDoubleClickedPlayList = true;
        continueOpenFile();
    });
}

void AppController::clickNextFileButton() {
    runAtOperationBoundary("cnfb", [&] {
        if (!hasPlaylistItemInDirection(+1)) {
            return;
        }
        playlistState.indexPlay =
            steppedPlaylistIndex(stepItemsOf(playlistState), playlistState.indexPlay, +1);
        isDoubleClickedPlayList = true;
        continueOpenFile();
    });
}

// Both shown tracks move together; the message names the first track's delay.
void AppController::changeCaptionDelayBy(qint32 deltaMsec) {
    iSubtitle.delayPlus(deltaMsec);
    iSubtitle.resetSortedIdx();
    subtitleChoicesChanged();
    const qint32 delayMsec = iSubtitle.fstDelay();
    if (delayMsec != subtitles::kUnsetSubtitleDelay) {
        showMessage(
            localizedString("CAPTIONDELAY").arg(QString::number(delayMsec / 1000.0, 'f', 1)),
            kMessageShownFor);
    }
}

void AppController::clickLaterCaptionButton() {
    runAtOperationBoundary("clcb", [&] { changeCaptionDelayBy(kCaptionDelayStepMsec); });
}

void AppController::clickEarlyCaptionButton() {
    runAtOperationBoundary("cecb", [&] { changeCaptionDelayBy(-kCaptionDelayStepMsec); });
}

// The margin is the captions' distance from the picture's edge, a fraction
// of the picture's height, kept per font.
void AppController::changeCaptionMarginBy(double delta) {
    const QString key = QStringLiteral("CaptionMargin2");
    const double margin = std::clamp(defaults->valueForCPFSetting(key).toDouble() + delta, 0.0,
                                     kCaptionMarginMaximum);
    defaults->saveValue(margin, key);
    Q_EMIT captionsNeedRedraw();
    showMessage(localizedString("CAPTIONPOSITION").arg(QString::number(margin * 100.0, 'f', 0)),
                kMessageShownFor);
}

void AppController::clickCaptionPositionUp() {
    runAtOperationBoundary("ccpu", [&] { changeCaptionMarginBy(kCaptionMarginStep); });
}

void AppController::clickCaptionPositionDown() {
    runAtOperationBoundary("ccpd", [&] { changeCaptionMarginBy(-kCaptionMarginStep); });
}

void AppController::raiseMainWindow() { Q_EMIT windowVisibilityRequested(WindowKind::show, true); }

void AppController::requestQuit() { Q_EMIT quitRequested(); }

}  // namespace tolvane
