// The movie timer: the transport state, the end of a file, and the
// display-sleep assertion on every 50th tick.

#include "app/app_controller.h"
#include "app/played_state_records.h"
#include "app/user_defaults.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

constexpr int kDisplaySleepTickPeriod = 50;
// The engine's clock is the audio played: at the end of a file it stops. A
// clock standing this many ticks within the last second is the end.
constexpr int kEndStallTicks = 5;
constexpr double kEndWindowSec = 1.0;

}  // namespace

void AppController::movieTimerTick() {
    if (shownPictureMode == PictureMode::ffmpeg) {
        updateDataAboutMovieForFF();
    } else if (shownPictureMode == PictureMode::native) {
        updateDataAboutMovieForNT();
    }
}

void AppController::updateDataAboutMovieForFF() {
    runAtOperationBoundary("udamff", [this] {
        double rate = 0.0;
        {
            NamedLockGuard lock(movieMutex);
            rate = myGLLayer->rate();
        }
        if (++countEnergy >= kDisplaySleepTickPeriod) {
            countEnergy = 0;
            updateDisplaySleepAssertion(rate);
        }
        if (!myGLLayer->isAlsoHaveMovie()) {
            return;
        }
        const double position = finalCurrentTimeSecForFF();
        const double duration = myGLLayer->fileDurationSec();
        if (duration > 0.0) {
            currentPlayPercentage = std::clamp(position / duration, 0.0, 1.0);
        }
        const bool isStandingNearTheEnd = rate != 0.0 && duration > 0.0 &&
                                          position >= duration - kEndWindowSec &&
                                          position == lastTickPositionSec;
        countFinalForFF = isStandingNearTheEnd ? countFinalForFF + 1 : 0;
        lastTickPositionSec = position;
        Q_EMIT transportChanged();
        if (countFinalForFF >= kEndStallTicks) {
            countFinalForFF = 0;
            isEndForFF = true;
            movieReachedItsEnd();
        }
    });
}

void AppController::updateDataAboutMovieForNT() {
    runAtOperationBoundary("udamnt", [this] {
        NativeModePlayer *native = services.nativePlayer.get();
        if (!native) {
            return;
        }
        double rate = 0.0;
        {
            NamedLockGuard lock(movieMutex);
            rate = native->rate();
        }
        if (++countEnergy >= kDisplaySleepTickPeriod) {
            countEnergy = 0;
            updateDisplaySleepAssertion(rate);
        }
        const double duration = native->durationSec();
        if (duration > 0.0) {
            currentPlayPercentage = std::clamp(native->currentTimeSec() / duration, 0.0, 1.0);
        }
        Q_EMIT transportChanged();
    });
}

void AppController::updateDisplaySleepAssertion(double rate) {
    DisplaySleepAssertion *assertion = services.displaySleep.get();
    if (!assertion) {
        return;
    }
    if (rate == 0.0 && isPreventingSleep) {
        if (assertion->releaseAssertion()) {
            isPreventingSleep = false;
        }
    } else if (rate != 0.0 && !isPreventingSleep) {
        isPreventingSleep = assertion->createAssertion();
    }
}

void AppController::movieReachedItsEnd() {
    runAtOperationBoundary("mrie", [this] {
        {
            NamedLockGuard lock(movieMutex);
            if (shownPictureMode == PictureMode::ffmpeg) {
                myGLLayer->setRate(0.0);
            } else if (shownPictureMode == PictureMode::native && services.nativePlayer) {
                services.nativePlayer->setRate(0.0);
            }
        }
        if (!playlistState.hasCurrentItem()) {
            return;
        }
        // Watched to the end: the next open starts it from the beginning.
        isAutoPlayed = false;
        playlistState.reOpen.reOpenDone = true;
        playlistState.reOpen.reOpenCTimeSec = kStartFromBeginningTimeSec;
        playlistState.playList[playlistState.indexPlay].playDone = true;
        records->saveTotalFdFlsData(QStringLiteral("auto"));
        refreshMoveToTrashEnabled();
        Q_EMIT playlistChanged();
        Q_EMIT transportChanged();
        if (defaults->value(QStringLiteral("AutoPlay")).toInt() == 1) {
            clickNextFileButton();
        }
    });
}

}  // namespace tolvane
