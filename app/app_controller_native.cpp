// Native mode: the platform player's load, its outcomes and the count-down.

#include <QFileInfo>

#include "app/app_controller.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "base/operation_boundary.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// How long the platform player may take to answer before the load counts as
// cancelled; the count-down shows the seconds left.
constexpr int kNativeLoadCountDownSec = 20;
constexpr auto kErrOpenMessageShownFor = 5000ms;

QString adviceList(const QStringList &lines) {
    QStringList bulleted;
    for (const QString &line : lines) {
        bulleted.append(QStringLiteral("∙ ") + line);
    }
    return bulleted.join(QLatin1Char('\n'));
}

}  // namespace

void AppController::loadMovieFileForNT(const QUrl &url) {
    NativeModePlayer *native = services.nativePlayer.get();
    if (!native) {
        return;
    }
    isNativeLoading = true;
    nativeCountDownLeftSec = kNativeLoadCountDownSec;
    Q_EMIT countDownChanged(QString::number(nativeCountDownLeftSec));
    nativeCountDownTimer.start();
    native->load(url.toLocalFile(), std::chrono::seconds(kNativeLoadCountDownSec));
}

void AppController::nativeCountDownTick() {
    nativeCountDownLeftSec = std::max(nativeCountDownLeftSec - 1, 0);
    Q_EMIT countDownChanged(nativeCountDownLeftSec > 0 ? QString::number(nativeCountDownLeftSec)
                                                       : QString());
    if (nativeCountDownLeftSec == 0) {
        nativeCountDownTimer.stop();
    }
}

void AppController::stopHandleAVStatusThread() {
    runAtOperationBoundary("shavst", [this] {
        nativeCountDownTimer.stop();
        if (isNativeLoading && services.nativePlayer) {
            services.nativePlayer->cancelLoading();
        }
        isNativeLoading = false;
    });
}

void AppController::nativeLoadFinished(const NativeModePlayer::LoadResult &result) {
    if (!isNativeLoading || willTerminateNotified) {
        return;
    }
    isNativeLoading = false;
    nativeCountDownTimer.stop();
    Q_EMIT countDownChanged({});
    runAtOperationBoundary("nlf", [this, &result] {
        using Outcome = NativeModePlayer::LoadOutcome;
        const QString changeMode = localizedString("QTLSCHANGEMODE");
        const QString advance = localizedString("QTLSFFADVANCE");
        switch (result.outcome) {
            case Outcome::loaded:
                finallyLoadMovieFileForNT(result);
                break;
            case Outcome::loadedWithoutAudibleTrack:
                if (askSwitchToFFmpeg(localizedString("FFADERRORFFMODE"),
                                      adviceList({advance, changeMode}))) {
                    return;
                }
                finallyLoadMovieFileForNT(result);
                break;
            case Outcome::cancelled:
                if (!askSwitchToFFmpeg(localizedString("QTLSFFNTCPU"),
                                       adviceList({advance, changeMode}))) {
                    leaveFullScreen();
                    showMessage(localizedString("ERROPEN"), kErrOpenMessageShownFor);
                }
                break;
            case Outcome::failed: {
                const QString description = result.errorDescription.isEmpty()
                                                ? localizedString("ERROPEN")
                                                : result.errorDescription;
                const bool isAboutAudio = result.errorDescription == QLatin1String("-2000(1)") ||
                                          !result.unsupportedAudioCodecs.isEmpty();
                const QString advice =
                    isAboutAudio
                        ? adviceList({localizedString("FFADERRORCONT"),
                                      advance + QStringLiteral(" (%1)").arg(
                                                    result.unsupportedAudioCodecs.join(", ")),
                                      changeMode})
                        : adviceList({advance, changeMode});
                askSwitchToFFmpeg(description, advice);
                break;
            }
            case Outcome::notPlayable:
                askSwitchToFFmpeg(localizedString("NOTPBL"), localizedString("FFADERRORCONT") +
                                                                 QLatin1Char('\n') +
                                                                 adviceList({advance, changeMode}));
                break;
            case Outcome::protectedContent:
                services.userInteraction->showAlert(localizedString("ERROPEN"),
                                                    localizedString("HASPT"));
                break;
        }
    });
}

bool AppController::askSwitchToFFmpeg(const QString &title, const QString &informativeText) {
    const int answer = services.userInteraction->askChoice(
        title, informativeText, {QStringLiteral("FFmpeg"), localizedString("CANCEL")});
    if (answer != 0) {
        return false;
    }
    clickChangeDecoding();
    return true;
}

void AppController::finallyLoadMovieFileForNT(const NativeModePlayer::LoadResult &result) {
    NativeModePlayer *native = services.nativePlayer.get();
    if (!result.unsupportedAudioCodecs.isEmpty() &&
        askSwitchToFFmpeg(
            localizedString("FFADERROR"),
            adviceList({localizedString("FFADERRORCONT") +
                            QStringLiteral(" (%1)").arg(result.unsupportedAudioCodecs.join(", ")),
                        localizedString("QTLSCHANGEMODE")}))) {
        return;
    }
    {
        NamedLockGuard lock(movieMutex);
        native->setVolume(float(volumeSliderValue));
        if (playlistState.reOpen.reOpenCTimeSec > 0.0) {
            native->seekToTime(playlistState.reOpen.reOpenCTimeSec);
        }
        native->setRate(isAutomaticStartPlay ? 1.0 : 0.0);
    }
    const QSize size = native->naturalSize();
    if (!size.isEmpty()) {
        naturalPictureSize = QSizeF(size);
    }
    if (!result.trackKinds.contains(QLatin1String("soun"))) {
        inspector.soundTracks.clear();
    }
    reloadSubtitle(playlistState.reOpen.reOpenURL);
    shownPictureMode = PictureMode::native;
    Q_EMIT pictureModeChanged(shownPictureMode);
    isAutoPlayed = true;
    movieTimer.start();
    Q_EMIT inspectorChanged();
    Q_EMIT transportChanged();
    resizeWindowToLoadedFile();
}

}  // namespace tolvane
