#include "first_player_window.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/user_defaults.h"
#include "subtitles/text_encodings.h"

namespace tolvane {

namespace {

constexpr double kSeekStepSec = 3.0;
constexpr float kStartVolume = 1.0f;
// Width of the caption space; its height follows the picture's aspect, so
// font sizes (a fraction of this width) scale with the window.
constexpr double kCaptionSpaceWidth = 960.0;

}  // namespace

FirstPlayerWindow::FirstPlayerWindow() {
    layout.setContentsMargins(0, 0, 0, 0);
    layout.addWidget(&view);
    view.setPictureSource(&pictureSource);
    setStyleSheet(QStringLiteral("background: black;"));
    resize(960, 540);
}

FirstPlayerWindow::~FirstPlayerWindow() {
    captionTimer.stop();
    view.setPictureSource(nullptr);
    playbackEngine.cleanBeforeQuit();
}

QString FirstPlayerWindow::openAndPlay(const QString &path) {
    const QString result = playbackEngine.openMovieFile(path);
    if (result != QLatin1String(kOpenSucceeded)) {
        return result;
    }
    setWindowTitle(QFileInfo(path).fileName());
    QSize pictureSize;
    if (const auto &video = playbackEngine.tracks().videotrack) {
        pictureSize = QSize(video->width, video->height);
        // The picture's own size, shrunk to fit the screen.
        QSize size(video->width, video->height);
        if (const QScreen *shownOn = screen()) {
            size = size.boundedTo(shownOn->availableSize() * 0.9);
        }
        resize(QSize(video->width, video->height).scaled(size, Qt::KeepAspectRatio));
    }
    loadCaptions(path, pictureSize);
    playbackEngine.setDefaultOutputAndTimersBeforeStartWithVolume(kStartVolume);
    playbackEngine.setRate(1.0);
    view.wakeRefresh();
    return result;
}

void FirstPlayerWindow::loadCaptions(const QString &videoPath, QSize pictureSize) {
    const UserDefaults defaults;
    captionSubtitle = subtitles::MySubtitle{};
    captionSubtitle.fnamePF = defaults.value(QStringLiteral("FontName")).toString();
    captionSubtitle.boldPF = defaults.valueForCPFSetting(QStringLiteral("IsFontBold2")).toBool();
    captionSubtitle.sizePF = defaults.valueForCPFSetting(QStringLiteral("FontSize2")).toFloat();
    captionSubtitle.spacingPF =
        defaults.valueForCPFSetting(QStringLiteral("CaptionSpacing2")).toFloat();
    captionSubtitle.marginPF =
        defaults.valueForCPFSetting(QStringLiteral("CaptionMargin2")).toFloat();
    if (!pictureSize.isEmpty()) {
        captionSubtitle.viewSize =
            QSizeF(kCaptionSpaceWidth,
                   std::round(kCaptionSpaceWidth * pictureSize.height() / pictureSize.width()));
    }
    const std::vector<int> encodingItems = encodingItemsToTry(kAutomaticEncodingItem);
    captionSubtitle.openSubtitleFileURL(videoPath, encodingItems, false, QString());
    captionSubtitle.setOrders({});
    captionSubtitle.resetSortedIdx();
    captionOverlay.clearCaptions();
    captionOverlay.setLayoutSettings({.viewSize = captionSubtitle.viewSize,
                                      .spacingPF = captionSubtitle.spacingPF,
                                      .marginPF = captionSubtitle.marginPF});
    captionOverlay.show();
    captionOverlay.raise();
    captionTimer.start();
}

qint32 FirstPlayerWindow::playbackTimeMsec() const {
    return qint32(
        std::lround((playbackEngine.currentTimeSec() - playbackEngine.startTimeSec()) * 1000.0));
}

void FirstPlayerWindow::toggleSecondCaptionTrack() {
    if (captionSubtitle.sndOrderIdx() != subtitles::kNoTrackOrderIdx) {
        captionSubtitle.toggleRow(captionSubtitle.sndOrderIdx());
    } else {
        const auto &entries = captionSubtitle.entries();
        for (qint64 index = 0; index < qint64(entries.size()); ++index) {
            if (index != captionSubtitle.fstOrderIdx() &&
                entries[index].error == QLatin1String("x")) {
                captionSubtitle.toggleRow(index);
                break;
            }
        }
    }
    captionTimer.resetShownLines();
    captionTimer.tick();
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
        case Qt::Key_C:
            toggleSecondCaptionTrack();
            break;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    event->accept();
}

void FirstPlayerWindow::closeEvent(QCloseEvent *event) {
    captionTimer.stop();
    playbackEngine.setRate(0.0);
    QWidget::closeEvent(event);
}

}  // namespace tolvane
