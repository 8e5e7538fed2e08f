#include "views/my_window.h"

#include <QCloseEvent>
#include <QVBoxLayout>

#include "app/app_controller.h"

namespace tolvane {

MyWindow::MyWindow(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint),
      controller(controllerToUse),
      content(controllerToUse, this) {
    setWindowTitle(QStringLiteral("Tolvane"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/tolvane.svg")));
    setMinimumSize(320, 180);
    auto *layout = new QVBoxLayout(this);  // owned by the window
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&content);
    playerMenus = std::make_unique<PlayerMenus>(controller, this);

    TitleBar &title = content.titleBar();
    connect(&title, &TitleBar::closeClicked, this, &QWidget::close);
    connect(&title, &TitleBar::minimiseClicked, this, &QWidget::showMinimized);
    connect(&title, &TitleBar::zoomClicked, this,
            [this] { isMaximized() ? showNormal() : showMaximized(); });

    // Posted by the content view from the main thread.
    rightMouseDownObserver = ScopedObserver(
        "MYRightMouseDown",
        [this](const Notification &notification) {
            playerMenus->popUpContextMenu(
                QPoint(notification.userInfo.value(QLatin1String(MyView::kGlobalXKey)).toInt(),
                       notification.userInfo.value(QLatin1String(MyView::kGlobalYKey)).toInt()));
        },
        &content);

    connect(playerMenus.get(), &PlayerMenus::quitRequested, this, &MyWindow::quitRequested);
    AppController *source = &controller;
    connect(source, &AppController::quitRequested, this, &MyWindow::quitRequested);
    connect(source, &AppController::windowLevelChanged, this, &MyWindow::applyStaysOnTop);
    connect(source, &AppController::fullScreenRequested, this,
            [this](bool isFullScreen, const QRect &) { applyFullScreen(isFullScreen); });
    connect(source, &AppController::windowFrameRequested, this,
            [this](WindowKind kind, const QRect &frame, bool) {
                if (kind == WindowKind::show && !isFullScreen() && frame.isValid()) {
                    setGeometry(frame);
                }
            });
}

MyWindow::~MyWindow() = default;

void MyWindow::applyFullScreen(bool isFullScreenWanted) {
    if (isFullScreenWanted == isFullScreen()) {
        return;
    }
    if (isFullScreenWanted) {
        frameBeforeFullScreen = geometry();
        showFullScreen();
    } else {
        showNormal();
        if (frameBeforeFullScreen.isValid()) {
            setGeometry(frameBeforeFullScreen);
        }
        content.unsetCursor();
    }
}

void MyWindow::applyStaysOnTop(bool isOnTop) {
    if (bool(windowFlags() & Qt::WindowStaysOnTopHint) == isOnTop) {
        return;
    }
    const bool wasVisible = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, isOnTop);
    // Changing the flags re-creates the native window, hidden.
    if (wasVisible) {
        show();
    }
}

void MyWindow::reportFrame() {
    if (!isFullScreen() && isVisible()) {
        controller.windowDidMoveOrResize(WindowKind::show, geometry());
    }
}

void MyWindow::moveEvent(QMoveEvent *event) {
    QWidget::moveEvent(event);
    reportFrame();
}

void MyWindow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    reportFrame();
}

void MyWindow::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && !isFullScreen() &&
        controller.menuState().isFullScreen) {
        // Left by the window manager rather than by the player.
        controller.leaveFullScreen();
    }
}

void MyWindow::closeEvent(QCloseEvent *event) {
    event->ignore();
    Q_EMIT quitRequested();
}

}  // namespace tolvane
