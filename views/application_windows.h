#pragma once

#include <QObject>

#include "views/media_info_window.h"
#include "views/message_box_interaction.h"
#include "views/my_window.h"
#include "views/playlist_window.h"
#include "views/preferences_window.h"

namespace tolvane {

class AppController;

// The four windows of the player and their wiring to the controller: which
// companion window shows, where each window goes, and which screens there
// are. Created after the controller and destroyed before it.
// Thread-safety: main thread only.
class ApplicationWindows : public QObject {
    Q_OBJECT
public:
    ApplicationWindows(AppController &controller, MessageBoxInteraction &interaction);
    ~ApplicationWindows() override;

    MyWindow &mainWindow() { return showWindow; }
    InspectorWindow &inspectorWindow() { return iWindow; }
    PlaylistWindow &playlistWindow() { return listWindow; }
    PreferencesWindow &preferencesWindow() { return pWindow; }

    // Tells the controller the screens as they are now and which one holds
    // the main window; called again at every change.
    void reportScreens();

Q_SIGNALS:
    void quitRequested();

private:
    QWidget *windowOfKind(WindowKind kind);
    void reportHiddenFrame(WindowKind kind);
    void watchScreen(QScreen *screen);

    AppController &controller;
    MyWindow showWindow;
    InspectorWindow iWindow;
    PlaylistWindow listWindow;
    PreferencesWindow pWindow;
};

}  // namespace tolvane
