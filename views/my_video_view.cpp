#include "my_video_view.h"

#include <QScreen>
#include <QWindow>

namespace tolvane {

MyVideoView::MyVideoView(QWidget *parent) : QOpenGLWidget(parent) {
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);  // an unanswered refresh keeps the picture
    refreshTimer.setTimerType(Qt::PreciseTimer);
    refreshTimer.setSingleShot(true);
    connect(&refreshTimer, &QTimer::timeout, this, &MyVideoView::onRefresh);
    connect(this, &QOpenGLWidget::frameSwapped, this, &MyVideoView::onFrameSwapped);
}

MyVideoView::~MyVideoView() {
    // The base class destroys the context after this object is gone: the
    // release must not run from its signal then.
    disconnect(contextDestructionConnection);
    if (rendererReady) {
        makeCurrent();
        renderer.release();
        doneCurrent();
    }
}

QSurfaceFormat MyVideoView::preferredSurfaceFormat() {
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setSwapInterval(1);
    return format;
}

void MyVideoView::setPictureSource(VideoPictureSource *newSource) {
    source = newSource;
    wakeRefresh();
}

void MyVideoView::wakeRefresh() {
    updateRefreshRate();
    if (source != nullptr && source->isAsynchronous() && !refreshTimer.isActive()) {
        pacing.restart(RefreshPacing::Clock::now());
        scheduleNextRefresh(0);
    }
}

void MyVideoView::updateRefreshRate() {
    const QScreen *shownOn = screen();
    if (shownOn != nullptr) {
        pacing.setRefreshRate(shownOn->refreshRate());
    }
}

void MyVideoView::scheduleNextRefresh(int milliseconds) { refreshTimer.start(milliseconds); }

void MyVideoView::onRefresh() {
    if (source == nullptr || !source->isAsynchronous()) {
        return;  // woken again by wakeRefresh()
    }
    ++decisions;
    if (source->canDrawPicture()) {
        drawPending = true;
        update();
    }
    scheduleNextRefresh(pacing.millisecondsToNextDecision(RefreshPacing::Clock::now()));
}

void MyVideoView::onFrameSwapped() {
    const int milliseconds = pacing.noteSwap(RefreshPacing::Clock::now());
    if (refreshTimer.isActive()) {
        scheduleNextRefresh(milliseconds);
    }
}

void MyVideoView::initializeGL() {
    rendererReady = renderer.initialize();
    disconnect(contextDestructionConnection);
    contextDestructionConnection =
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
            makeCurrent();
            renderer.release();
            rendererReady = false;
            doneCurrent();
        });
}

void MyVideoView::resizeGL(int, int) {
    if (source != nullptr) {
        source->viewDidResize();
    }
    drawPending = true;
}

void MyVideoView::paintGL() {
    ++repaints;
    const QSize viewport = size() * devicePixelRatio();
    if (!rendererReady) {
        return;
    }
    if (source == nullptr) {
        renderer.clear(viewport);
        return;
    }
    if (!drawPending) {
        return;
    }
    drawPending = false;
    ++draws;
    source->drawPicture(renderer, viewport);
}

}  // namespace tolvane
