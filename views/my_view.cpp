#include "views/my_view.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>

#include "app/app_controller.h"
#include "base/notification_center.h"

namespace tolvane {

namespace {

const QColor kGreyBackground = QColor(50, 50, 50);
// Room left between bottom captions and the control panel over them.
constexpr int kCaptionGapOverPanel = 8;

}  // namespace

MyView::MyView(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent),
      controller(controllerToUse),
      enginePictureSource(controllerToUse.engine()),
      captionTimer(controllerToUse.subtitle(), overlay,
                   [this] { return controller.playbackTimeMsec(); }),
      panel(controllerToUse, this) {
    setAcceptDrops(true);
    setMouseTracking(true);
    setAutoFillBackground(true);
    setPalette(QPalette(kGreyBackground));
    // Everything over the picture lets the mouse through to this view, which
    // handles moves, drags, gestures and drops in one place.
    video.setAttribute(Qt::WA_TransparentForMouseEvents);
    video.hide();
    overlay.setAttribute(Qt::WA_TransparentForMouseEvents);
    for (QWidget *over : std::initializer_list<QWidget *>{&overlay, &layers, &title, &panel}) {
        video.addOverlay(over);
    }
    title.hide();
    panel.hide();
    chromeHideTimer.setSingleShot(true);
    chromeHideTimer.setInterval(kChromeIdleHideMsec);
    connect(&chromeHideTimer, &QTimer::timeout, this, &MyView::hideChromeWhenIdle);

    AppController *source = &controller;
    connect(source, &AppController::pictureModeChanged, this, &MyView::showPictureMode);
    connect(source, &AppController::subtitleReloaded, this, &MyView::showSubtitleReloaded);
    connect(source, &AppController::captionsNeedRedraw, this, [this] {
        captionTimer.resetShownLines();
        captionTimer.tick();
    });
    // The controller times the message (1.5 s) and honours "IsShowMessage".
    connect(source, &AppController::messageChanged, &layers, &StatusLayers::setMessage);
    connect(source, &AppController::fileNameChanged, this,
            [this](const QString &name, bool isVisible) {
                fileName = name;
                isFileNameWanted = isVisible;
                showFileNameLayer();
                if (!name.trimmed().isEmpty()) {
                    title.setTitle(name);
                }
            });
    connect(source, &AppController::countDownChanged, &layers, &StatusLayers::setCountDown);
    connect(source, &AppController::loadingCircleChanged, &layers,
            &StatusLayers::setLoadingCircleVisible);
    connect(source, &AppController::transportChanged, &video, &MyVideoView::wakeRefresh);
    connect(source, &AppController::backgroundColorChanged, this, [this](bool isBlack) {
        setPalette(QPalette(isBlack ? QColor(Qt::black) : kGreyBackground));
    });
    connect(source, &AppController::fullScreenRequested, this,
            [this](bool isFullScreen, const QRect &pictureRect) {
                fullScreenPictureRect = isFullScreen && !pictureRect.isEmpty()
                                            ? std::optional(pictureRect)
                                            : std::nullopt;
                layOutVideo();
            });
    title.setTitle(QStringLiteral("Tolvane"));
}

MyView::~MyView() {
    captionTimer.stop();
    video.setPictureSource(nullptr);
}

void MyView::showNativePicturesFrom(QVideoSink *sink) {
    nativePictureSource = std::make_unique<NativePictureSource>(sink);
    nativePictureSource->setWakeHandler([this] { video.wakeRefresh(); });
    if (controller.pictureMode() == PictureMode::native) {
        showPictureMode(PictureMode::native);
    }
}

void MyView::showPictureMode(PictureMode mode) {
    VideoPictureSource *shown = nullptr;
    switch (mode) {
        case PictureMode::ffmpeg:
            shown = &enginePictureSource;
            break;
        case PictureMode::native:
            shown = nativePictureSource.get();
            break;
        case PictureMode::none:
            break;
    }
    video.setPictureSource(shown);
    video.setVisible(shown != nullptr);
    if (shown == nullptr) {
        captionTimer.stop();
        overlay.clearCaptions();
    }
    showFileNameLayer();
}

void MyView::showSubtitleReloaded() {
    const subtitles::MySubtitle &subtitle = controller.subtitle();
    overlay.setLayoutSettings({.viewSize = subtitle.viewSize,
                               .spacingPF = subtitle.spacingPF,
                               .marginPF = subtitle.marginPF});
    captionTimer.resetShownLines();
    overlay.show();
    overlay.raise();
    captionTimer.start();
}

// Over a playing picture the name would cover it: there it shows with the
// title bar and the panel only.
void MyView::showFileNameLayer() {
    layers.setFileName(fileName, isFileNameWanted && (panel.isVisible() || !video.isVisible()));
}

void MyView::layOutVideo() {
    video.setGeometry(fullScreenPictureRect ? fullScreenPictureRect->intersected(rect()) : rect());
    keepBottomCaptionsClearOfPanel();
}

// While the panel shows, bottom captions rise above it: the overlay covers
// the picture, which in full screen may end above the panel.
void MyView::keepBottomCaptionsClearOfPanel() {
    const int pictureBottom = video.geometry().y() + video.height();
    const int panelTop = panel.geometry().top() - kCaptionGapOverPanel;
    overlay.setCoveredBottomHeight(panel.isVisible() ? std::max(0, pictureBottom - panelTop) : 0);
}

void MyView::resizeEvent(QResizeEvent *) {
    layOutVideo();
    layers.raise();
    title.setGeometry(0, 0, width(), TitleBar::kHeight);
    panel.placeInView(size());
    title.raise();
    panel.raise();
    keepBottomCaptionsClearOfPanel();
}

void MyView::showChrome() {
    unsetCursor();
    // The title bar belongs to the window: full screen has none.
    title.setVisible(!controller.menuState().isFullScreen);
    panel.show();
    keepBottomCaptionsClearOfPanel();
    showFileNameLayer();
    chromeHideTimer.start();
}

void MyView::hideChromeWhenIdle() {
    if (panel.underMouse() || title.underMouse()) {
        chromeHideTimer.start();
        return;
    }
    title.hide();
    panel.hide();
    keepBottomCaptionsClearOfPanel();
    showFileNameLayer();
    if (controller.menuState().isFullScreen) {
        setCursor(Qt::BlankCursor);
    }
}

void MyView::mouseMoveEvent(QMouseEvent *event) {
    showChrome();
    QWidget::mouseMoveEvent(event);
}

void MyView::leaveEvent(QEvent *event) {
    chromeHideTimer.start();
    QWidget::leaveEvent(event);
}

void MyView::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::RightButton) {
        const QPoint global = event->globalPosition().toPoint();
        NotificationCenter::defaultCenter().post(
            "MYRightMouseDown", this,
            {{QLatin1String(kGlobalXKey), global.x()}, {QLatin1String(kGlobalYKey), global.y()}});
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && !controller.menuState().isFullScreen &&
        window()->windowHandle() != nullptr) {
        window()->windowHandle()->startSystemMove();
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

void MyView::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        controller.clickFullScreen();
        event->accept();
    }
}

void MyView::postGestures(const std::vector<const char *> &names) {
    for (const char *name : names) {
        NotificationCenter::defaultCenter().post(name, this);
    }
}

void MyView::wheelEvent(QWheelEvent *event) {
    if (event->phase() == Qt::ScrollBegin || event->phase() == Qt::ScrollEnd) {
        gestures.reset();
    }
    // Natural scrolling reports deltas inverted: the gesture follows the fingers.
    QPoint angle = event->angleDelta();
    QPoint pixels = event->pixelDelta();
    if (event->inverted()) {
        angle = -angle;
        pixels = -pixels;
    }
    postGestures(gestures.scroll(angle, pixels));
    event->accept();
}

bool MyView::event(QEvent *event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto *gesture = static_cast<QNativeGestureEvent *>(event);
        switch (gesture->gestureType()) {
            case Qt::BeginNativeGesture:
            case Qt::EndNativeGesture:
                gestures.reset();
                break;
            case Qt::ZoomNativeGesture:
                postGestures(gestures.magnify(gesture->value()));
                break;
            default:
                break;
        }
        return true;
    }
    return QWidget::event(event);
}

void MyView::dragEnterEvent(QDragEnterEvent *event) {
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
    }
}

void MyView::dropEvent(QDropEvent *event) {
    QStringList paths;
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    if (paths.isEmpty()) {
        return;
    }
    event->acceptProposedAction();
    NotificationCenter::defaultCenter().post(kDraggedFilePathsNotification, this,
                                             {{QLatin1String(kDraggedFilePathsKey), paths}});
}

}  // namespace tolvane
