#include "views/player_menus.h"

#include <QFileDialog>
#include <QStandardPaths>
#include <map>

#include "app/app_controller.h"
#include "base/localized_strings.h"

namespace tolvane {

namespace {

// The extensions the open dialog offers: those that every opening road accepts.
const QString kVideoNameFilter = QStringLiteral(
    "*.mov *.mp4 *.m4v *.avi *.mkv *.flv *.wmv *.rmvb *.m2ts *.ts *.tp *.trp "
    "*.MOV *.MP4 *.M4V *.AVI *.MKV *.FLV *.WMV *.RMVB *.M2TS *.TS *.TP *.TRP");
const QString kSubtitleNameFilter = QStringLiteral("*.smi *.srt *.SMI *.SRT");

struct AspectRatioItem {
    const char *name;  // the menu title and the stored "AspectRatio"
    Qt::Key key;
};
constexpr AspectRatioItem kAspectRatioItems[] = {
    {"SAR", Qt::Key_0},    {"4:3", Qt::Key_1},    {"16:9", Qt::Key_2},
    {"1.85:1", Qt::Key_3}, {"2.35:1", Qt::Key_4}, {"2.40:1", Qt::Key_5},
};

QKeySequence keys(QKeyCombination combination) { return QKeySequence(combination); }

}  // namespace

PlayerMenus::PlayerMenus(AppController &controllerToUse, QWidget *windowToUse)
    : QObject(windowToUse), controller(controllerToUse), window(windowToUse) {
    table = buildCommands();
    aspectRatioGroup = std::make_unique<QActionGroup>(this);
    std::map<QString, QMenu *> submenus;
    for (const Command &command : table) {
        const QString menuTitle = localizedString(command.menuKey);
        QMenu *&submenu = submenus[menuTitle];
        if (submenu == nullptr) {
            submenu = menu.addMenu(menuTitle);
        }
        const QString title = localizedString(command.titleKey);
        auto *action = new QAction(title, this);  // owned by the menus object
        action->setShortcuts(command.keys);
        action->setShortcutContext(Qt::WindowShortcut);
        action->setCheckable(bool(command.isChecked));
        connect(action, &QAction::triggered, this, [trigger = command.trigger] { trigger(); });
        if (QLatin1String(command.titleKey) == QLatin1String("MENU_OPEN_RECENT")) {
            recentAction = action;
        }
        if (QString(command.titleKey).startsWith(QLatin1String("MENU_RATIO_"))) {
            aspectRatioGroup->addAction(action);
        }
        submenu->addAction(action);
        commandActions.append(action);
    }
    window->addActions(commandActions);
    connect(&controller, &AppController::menuStateChanged, this, &PlayerMenus::showMenuState);
    showMenuState();
}

PlayerMenus::~PlayerMenus() = default;

std::vector<PlayerMenus::Command> PlayerMenus::buildCommands() {
    AppController &c = controller;
    const auto &state = c.menuState();
    std::vector<Command> commands = {
        {"MENU_FILE",
         "MENU_OPEN_FILES",
         {keys(Qt::CTRL | Qt::Key_O)},
         [this] { runOpenFilesDialog(); }},
        {"MENU_FILE",
         "MENU_OPEN_FOLDER",
         {keys(Qt::CTRL | Qt::SHIFT | Qt::Key_O)},
         [this] { runOpenFolderDialog(); }},
        {"MENU_FILE",
         "MENU_OPEN_RECENT",
         {keys(Qt::CTRL | Qt::SHIFT | Qt::Key_R)},
         [&c] { c.reOpenFile(); },
         nullptr,
         [&c] { return c.hasRecentItem(); }},
        {"MENU_FILE",
         "MENU_MOVE_TO_TRASH",
         {keys(Qt::Key_Delete)},
         [&c] { c.moveToTrash(); },
         nullptr,
         [&state] { return state.isMoveToTrashEnabled; }},
        {"MENU_FILE",
         "MENU_QUIT",
         {keys(Qt::CTRL | Qt::Key_Q)},
         [this] { Q_EMIT quitRequested(); }},

        {"MENU_PLAYBACK",
         "MENU_PLAY_PAUSE",
         {keys(Qt::Key_Space), keys(Qt::Key_MediaTogglePlayPause)},
         [&c] { c.clickPlayPauseButton(); }},
        {"MENU_PLAYBACK", "MENU_FORWARD", {keys(Qt::Key_Right)}, [&c] { c.clickForwardMenu(); }},
        {"MENU_PLAYBACK", "MENU_BACKWARD", {keys(Qt::Key_Left)}, [&c] { c.clickBackwardMenu(); }},
        {"MENU_PLAYBACK",
         "MENU_SKIP_FORWARD",
         {keys(Qt::SHIFT | Qt::Key_Right)},
         [&c] { c.clickSkipForwardMenu(); }},
        {"MENU_PLAYBACK", "MENU_VOLUME_UP", {keys(Qt::Key_Up)}, [&c] { c.clickVolumeUpMenu(); }},
        {"MENU_PLAYBACK",
         "MENU_VOLUME_DOWN",
         {keys(Qt::Key_Down)},
         [&c] { c.clickVolumeDownMenu(); }},
        {"MENU_PLAYBACK", "MENU_MUTE", {keys(Qt::Key_M)}, [&c] { c.clickMuteButton(); }},
        {"MENU_PLAYBACK",
         "MENU_AUTO_PLAY",
         {keys(Qt::CTRL | Qt::Key_A)},
         [&c] { c.clickAutoPlayMenu(); },
         [&state] { return state.isAutoPlay; }},
        {"MENU_PLAYBACK",
         "MENU_PREVIOUS_FILE",
         {keys(Qt::Key_PageUp), keys(Qt::Key_MediaPrevious)},
         [&c] { c.clickPrevFileButton(); }},
        {"MENU_PLAYBACK",
         "MENU_NEXT_FILE",
         {keys(Qt::Key_PageDown), keys(Qt::Key_MediaNext)},
         [&c] { c.clickNextFileButton(); }},

        {"MENU_CAPTIONS",
         "MENU_CAPTION_EARLIER",
         {keys(Qt::Key_Z)},
         [&c] { c.clickEarlyCaptionButton(); }},
        {"MENU_CAPTIONS",
         "MENU_CAPTION_LATER",
         {keys(Qt::Key_X)},
         [&c] { c.clickLaterCaptionButton(); }},
        {"MENU_CAPTIONS",
         "MENU_CAPTION_UP",
         {keys(Qt::Key_R)},
         [&c] { c.clickCaptionPositionUp(); }},
        {"MENU_CAPTIONS",
         "MENU_CAPTION_DOWN",
         {keys(Qt::SHIFT | Qt::Key_R)},
         [&c] { c.clickCaptionPositionDown(); }},
        {"MENU_CAPTIONS",
         "MENU_ANOTHER_COLOR",
         {keys(Qt::CTRL | Qt::Key_K)},
         [&c] { c.clickAnotherDefaultColorMenu(); },
         [&state] { return state.isAnotherDefaultColor; }},
    };
    static const char *const kRatioTitleKeys[] = {"MENU_RATIO_SAR",  "MENU_RATIO_4_3",
                                                  "MENU_RATIO_16_9", "MENU_RATIO_1_85",
                                                  "MENU_RATIO_2_35", "MENU_RATIO_2_40"};
    for (std::size_t index = 0; index < std::size(kAspectRatioItems); ++index) {
        const QString name = QLatin1String(kAspectRatioItems[index].name);
        commands.push_back({"MENU_VIEW",
                            kRatioTitleKeys[index],
                            {keys(Qt::CTRL | kAspectRatioItems[index].key)},
                            [&c, name] { c.clickAspectRatioMenu(name); },
                            [&state, name] { return state.aspectRatioName == name; },
                            [&state] { return state.isSizeChangeEnabled; }});
    }
    const std::vector<Command> viewAndWindows = {
        {"MENU_VIEW",
         "MENU_ALWAYS_ON_TOP",
         {keys(Qt::CTRL | Qt::Key_T)},
         [&c] { c.clickAwesomeMenu(); },
         [&state] { return state.isAwesome; }},
        {"MENU_VIEW",
         "MENU_INCREASE_SIZE",
         {keys(Qt::CTRL | Qt::Key_Equal), keys(Qt::CTRL | Qt::Key_Plus)},
         [&c] { c.clickIncreaseSizeMenu(); },
         nullptr,
         [&state] { return state.isSizeChangeEnabled; }},
        {"MENU_VIEW",
         "MENU_DECREASE_SIZE",
         {keys(Qt::CTRL | Qt::Key_Minus)},
         [&c] { c.clickDecreaseSizeMenu(); },
         nullptr,
         [&state] { return state.isSizeChangeEnabled; }},
        {"MENU_VIEW",
         "MENU_FULL_SCREEN",
         {keys(Qt::Key_F), keys(Qt::Key_F11)},
         [&c] { c.clickFullScreen(); },
         [&state] { return state.isFullScreen; }},
        {"MENU_VIEW",
         "MENU_LEAVE_FULL_SCREEN",
         {keys(Qt::Key_Escape)},
         [&c] { c.leaveFullScreen(); },
         nullptr,
         [&state] { return state.isFullScreen; }},
        {"MENU_WINDOW",
         "MENU_INSPECTOR",
         {keys(Qt::CTRL | Qt::Key_I)},
         [&c] { c.clickInspectorButton(); },
         [&state] { return state.isInspectorShown; }},
        {"MENU_WINDOW",
         "MENU_PLAYLIST",
         {keys(Qt::CTRL | Qt::Key_L)},
         [&c] { c.clickPlaylistButton(); },
         [&state] { return state.isPlaylistShown; }},
        {"MENU_WINDOW",
         "MENU_PREFERENCES",
         {keys(Qt::CTRL | Qt::Key_Comma)},
         [this] { Q_EMIT preferencesRequested(); }},
    };
    commands.insert(commands.end(), viewAndWindows.begin(), viewAndWindows.end());
    return commands;
}

void PlayerMenus::showMenuState() {
    for (qsizetype index = 0; index < commandActions.size(); ++index) {
        const Command &command = table[std::size_t(index)];
        QAction *action = commandActions[index];
        if (command.isChecked) {
            action->setChecked(command.isChecked());
        }
        // Disabled actions ignore their keys: only state that really forbids
        // the command disables it.
        action->setEnabled(!command.isEnabled || command.isEnabled());
    }
    if (recentAction != nullptr) {
        const QString recent = controller.recentItemTitle();
        recentAction->setText(recent.trimmed().isEmpty()
                                  ? localizedString("MENU_OPEN_RECENT")
                                  : localizedString("MENU_OPEN_RECENT_ITEM").arg(recent));
    }
}

void PlayerMenus::popUpContextMenu(QPoint globalPosition) {
    showMenuState();
    menu.popup(globalPosition);
}

void PlayerMenus::runOpenFilesDialog() {
    const QString filter = QStringLiteral("%1 (%2 %3);;%4 (*)")
                               .arg(localizedString("OPEN_VIDEOS_AND_CAPTIONS"), kVideoNameFilter,
                                    kSubtitleNameFilter, localizedString("OPEN_ALL_FILES"));
    const QList<QUrl> urls = QFileDialog::getOpenFileUrls(
        window, localizedString("MENU_OPEN_FILES"),
        QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation)),
        filter);
    if (!urls.isEmpty()) {
        controller.openPanelOK(urls);
    }
}

void PlayerMenus::runOpenFolderDialog() {
    const QUrl folder = QFileDialog::getExistingDirectoryUrl(
        window, localizedString("MENU_OPEN_FOLDER"),
        QUrl::fromLocalFile(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation)));
    if (!folder.isEmpty()) {
        controller.openPanelOK({folder});
    }
}

}  // namespace tolvane
