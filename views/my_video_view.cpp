#include "my_video_view.h"

#include <QScreen>
#include <QWindow>

namespace tolvane {

MyVideoView::MyVideoView(QWidget *parent) : QOpenGLWidget(parent) {
    setUpdateBehavior(QOpenGLWidget::PartialUpdate);  // an unanswered refresh keeps the picture
    refreshTimer.setTimerType(Qt::PreciseTimer);
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
    if (source != nullptr && source->isAsynchronous()) {
        if (!pacing.hasJudged()) {
            update();  // the swaps of the judging phase
        }
        if (pacing.isSwapPaced()) {
            update();
        } else if (!refreshTimer.isActive()) {
            refreshTimer.start(pacing.timerIntervalMs());
        }
    }
}

void MyVideoView::updateRefreshRate() {
    const QScreen *shownOn = screen();
    if (shownOn != nullptr) {
        pacing.setRefreshRate(shownOn->refreshRate());
    }
}

void MyVideoView::onRefresh() {
    if (source == nullptr || !source->isAsynchronous()) {
        refreshTimer.stop();  // woken again by wakeRefresh()
        return;
    }
    ++decisions;
    if (source->canDrawPicture()) {
        drawPending = true;
        update();
    }
}

void MyVideoView::onFrameSwapped() {
    if (!pacing.hasJudged()) {
        // Judging: swaps requested back to back show whether each one waits
        // for the vertical blank.
        pacing.noteSwap(RefreshPacing::Clock::now());
        if (!pacing.hasJudged()) {
            update();
            return;
        }
        if (pacing.isSwapPaced()) {
            refreshTimer.stop();
        }
    }
    if (!pacing.isSwapPaced() || source == nullptr || !source->isAsynchronous()) {
        return;
    }
    // Swap-paced: each presented frame asks for the next refresh, and the
    // decision for it is taken now.
    ++decisions;
    drawPending = source->canDrawPicture() || drawPending;
    update();
}

void MyVideoView::initializeGL() {
    rendererReady = renderer.initialize();
    update();  // starts judging how swaps are paced
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
