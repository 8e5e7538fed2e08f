#include "my_video_view.h"

#include <QChildEvent>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLWindow>
#include <QPainter>
#include <QScreen>
#include <memory>

namespace tolvane {

// The picture's native window. Input passes through it to the widgets
// under it, so that the view's mouse handling, drops and the controls'
// buttons work as they would without it.
class VideoSurfaceWindow final : public QOpenGLWindow {
public:
    explicit VideoSurfaceWindow(MyVideoView &view)
        : QOpenGLWindow(QOpenGLWindow::NoPartialUpdate), view(&view) {
        setFlag(Qt::WindowTransparentForInput);
    }
    // The view is going: paints that still come do nothing.
    void detachFromView() { view = nullptr; }

protected:
    void initializeGL() override {
        if (view != nullptr) {
            view->initializeSurface();
        }
    }
    void resizeGL(int, int) override {
        if (view != nullptr) {
            view->surfaceResized();
        }
    }
    void paintGL() override {
        if (view != nullptr) {
            view->paintSurface();
        }
    }

private:
    MyVideoView *view;
};

namespace {

// The smallest rectangle within `area` that holds every painted pixel of
// `image` (premultiplied: an unpainted pixel is all zero); empty if none.
QRect paintedBoundsWithin(const QImage &image, QRect area) {
    area = area.intersected(image.rect());
    int top = area.bottom() + 1;
    int bottom = area.top() - 1;
    int left = area.right() + 1;
    int right = area.left() - 1;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto *row = reinterpret_cast<const quint32 *>(image.constScanLine(y));
        int first = area.left();
        while (first <= area.right() && row[first] == 0) {
            ++first;
        }
        if (first > area.right()) {
            continue;
        }
        int last = area.right();
        while (row[last] == 0) {
            --last;
        }
        top = std::min(top, y);
        bottom = y;
        left = std::min(left, first);
        right = std::max(right, last);
    }
    return top <= bottom ? QRect(QPoint(left, top), QPoint(right, bottom)) : QRect();
}

// Areas that overlap are merged: each pixel of the overlay is blended once.
std::vector<QRect> withoutOverlaps(std::vector<QRect> areas) {
    bool isMerged = true;
    while (isMerged) {
        isMerged = false;
        for (std::size_t i = 0; i < areas.size() && !isMerged; ++i) {
            for (std::size_t j = i + 1; j < areas.size(); ++j) {
                if (areas[i].intersects(areas[j])) {
                    areas[i] = areas[i].united(areas[j]);
                    areas.erase(areas.begin() + std::ptrdiff_t(j));
                    isMerged = true;
                    break;
                }
            }
        }
    }
    return areas;
}

}  // namespace

MyVideoView::MyVideoView(QWidget *parent) : QWidget(parent) {
    auto window = std::make_unique<VideoSurfaceWindow>(*this);
    surface = window.get();
    container = QWidget::createWindowContainer(window.release(), this);
    container->setAttribute(Qt::WA_TransparentForMouseEvents);
    container->setFocusPolicy(Qt::NoFocus);
    refreshTimer.setTimerType(Qt::PreciseTimer);
    refreshTimer.setSingleShot(true);
    connect(&refreshTimer, &QTimer::timeout, this, &MyVideoView::onRefresh);
    connect(surface, &QOpenGLWindow::frameSwapped, this, &MyVideoView::onFrameSwapped);
}

MyVideoView::~MyVideoView() {
    // The window and its context go with the container, after this object:
    // the release must not run from the context's signal then.
    disconnect(contextDestructionConnection);
    surface->detachFromView();
    if (rendererReady) {
        surface->makeCurrent();
        renderer.release();
        surface->doneCurrent();
    }
}

QSurfaceFormat MyVideoView::preferredSurfaceFormat() {
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setSwapInterval(1);
    return format;
}

QOpenGLContext *MyVideoView::context() const { return surface->context(); }

void MyVideoView::setPictureSource(VideoPictureSource *newSource) {
    source = newSource;
    repaintPicture();
    wakeRefresh();
}

void MyVideoView::repaintPicture() { surface->update(); }

void MyVideoView::addOverlay(QWidget *overlay) {
    overlays.emplace_back(overlay);
    watchOverlayWidget(overlay);
    overlaysChanged();
}

void MyVideoView::watchOverlayWidget(QObject *object) {
    if (!object->isWidgetType()) {
        return;
    }
    object->installEventFilter(this);
    for (QObject *child : object->children()) {
        watchOverlayWidget(child);
    }
}

bool MyVideoView::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
        case QEvent::ChildAdded:
            watchOverlayWidget(static_cast<QChildEvent *>(event)->child());
            overlaysChanged();
            break;
        case QEvent::Paint:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::ChildRemoved:
            // Our own rendering of the overlays paints them too.
            if (!isRenderingOverlays) {
                overlaysChanged();
            }
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void MyVideoView::overlaysChanged() {
    areOverlaysChanged = true;
    surface->update();
}

void MyVideoView::resizeEvent(QResizeEvent *) {
    container->setGeometry(rect());
    overlaysChanged();
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
        surface->update();
    }
    scheduleNextRefresh(pacing.millisecondsToNextDecision(RefreshPacing::Clock::now()));
}

void MyVideoView::onFrameSwapped() {
    const int milliseconds = pacing.noteSwap(RefreshPacing::Clock::now());
    if (refreshTimer.isActive()) {
        scheduleNextRefresh(milliseconds);
    }
}

void MyVideoView::initializeSurface() {
    rendererReady = renderer.initialize();
    areOverlaysChanged = true;
    disconnect(contextDestructionConnection);
    contextDestructionConnection =
        connect(surface->context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
            surface->makeCurrent();
            renderer.release();
            rendererReady = false;
            surface->doneCurrent();
        });
}

void MyVideoView::surfaceResized() {
    if (source != nullptr) {
        source->viewDidResize();
    }
    areOverlaysChanged = true;
}

// Every repaint draws the whole window: the picture again (the sources keep
// their current picture for this) and the overlays over it.
void MyVideoView::paintSurface() {
    ++repaints;
    if (!rendererReady) {
        return;
    }
    const QSize viewport = surface->size() * surface->devicePixelRatio();
    if (areOverlaysChanged) {
        uploadOverlays(viewport);
    }
    if (source == nullptr) {
        renderer.clear(viewport);
    } else {
        // The window's first paint, its exposure, is the longest (the driver
        // sets up its drawing) and may start just after the first refresh
        // found no picture: it asks a decision of its own, so that a first
        // picture decoded meanwhile is not left for the paint after it.
        if (draws == 0 && source->isAsynchronous()) {
            ++decisions;
            source->canDrawPicture();
        }
        ++draws;
        source->drawPicture(renderer, viewport);
    }
    renderer.drawOverlay(viewport);
}

void MyVideoView::uploadOverlays(QSize viewportPixels) {
    areOverlaysChanged = false;
    // Kept between uploads: the time slider repaints as playback moves while
    // the controls show, and a fresh image of the view's size costs its page
    // faults each time.
    if (overlayImage.size() != viewportPixels) {
        overlayImage = QImage(viewportPixels, QImage::Format_RGBA8888_Premultiplied);
    }
    QImage &image = overlayImage;
    image.fill(Qt::transparent);
    std::vector<QRect> areas;
    {
        const qreal ratio = surface->devicePixelRatio();
        QPainter painter(&image);
        painter.scale(ratio, ratio);
        isRenderingOverlays = true;
        for (const QPointer<QWidget> &overlay : overlays) {
            if (!overlay || !overlay->isVisible()) {
                continue;
            }
            const QPoint offset = mapFromGlobal(overlay->mapToGlobal(QPoint()));
            const QRect placed = QRect(offset, overlay->size()).intersected(rect());
            if (placed.isEmpty()) {
                continue;
            }
            overlay->render(&painter, offset, QRegion(), QWidget::DrawChildren);
            const QRect inPixels(QPoint(int(placed.left() * ratio), int(placed.top() * ratio)),
                                 QSize(int(std::ceil(placed.width() * ratio)),
                                       int(std::ceil(placed.height() * ratio))));
            areas.push_back(inPixels);
        }
        isRenderingOverlays = false;
    }
    // Captions and messages cover the whole view and paint little of it:
    // only what was painted is blended, every refresh.
    for (QRect &area : areas) {
        area = paintedBoundsWithin(image, area);
    }
    std::erase_if(areas, [](const QRect &area) { return area.isEmpty(); });
    renderer.setOverlay(image, withoutOverlaps(std::move(areas)));
}

QImage MyVideoView::grabFramebuffer() {
    if (!rendererReady) {
        return {};
    }
    surface->makeCurrent();
    const QSize viewport = surface->size() * surface->devicePixelRatio();
    if (areOverlaysChanged) {
        uploadOverlays(viewport);
    }
    QOpenGLFramebufferObject target(viewport);
    target.bind();
    if (source == nullptr) {
        renderer.clear(viewport);
    } else {
        source->drawPicture(renderer, viewport);
    }
    renderer.drawOverlay(viewport);
    target.release();
    QImage image = target.toImage(true);
    surface->doneCurrent();
    return image;
}

}  // namespace tolvane
