#pragma once

#include <QOpenGLWidget>
#include <QTimer>

#include "engine/presentation/video_picture_renderer.h"
#include "views/refresh_pacing.h"
#include "views/video_picture_source.h"

namespace tolvane {

// The widget that shows the video. Once per display refresh, while the
// source is asynchronous, it asks the source's decision and repaints only
// when the answer is yes (or when the widget itself needs painting): a 24 fps
// video on a 60 Hz display costs 24 repaints a second, not 60.
// Thread-safety: main thread only.
class MyVideoView : public QOpenGLWidget {
    Q_OBJECT
public:
    explicit MyVideoView(QWidget *parent = nullptr);
    ~MyVideoView() override;

    // Not owned; must outlive the view or be reset to null first.
    void setPictureSource(VideoPictureSource *source);
    // Starts or stops the per-refresh questions (asked only while the source
    // is asynchronous anyway); call when playback starts, pauses or seeks.
    void wakeRefresh();

    int decisionCount() const { return decisions; }
    int drawCount() const { return draws; }
    int repaintCount() const { return repaints; }

    // Format every video view asks for; set as the default before the first
    // window is shown.
    static QSurfaceFormat preferredSurfaceFormat();

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;

private:
    void onRefresh();
    void onFrameSwapped();
    void updateRefreshRate();
    void scheduleNextRefresh(int milliseconds);

    VideoPictureSource *source = nullptr;
    VideoPictureRenderer renderer;
    RefreshPacing pacing{60.0};
    QTimer refreshTimer;
    QMetaObject::Connection contextDestructionConnection;
    bool drawPending = false;
    bool rendererReady = false;
    int decisions = 0;
    int draws = 0;
    int repaints = 0;
};

}  // namespace tolvane
