#pragma once

#include <QWidget>
#include <functional>

#include "base/notification_center.h"
#include "views/my_view.h"
#include "views/player_menus.h"

namespace tolvane {

class AppController;

// The main window: borderless, moved by dragging its background, with the
// title bar and control panel of its content view (MyView). The menus live in
// its context menu, opened by the right button ("MYRightMouseDown"); their
// keys work on the window. It reports its frame to the controller and obeys
// the controller's frame, level and full-screen requests. Closing it quits.
// Thread-safety: main thread only.
class MyWindow : public QWidget {
    Q_OBJECT
public:
    explicit MyWindow(AppController &controller, QWidget *parent = nullptr);
    ~MyWindow() override;

    MyView &view() { return content; }
    PlayerMenus &menus() { return *playerMenus; }

Q_SIGNALS:
    // The user closed the window or chose Quit: the application ends in order.
    void quitRequested();

protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void applyFullScreen(bool isFullScreen);
    void applyStaysOnTop(bool isOnTop);
    void reportFrame();

    AppController &controller;
    MyView content;
    std::unique_ptr<PlayerMenus> playerMenus;
    ScopedObserver rightMouseDownObserver;
    QRect frameBeforeFullScreen;
};

}  // namespace tolvane
