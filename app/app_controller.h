#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QVariant>
#include <chrono>
#include <memory>
#include <optional>

#include "app/display_sleep_assertion.h"
#include "app/native_mode_player.h"
#include "app/opened_items.h"
#include "app/playlist.h"
#include "app/seek_press_run.h"
#include "app/transport_player.h"
#include "app/user_interaction.h"
#include "base/named_mutex.h"
#include "base/notification_center.h"
#include "subtitles/my_subtitle.h"

namespace tolvane {

// What the views post when paths are dropped or handed over: "paths" holds a
// QStringList of local paths, "url" one QUrl (or its local path as a string).
inline constexpr const char *kDraggedFilePathsNotification = "MYDraggedFilePaths";
inline constexpr const char *kDesktopDraggedFileURLNotification = "MYDesktopDraggedFileURL";
inline constexpr const char *kDraggedFilePathsKey = "paths";
inline constexpr const char *kDesktopDraggedFileURLKey = "url";

class MyCAOpenGLLayer;
class MoreFilesQuestion;
class PlayedStateRecords;
class PlaylistBuilder;
class PlaylistDurations;
class FilesFoldersOpening;
class ItemMoveBookkeeping;
class UserDefaults;

// The windows the controller places and remembers.
enum class WindowKind { show, inspector, list };

// Which player's pictures the video view shows.
enum class PictureMode { none, ffmpeg, native };

// One screen, in device-independent pixels: its whole geometry and the part
// left to windows (without panels and docks).
struct ScreenGeometry {
    QRect fullFrame;
    QRect visibleFrame;
};

// What the inspector window shows.
struct InspectorState {
    QString fileName;           // "NOTOPENEDVIDEO"'s text while nothing is open
    QString decodingLabel;      // "FF" or "NT"
    QString accelerationLabel;  // "H.264", "10-bit" or " "
    QString frameRate = QStringLiteral("---");
    QString bitRate = QStringLiteral("---");
    QString pictureSize = QStringLiteral("---");
    QString videoFormat = QStringLiteral("---");
    QStringList soundTracks;  // one title per audio stream
    int selectedSoundTrack = -1;
    QStringList captionTracks;  // one title per subtitle entry (and the integrated row)
    QList<qint64> selectedCaptionTracks;
    qint32 fstDelayMsec = 0;
    qint32 sndDelayMsec = 0;
    int textEncodingItem = 3;
    bool isGPUAccCheckEnabled = true;
};

// One row of the playlist table.
struct PlaylistRow {
    QString displayName;
    double playedFraction = 0.0;  // 0..1
    bool isDone = false;
    bool isCurrent = false;
    bool isSkipped = false;  // a Blu-ray stream file marked "!"
};

// What the control panel shows.
struct TransportState {
    bool isPlaying = false;
    double positionSec = 0.0;
    double durationSec = 0.0;
    QString currentTimeText = QStringLiteral("00:00:00");
    QString durationText = QStringLiteral("00:00:00");
    double volume = 1.0;  // 0..5, 1 the normal level
    bool isPlayEnabled = false;
    bool isCaptionEnabled = false;
    bool isPrevFileEnabled = false;
    bool isNextFileEnabled = false;
    QString playlistLabel;  // "%d/%d" with two items or more, else " "
};

// The checkable menu items and the ones that come and go.
struct MenuState {
    bool isAutoPlay = true;
    QString aspectRatioName = QStringLiteral("SAR");
    bool isAwesome = false;
    bool isAnotherDefaultColor = false;
    bool isMoveToTrashEnabled = false;
    bool isSizeChangeEnabled = true;
    bool isFullScreen = false;
    bool isInspectorShown = false;
    bool isPlaylistShown = false;
};

// The application controller: starts and stops the player, keeps the
// settings and records, opens files and folders, chooses the decoding mode,
// builds the playlist and maps every user action onto the engine or the
// Native-mode player. Qt Core only: the windows in views/ forward their
// actions to it and show what its signals announce; tests drive it without
// a window.
//
// Lock order (each critical section takes exactly one; never nest):
// movieMutex, seekingMutex, encodingMutex, continueOpenMutex, modeMutex,
// resetMutex, displayCellMutex, windowPositionsMutex.
//
// Thread-safety: main thread only. The engine's worker threads reach it
// through notifications that it forwards to the main thread.
class AppController : public QObject {
    Q_OBJECT
public:
    struct Services {
        UserInteraction *userInteraction = nullptr;           // not owned; required
        std::unique_ptr<NativeModePlayer> nativePlayer;       // null: Native mode unavailable
        std::unique_ptr<DisplaySleepAssertion> displaySleep;  // null: the display may sleep
    };

    explicit AppController(Services services, QObject *parent = nullptr);
    ~AppController() override;

    // --- Start-up and shutdown (app_controller.cpp)
    // Loading: defaults registered, state, locks and observers in place.
    void awakeFromNib();
    // The windows exist: places them (frames restored per screen
    // configuration, pulled onto a screen), reopens nothing.
    void applicationDidFinishLaunching();
    // The orderly end: timers stopped, position stored, engine cleaned, the
    // played-state record and the window frames saved. Safe to call twice.
    void applicationWillTerminate();
    bool isWillTerminateNotified() const { return willTerminateNotified; }
    int currentDecodingMode() const;
    // The per-font caption settings of the current "FontName" (preferences).
    QVariant valueForCPFSetting(const QString &cpfSetting) const;
    void saveValue(const QVariant &value, const QString &cpfSetting);
    UserDefaults &userDefaults() { return *defaults; }

    // The screens and the windows' frames as the windowing system has them;
    // the views report every change (windowDidMoveOrResize, windowDidChangeScreen).
    void setScreens(const QList<ScreenGeometry> &screens, int mainWindowScreenIndex);
    void windowDidMoveOrResize(WindowKind window, const QRect &frame);
    QRect windowFrame(WindowKind window) const;

    // --- Opening (app_controller_opening.cpp)
    void openFile(const QString &path);         // file manager, second instance
    void openPanelOK(const QList<QUrl> &urls);  // Open Files / Open Folder
    void reOpenFile();                          // File > Open Recent, mode switches
    void finallyOpenFilesFolders(const QList<QUrl> &urls);
    void cleanBeforeLoading();
    void loadMovieFile(const QUrl &url);
    void continueOpenFile();
    void doubleClickedAtTableView(int row);
    void chooseOpenedList(int indexList);
    void clickChangeDecoding();
    void clickDecodingPUBT(int decodingPopUpItem);
    void clickIsGPUAccCheck(bool isOn);
    void clickIs10bitModeCheck(bool isOn);
    void clickResetPlayedStateButton();
    void moveToTrash();
    // The where folder (preferences): an empty URL clears it.
    void setWhereFolder(const QUrl &folder);
    QUrl whereFolder() const;
    void changeTextEncoding(int textEncodingItem);
    // `audioTrackIndex` is a row of inspectorState().soundTracks.
    void changeAudioTrack(int audioTrackIndex);
    void toggleCaptionTrack(qint64 row);
    // The caption choice or a delay changed (caption buttons, the inspector):
    // the reopen fields take them, so that they are stored and carried over.
    void subtitleChoicesChanged();
    bool hasRecentItem() const;
    QString recentItemTitle() const;

    // --- The movie timer (app_controller_movie_timer.cpp): one tick each
    // kMovieTimerInterval while a file is loaded; public so that tests tick.
    void updateDataAboutMovieForFF();
    void updateDataAboutMovieForNT();

    // --- Transport (app_controller_transport.cpp)
    void clickPlayPauseButton();
    void clickForwardMenu();
    void clickBackwardMenu();
    void clickSkipForwardMenu();
    void clickVolumeUpMenu();
    void clickVolumeDownMenu();
    void clickVolumeSlider(double value);
    void clickMuteButton();
    void clickAutoPlayMenu();
    void clickPrevFileButton();
    void clickNextFileButton();
    void clickTimeSlider(double targetSec);
    // A seek press to `targetSec` (MPRIS Seek and SetPosition).
    void seekPressTo(double targetSec);
    void clickLaterCaptionButton();
    void clickEarlyCaptionButton();
    void clickCaptionPositionUp();
    void clickCaptionPositionDown();
    void restorePlayRate();
    double finalCurrentTimeSecForFF() const;
    static QString representHMSfromSEC(double sec);
    // Whether previous (-1) or next (+1) would reach another item.
    bool hasPlaylistItemInDirection(int direction) const;
    // MPRIS Raise and Quit: the main window to the front; the same orderly
    // end as the Quit menu.
    void raiseMainWindow();
    void requestQuit();

    // --- Window size, aspect ratio and full screen (app_controller_sizing.cpp)
    bool determineNaturalSizeRatio();
    // After a successful load in either mode: the window takes the file's
    // natural size (limited to the screen) unless determineNaturalSizeRatio()
    // says the user's size for this kind of file stands.
    void resizeWindowToLoadedFile();
    void changeWindowRatioTo(double ratio, const QString &name);
    // "SAR", "4:3", "16:9", "1.85:1", "2.35:1" or "2.40:1".
    void clickAspectRatioMenu(const QString &name);
    void clickIncreaseSizeMenu();
    void clickDecreaseSizeMenu();
    void clickFullScreen();
    void leaveFullScreen();
    void clickAwesomeMenu();
    void clickAnotherDefaultColorMenu();

    // --- Companion windows
    void clickInspectorButton();
    void clickPlaylistButton();
    void willCloseInspector();
    void willClosePlaylist();

    // --- What the views show
    const InspectorState &inspectorState() const { return inspector; }
    QList<PlaylistRow> playlistRows() const;
    const QStringList &openedListTitles() const { return openedItems.openedListTitles; }
    int indexList() const { return openedItems.indexList; }
    QString playlistCountText() const;  // "ITEMS" filled with the count
    TransportState transportState() const;
    const MenuState &menuState() const { return menu; }
    PictureMode pictureMode() const { return shownPictureMode; }
    MyCAOpenGLLayer &engine() { return *myGLLayer; }
    NativeModePlayer *nativePlayer() const { return services.nativePlayer.get(); }
    // The subtitle of the loaded video: the same object for the whole run,
    // reloaded at every load.
    subtitles::MySubtitle &subtitle() { return iSubtitle; }
    // The caption clock: the active player's position in milliseconds.
    qint32 playbackTimeMsec() const;
    const Playlist &playlist() const { return playlistState; }

Q_SIGNALS:
    void messageChanged(const QString &text);  // empty hides the message layer
    void fileNameChanged(const QString &name, bool isVisible);
    void loadingCircleChanged(bool isVisible);
    void countDownChanged(const QString &text);  // empty hides it
    void inspectorChanged();
    void playlistChanged();
    // Only the played fractions of rows changed (their files' durations came in).
    void playlistRowsChanged();
    void transportChanged();
    void menuStateChanged();
    void pictureModeChanged(tolvane::PictureMode mode);
    void subtitleReloaded();
    void captionsNeedRedraw();
    void backgroundColorChanged(bool isBlack);
    void windowLevelChanged(bool isOnTop);
    // Show or hide a companion window.
    void windowVisibilityRequested(tolvane::WindowKind window, bool isVisible);
    // Move and size a window; `showMessage` announces the new size.
    void windowFrameRequested(tolvane::WindowKind window, const QRect &frame, bool showMessage);
    // Enter (with the picture's rectangle in the full-screen window) or leave
    // full screen.
    void fullScreenRequested(bool isFullScreen, const QRect &pictureRect);
    void quitRequested();
    // --- Transport (app_controller_transport.cpp)
    // The position jumped to `positionSec` (a seek press, a rewind).
    void seeked(double positionSec);

private:
    // --- Start-up and shutdown (app_controller.cpp)
    void registerObservers();
    void restoreWindowPositionsAfterFinishLaunching();
    void storeWindowPositionsBeforeQuit();
    void alertWhenIsNotExistWhereFolder();
    void alertWhenAudioDecodingError();
    void catchedInterlacedFrameInFFmpegMode();
    void showMessage(const QString &text, std::chrono::milliseconds shownFor);

    // --- Opening (app_controller_opening.cpp)
    void openViewDragFile(const QStringList &paths);
    void openDesktopDragFile(const QUrl &url);
    void loadMovieFileForFF(const QUrl &url);
    void loadFailed(const QString &result);
    void showLoadedFileState(const QUrl &url);
    void reloadSubtitle(const QUrl &videoURL);
    void finishOpeningWithEmptyPlaylist(bool wasFilePlaying);
    std::optional<double> playingPositionSec();
    void refreshMoveToTrashEnabled();
    void alertWhenRecentOpenFileFromNotWritableDisk(const QList<QUrl> &urls);

    // --- Native mode (app_controller_native.cpp)
    void loadMovieFileForNT(const QUrl &url);
    void nativeLoadFinished(const NativeModePlayer::LoadResult &result);
    void finallyLoadMovieFileForNT(const NativeModePlayer::LoadResult &result);
    // Offers "FFmpeg" / "CANCEL"; true when the user switched (the file reopens).
    bool askSwitchToFFmpeg(const QString &title, const QString &informativeText);
    void stopHandleAVStatusThread();
    void nativeCountDownTick();

    // --- Switches (app_controller_switches.cpp)
    bool isChangeRefused() const;
    void switchDecodingModeTo(int decodingPopUpItem);
    void reopenAfterSwitchingDecodingMode();
    void reopenCurrentFileAtSamePosition();
    void resetPlayedState();

    // --- Movie timer (app_controller_movie_timer.cpp)
    void movieTimerTick();
    void movieReachedItsEnd();
    void updateDisplaySleepAssertion(double rate);

    // --- State of the whole run (app_controller.cpp)
    Services services;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<MoreFilesQuestion> moreFilesQuestion;
    std::unique_ptr<MyCAOpenGLLayer> myGLLayer;
    subtitles::MySubtitle iSubtitle;
    Playlist playlistState;
    OpenedItems openedItems;
    std::unique_ptr<PlayedStateRecords> records;
    std::unique_ptr<PlaylistBuilder> playlistBuilder;
    std::unique_ptr<FilesFoldersOpening> filesFoldersOpening;
    std::unique_ptr<ItemMoveBookkeeping> itemMoveBookkeeping;
    std::vector<ScopedObserver> observers;

    mutable NamedRecursiveMutex movieMutex{"movie"};
    NamedRecursiveMutex seekingMutex{"seeking"};
    NamedRecursiveMutex encodingMutex{"encoding"};
    NamedRecursiveMutex continueOpenMutex{"continueOpen"};
    NamedRecursiveMutex modeMutex{"mode"};
    NamedRecursiveMutex resetMutex{"reset"};
    mutable NamedRecursiveMutex displayCellMutex{"displayCell"};
    NamedRecursiveMutex windowPositionsMutex{"windowPositions"};

    InspectorState inspector;
    MenuState menu;
    PictureMode shownPictureMode = PictureMode::none;
    QList<ScreenGeometry> screens;
    int mainWindowScreenIndex = 0;
    QRect frames[3];

    QTimer movieTimer;
    QTimer messageHideTimer;
    QTimer nativeCountDownTimer;
    int nativeCountDownLeftSec = 0;
    bool isNativeLoading = false;
    // The stream index behind each row of inspector.soundTracks.
    QList<int> soundTrackStreamIndexes;
    // The six frame strings: main, inspector, playlist; one screen, then several.
    QString windowFrameStrings[6];
    bool isWhereFolderRestored = false;
    bool hasObservers = false;
    bool willTerminateNotified = false;
    bool isCaptionON = true;
    bool isAutomaticStartPlay = true;
    bool isAutoPlayed = false;
    bool isDoubleClickedPlayList = false;
    bool isPreventingSleep = false;
    bool isEndForFF = false;
    double currentPlayPercentage = -100.0;
    int countEnergy = 0;
    int countFinalForFF = 0;
    double lastTickPositionSec = -1.0;
    double cTimeSecForFF = 0.0;
    double cRatio = 0.0;
    QSizeF naturalPictureSize{960.0, 540.0};
    // Durations of the playlist's files for the played fraction of their rows.
    std::unique_ptr<PlaylistDurations> playlistDurations;

    // --- Transport state (app_controller_transport.cpp)
    // The player of the decoding mode in force, or null while it has no file.
    std::unique_ptr<TransportPlayer> activeTransportPlayer();
    void seekPressWith(double targetSec, std::chrono::milliseconds restoreDelay);
    void setVolumeOfActivePlayer(double volume);
    void changeCaptionDelayBy(qint32 deltaMsec);
    void changeCaptionMarginBy(double delta);

    SeekPressRun seekPressRun{seekingMutex};
    // The file the run of seek presses began on: a pending end that finds
    // another file loaded drops the run instead of resuming the new one.
    QUrl seekPressRunURL;
    double volumeSliderValue = 1.0;  // 0..5, 1 the normal level

    // --- Window sizing (app_controller_sizing.cpp)
    QRect visibleFrameOfMainScreen() const;
    QRect fullFrameOfMainScreen() const;
    QSize naturalSizeAtRatio() const;
    void requestMainWindowFrame(const QRect &frame, bool showMessage);
    void changeMainWindowSizeBy(int step);
    // What the last determineNaturalSizeRatio() found: the loaders set
    // naturalPictureSize themselves, so the comparison keeps its own copy.
    QSizeF determinedNaturalSize;
    double determinedRatio = 0.0;
};

}  // namespace tolvane
