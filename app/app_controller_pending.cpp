// Temporary: the transport and sizing members are built on another branch;
// these stand in for them until it is merged, so that the controller links.

#include <cmath>

#include "app/app_controller.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

void AppController::clickPlayPauseButton() {
    myGLLayer->setRate(myGLLayer->rate() == 0.0 ? 1.0 : 0.0);
    Q_EMIT transportChanged();
}
void AppController::clickForwardMenu() {}
void AppController::clickBackwardMenu() {}
void AppController::clickSkipForwardMenu() {}
void AppController::clickVolumeUpMenu() {}
void AppController::clickVolumeDownMenu() {}
void AppController::clickVolumeSlider(double) {}
void AppController::clickMuteButton() {}
void AppController::clickAutoPlayMenu() {}
void AppController::clickPrevFileButton() {
    if (playlistState.indexPlay > 0) {
        --playlistState.indexPlay;
        continueOpenFile();
    }
}
void AppController::clickNextFileButton() {
    if (playlistState.indexPlay + 1 < playlistState.playList.size()) {
        ++playlistState.indexPlay;
        continueOpenFile();
    }
}
void AppController::clickTimeSlider(double) {}
void AppController::seekPressTo(double) {}
void AppController::clickLaterCaptionButton() {}
void AppController::clickEarlyCaptionButton() {}
void AppController::clickCaptionPositionUp() {}
void AppController::clickCaptionPositionDown() {}
void AppController::restorePlayRate() {}
double AppController::finalCurrentTimeSecForFF() const {
    return std::max(myGLLayer->currentTimeSec() - myGLLayer->startTimeSec(), 0.0);
}
QString AppController::representHMSfromSEC(double sec) {
    const auto whole = static_cast<long long>(std::trunc(std::max(sec, 0.0)));
    return QString::asprintf("%02lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

bool AppController::determineNaturalSizeRatio() { return false; }
void AppController::changeWindowRatioTo(double, const QString &) {}
void AppController::clickAspectRatioMenu(const QString &) {}
void AppController::clickIncreaseSizeMenu() {}
void AppController::clickDecreaseSizeMenu() {}
void AppController::clickFullScreen() {}
void AppController::leaveFullScreen() {}
void AppController::clickAwesomeMenu() {}
void AppController::clickAnotherDefaultColorMenu() {}

}  // namespace tolvane
