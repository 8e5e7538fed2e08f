#include "views/application_windows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include "app/app_controller.h"

namespace tolvane {

ApplicationWindows::ApplicationWindows(AppController &controllerToUse,
                                       MessageBoxInteraction &interaction)
    : controller(controllerToUse),
      showWindow(controllerToUse),
      iWindow(controllerToUse),
      listWindow(controllerToUse),
      pWindow(controllerToUse) {
    interaction.setParentWindow(&showWindow);
    connect(&showWindow, &MyWindow::quitRequested, this, &ApplicationWindows::quitRequested);
    connect(&showWindow.menus(), &PlayerMenus::preferencesRequested, this, [this] {
        pWindow.show();
        pWindow.raise();
        pWindow.activateWindow();
    });
    connect(&controller, &AppController::windowVisibilityRequested, this,
            [this](WindowKind kind, bool isVisible) {
                QWidget *window = windowOfKind(kind);
                if (isVisible) {
                    window->show();
                    window->raise();
                } else {
                    window->hide();
                }
            });
    connect(&controller, &AppController::windowFrameRequested, this,
            [this](WindowKind kind, const QRect &frame, bool) {
                // The main window places itself (full screen has the last word).
                if (kind != WindowKind::show && frame.isValid()) {
                    windowOfKind(kind)->setGeometry(frame);
                    reportHiddenFrame(kind);
                }
            });

    for (QScreen *screen : QGuiApplication::screens()) {
        watchScreen(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        watchScreen(screen);
        reportScreens();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { reportScreens(); });
    showWindow.winId();  // the native window exists, so its screen can be watched
    connect(showWindow.windowHandle(), &QWindow::screenChanged, this, [this] { reportScreens(); });
    reportScreens();
    // Companion windows that never show still have a frame to remember.
    reportHiddenFrame(WindowKind::inspector);
    reportHiddenFrame(WindowKind::list);
}

ApplicationWindows::~ApplicationWindows() = default;

// A hidden window gets no move or resize events: its frame is told here.
void ApplicationWindows::reportHiddenFrame(WindowKind kind) {
    QWidget *window = windowOfKind(kind);
    if (!window->isVisible()) {
        controller.windowDidMoveOrResize(kind, window->geometry());
    }
}

QWidget *ApplicationWindows::windowOfKind(WindowKind kind) {
    switch (kind) {
        case WindowKind::inspector:
            return &iWindow;
        case WindowKind::list:
            return &listWindow;
        case WindowKind::show:
            break;
    }
    return &showWindow;
}

void ApplicationWindows::watchScreen(QScreen *screen) {
    connect(screen, &QScreen::availableGeometryChanged, this, [this] { reportScreens(); });
    connect(screen, &QScreen::geometryChanged, this, [this] { reportScreens(); });
}

void ApplicationWindows::reportScreens() {
    QList<ScreenGeometry> screens;
    const QList<QScreen *> attached = QGuiApplication::screens();
    for (const QScreen *screen : attached) {
        screens.append({screen->geometry(), screen->availableGeometry()});
    }
    const QScreen *mainScreen =
        showWindow.windowHandle() != nullptr ? showWindow.windowHandle()->screen() : nullptr;
    controller.setScreens(screens, std::max(0, int(attached.indexOf(mainScreen))));
}

}  // namespace tolvane
