#pragma once

#include <QVBoxLayout>
#include <QWidget>
#include <memory>

#include "engine/my_ca_opengl_layer.h"
#include "views/engine_picture_source.h"
#include "views/my_video_view.h"

namespace tolvane {

// The plain window that plays one file in FFmpeg mode until the application
// controller takes over: space plays and pauses, left and right seek three
// seconds with a preview picture, closing the window ends playback.
// Thread-safety: main thread only.
class FirstPlayerWindow : public QWidget {
public:
    FirstPlayerWindow();
    ~FirstPlayerWindow() override;

    // Opens and starts `path`; the engine's result code ("+1000" on success).
    QString openAndPlay(const QString &path);

    MyCAOpenGLLayer &engine() { return playbackEngine; }
    MyVideoView &videoView() { return view; }

    void togglePlayPause();
    void seekBy(double deltaSec);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    MyCAOpenGLLayer playbackEngine;
    EnginePictureSource pictureSource{playbackEngine};
    QVBoxLayout layout{this};
    MyVideoView view{this};
};

}  // namespace tolvane
