#pragma once

#include <QVBoxLayout>
#include <QWidget>
#include <memory>

#include "engine/my_ca_opengl_layer.h"
#include "subtitles/my_subtitle.h"
#include "views/caption_overlay.h"
#include "views/caption_timer.h"
#include "views/engine_picture_source.h"
#include "views/my_video_view.h"

namespace tolvane {

// The plain window that plays one file in FFmpeg mode until the application
// controller takes over: space plays and pauses, left and right seek three
// seconds with a preview picture, 'c' shows or hides a second caption track,
// closing the window ends playback. The captions found beside the file are
// drawn over the picture, the default track first.
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
    // Shows the first other track that loaded as the second track, or hides
    // the second track when one is shown.
    void toggleSecondCaptionTrack();

    const subtitles::MySubtitle &subtitle() const { return captionSubtitle; }
    CaptionOverlay &overlay() { return captionOverlay; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    MyCAOpenGLLayer playbackEngine;
    EnginePictureSource pictureSource{playbackEngine};
    QVBoxLayout layout{this};
    MyVideoView view{this};
    subtitles::MySubtitle captionSubtitle;
    CaptionOverlay captionOverlay{&view};
    CaptionTimer captionTimer{captionSubtitle, captionOverlay,
                              [this] { return playbackTimeMsec(); }};

    void loadCaptions(const QString &videoPath, QSize pictureSize);
    qint32 playbackTimeMsec() const;
};

}  // namespace tolvane
