#pragma once

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QList>
#include <QMenu>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

namespace tolvane {

class AppController;

// Every menu command of the player with its key equivalent, as one table,
// and the context menu that holds them (the borderless main window has no
// menu bar). The actions are added to the main window, so their keys work
// wherever the window has the focus. Commands forward to the controller; the
// open commands run the file dialogs first and end in openPanelOK.
// Thread-safety: main thread only.
class PlayerMenus : public QObject {
    Q_OBJECT
public:
    // One row of the table: the menu it belongs to, the title's message key,
    // the keys, and what it does.
    struct Command {
        const char *menuKey;
        const char *titleKey;
        QList<QKeySequence> keys;
        std::function<void()> trigger;
        // Non-null for a check mark: whether it is on.
        std::function<bool()> isChecked = {};
        // Null: always enabled.
        std::function<bool()> isEnabled = {};
    };

    PlayerMenus(AppController &controller, QWidget *window);
    ~PlayerMenus() override;

    // The table, in menu order (also for the README's key list).
    const std::vector<Command> &commands() const { return table; }
    const QList<QAction *> &actions() const { return commandActions; }
    QMenu &contextMenu() { return menu; }
    // Shows the context menu at `globalPosition`, its items brought up to date.
    void popUpContextMenu(QPoint globalPosition);

Q_SIGNALS:
    void preferencesRequested();
    void quitRequested();

private:
    std::vector<Command> buildCommands();
    void runOpenFilesDialog();
    void runOpenFolderDialog();
    void showMenuState();

    AppController &controller;
    QWidget *window;
    std::vector<Command> table;
    QMenu menu;
    QAction *recentAction = nullptr;
    QList<QAction *> commandActions;
    std::unique_ptr<QActionGroup> aspectRatioGroup;
};

}  // namespace tolvane
