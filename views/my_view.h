#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

#include "views/caption_overlay.h"
#include "views/caption_timer.h"
#include "views/control_panel.h"
#include "views/engine_picture_source.h"
#include "views/gesture_notifications.h"
#include "views/my_video_view.h"
#include "views/native_picture_source.h"
#include "views/status_layers.h"
#include "views/title_bar.h"

namespace tolvane {

class AppController;
enum class PictureMode;

// The main window's content: the video view with the captions over it, the
// status layers, the title bar and the control panel. It is the drag view of
// the notifications: drops post "MYDraggedFilePaths", the right button
// "MYRightMouseDown", wheel and touchpad "MYScrollGesture…", pinches
// "MYMagnify…"; a double click asks for full screen, and a press on the
// background moves the window. The panel and the title bar show while the
// mouse moves and hide after a few idle seconds (the pointer too, in full
// screen).
// Thread-safety: main thread only.
class MyView : public QWidget {
    Q_OBJECT
public:
    // Keys of "MYRightMouseDown"'s user info: where the button went down.
    static constexpr const char *kGlobalXKey = "x";
    static constexpr const char *kGlobalYKey = "y";
    static constexpr int kChromeIdleHideMsec = 3000;

    explicit MyView(AppController &controller, QWidget *parent = nullptr);
    ~MyView() override;

    // Native mode's pictures come from `sink` (the Native-mode player's,
    // which must outlive the view); without one, Native mode shows none.
    void showNativePicturesFrom(QVideoSink *sink);

    MyVideoView &videoView() { return video; }
    TitleBar &titleBar() { return title; }
    ControlPanel &controlPanel() { return panel; }
    StatusLayers &statusLayers() { return layers; }
    CaptionOverlay &captionOverlay() { return overlay; }
    // Shows the title bar and control panel as a mouse move would.
    void showChrome();
    bool isChromeShown() const { return panel.isVisible(); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    bool event(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void showPictureMode(PictureMode mode);
    void showSubtitleReloaded();
    void hideChromeWhenIdle();
    void layOutVideo();
    void keepBottomCaptionsClearOfPanel();
    void showFileNameLayer();
    void postGestures(const std::vector<const char *> &names);

    AppController &controller;
    EnginePictureSource enginePictureSource;
    std::unique_ptr<NativePictureSource> nativePictureSource;
    MyVideoView video{this};
    CaptionOverlay overlay{&video};
    CaptionTimer captionTimer;
    StatusLayers layers{this};
    TitleBar title{this};
    ControlPanel panel;
    QTimer chromeHideTimer;
    GestureAccumulator gestures;
    QString fileName;
    bool isFileNameWanted = false;
    // The picture's rectangle in full screen (letterboxed); empty: the whole view.
    std::optional<QRect> fullScreenPictureRect;
};

}  // namespace tolvane
