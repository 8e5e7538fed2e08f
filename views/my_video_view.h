#pragma once

#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "engine/presentation/video_picture_renderer.h"
#include "views/refresh_pacing.h"
#include "views/video_picture_source.h"

class QOpenGLContext;

namespace tolvane {

class VideoSurfaceWindow;

// The widget that shows the video. Once per display refresh, while the
// source is asynchronous, it asks the source's decision and repaints only
// when the answer is yes (or when the view itself needs painting): a 24 fps
// video on a 60 Hz display costs 24 repaints a second, not 60.
//
// The picture is drawn by an OpenGL window of its own, embedded in this
// widget, straight into what the screen shows. A QOpenGLWidget would draw
// into a texture that Qt then composes with the other widgets into the
// window at every repaint: two more passes over the whole window, which
// under a software rasteriser cost more than the picture itself. Widgets
// shown over the picture (captions, messages, the controls) are handed over
// with addOverlay(): they stay where they are and get the mouse as before,
// since the picture's window lets input through, but the picture's window
// covers them, so what they paint is drawn over the picture by OpenGL.
// Thread-safety: main thread only.
class MyVideoView : public QWidget {
    Q_OBJECT
public:
    explicit MyVideoView(QWidget *parent = nullptr);
    ~MyVideoView() override;

    // Not owned; must outlive the view or be reset to null first.
    void setPictureSource(VideoPictureSource *source);
    // Starts or stops the per-refresh questions (asked only while the source
    // is asynchronous anyway); call when playback starts, pauses or seeks.
    void wakeRefresh();
    // Draws the current picture again at the next refresh.
    void repaintPicture();

    // Draws `overlay` (and its children) over the picture wherever it
    // overlaps this view, again whenever it paints, moves, shows or hides.
    // Not owned; one that is destroyed is forgotten.
    void addOverlay(QWidget *overlay);

    int decisionCount() const { return decisions; }
    int drawCount() const { return draws; }
    int repaintCount() const { return repaints; }

    // The picture window's context; null until the view was first shown.
    QOpenGLContext *context() const;
    // What the picture's window shows: the picture with the overlays.
    QImage grabFramebuffer();

    // Format every video view asks for; set as the default before the first
    // window is shown.
    static QSurfaceFormat preferredSurfaceFormat();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class VideoSurfaceWindow;
    void initializeSurface();
    void surfaceResized();
    void paintSurface();

    void onRefresh();
    void onFrameSwapped();
    void updateRefreshRate();
    void scheduleNextRefresh(int milliseconds);
    void watchOverlayWidget(QObject *object);
    void overlaysChanged();
    void uploadOverlays(QSize viewportPixels);

    VideoPictureSource *source = nullptr;
    VideoPictureRenderer renderer;
    RefreshPacing pacing{60.0};
    QTimer refreshTimer;
    VideoSurfaceWindow *surface = nullptr;  // owned by `container`
    QWidget *container = nullptr;
    QMetaObject::Connection contextDestructionConnection;
    std::vector<QPointer<QWidget>> overlays;
    QImage overlayImage;
    bool areOverlaysChanged = false;
    bool isRenderingOverlays = false;
    bool rendererReady = false;
    int decisions = 0;
    int draws = 0;
    int repaints = 0;
};

}  // namespace tolvane
