#include "first_player_window.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

namespace tolvane {

namespace {

constexpr double kSeekStepSec = 3.0;
constexpr float kStartVolume = 1.0f;

}  // namespace

FirstPlayerWindow::FirstPlayerWindow() {
    layout.setContentsMargins(0, 0, 0, 0);
    layout.addWidget(&view);
    view.setPictureSource(&pictureSource);
    setStyleSheet(QStringLiteral("background: black;"));
    resize(960, 540);
}

FirstPlayerWindow::~FirstPlayerWindow() {
    view.setPictureSource(nullptr);
    playbackEngine.cleanBeforeQuit();
}

QString FirstPlayerWindow::openAndPlay(const QString &path) {
    const QString result = playbackEngine.openMovieFile(path);
    if (result != QLatin1String(kOpenSucceeded)) {
        return result;
    }
    setWindowTitle(QFileInfo(path).fileName());
    if (const auto &video = playbackEngine.tracks().videotrack) {
        // The picture's own size, shrunk to fit the screen.
        QSize size(video->width, video->height);
        if (const QScreen *shownOn = screen()) {
            size = size.boundedTo(shownOn->availableSize() * 0.9);
        }
        resize(QSize(video->width, video->height).scaled(size, Qt::KeepAspectRatio));
    }
    playbackEngine.setDefaultOutputAndTimersBeforeStartWithVolume(kStartVolume);
    playbackEngine.setRate(1.0);
    view.wakeRefresh();
    return result;
}

void FirstPlayerWindow::togglePlayPause() {
    playbackEngine.setRate(playbackEngine.rate() == 1.0 ? 0.0 : 1.0);
    view.wakeRefresh();
}

void FirstPlayerWindow::seekBy(double deltaSec) {
    const double rate = playbackEngine.rate();
    const double position = playbackEngine.currentTimeSec() - playbackEngine.startTimeSec();
    const double target =
        std::clamp(position + deltaSec, 0.0, std::max(0.0, playbackEngine.fileDurationSec()));
    playbackEngine.setCurrentTimeSec(target, true);
    playbackEngine.restartTimers();
    if (rate == 1.0) {
        playbackEngine.setRate(1.0);
    }
    view.wakeRefresh();
}

void FirstPlayerWindow::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Space:
        togglePlayPause();
        break;
    case Qt::Key_Left:
        seekBy(-kSeekStepSec);
        break;
    case Qt::Key_Right:
        seekBy(kSeekStepSec);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
}

void FirstPlayerWindow::closeEvent(QCloseEvent *event) {
    playbackEngine.setRate(0.0);
    QWidget::closeEvent(event);
}

}  // namespace tolvane
