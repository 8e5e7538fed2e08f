#pragma once

#include <QLabel>
#include <QSlider>
#include <QToolButton>
#include <QWidget>

#include "views/control_panel_layout.h"

namespace tolvane {

class AppController;

// The control panel over the bottom of the picture: time slider with the
// current-time and duration labels, play/pause, previous/next file,
// earlier/later caption, mute and volume (0 to 5), inspector, playlist and
// full-window buttons. Every control forwards to the controller; what the
// panel shows comes from the controller's transport and menu state. A press
// on the panel's background falls through to the view, which moves the window.
// Thread-safety: main thread only.
class ControlPanel : public QWidget {
    Q_OBJECT
public:
    ControlPanel(AppController &controller, QWidget *parent);

    // Positions the panel for a parent of `viewSize`.
    void placeInView(QSize viewSize);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void showTransportState();
    void showMenuState();
    QToolButton *makeButton(const char *iconName, const char *toolTipKey);

    AppController &controller;
    QLabel currentTimeLabel{this};
    QSlider timeSlider{Qt::Horizontal, this};
    QLabel durationLabel{this};
    QToolButton *inspectorButton;
    QToolButton *playlistButton;
    QToolButton *earlyCaptionButton;
    QToolButton *laterCaptionButton;
    QToolButton *prevFileButton;
    QToolButton *playPauseButton;
    QToolButton *nextFileButton;
    QToolButton *muteButton;
    QSlider volumeSlider{Qt::Horizontal, this};
    QToolButton *fullWindowButton;
};

}  // namespace tolvane
