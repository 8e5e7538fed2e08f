// Start-up, shutdown, settings and window frames of the controller.

#include "app/app_controller.h"

#include <QFileInfo>
#include <algorithm>
#include <iterator>

#include "app/bookmarks.h"
#include "app/files_folders_opening.h"
#include "app/item_move_bookkeeping.h"
#include "app/played_state_records.h"
#include "app/playlist_builder.h"
#include "app/playlist_durations.h"
#include "app/user_defaults.h"
#include "app/window_frame_strings.h"
#include "base/localized_strings.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

constexpr auto kMovieTimerInterval = 100ms;
constexpr auto kNativeCountDownStep = 1s;
constexpr QSize kMainWindowSizeAtLaunch{960, 540};

// "AspectRatio" names with the ratio they force; "SAR" and every other
// string leave the file's own ratio (cRatio 0).
struct ForcedAspectRatio {
    const char *name;
    double ratio;
};
constexpr ForcedAspectRatio kForcedAspectRatios[] = {
    {"4:3", 4.0 / 3.0}, {"16:9", 16.0 / 9.0}, {"1.85:1", 1.85}, {"2.35:1", 2.35}, {"2.40:1", 2.4},
};

// The "MOREFILES" offer of the playlist builders, asked as a modal choice.
class MoreFilesThroughUserInteraction final : public MoreFilesQuestion {
public:
    explicit MoreFilesThroughUserInteraction(UserInteraction &userInteraction_)
        : userInteraction(userInteraction_) {}
    bool askToAddMoreFiles(int countOfNewFiles) override {
        return userInteraction.askChoice(localizedString("MOREFILES"),
                                         localizedString("MOREFILESCONT").arg(countOfNewFiles),
                                         {localizedString("ADD"), localizedString("CANCEL")}) == 0;
    }

private:
    UserInteraction &userInteraction;
};

}  // namespace

AppController::AppController(Services services_, QObject *parent)
    : QObject(parent),
      services(std::move(services_)),
      defaults(std::make_unique<UserDefaults>()),
      moreFilesQuestion(
          std::make_unique<MoreFilesThroughUserInteraction>(*services.userInteraction)),
      myGLLayer(std::make_unique<MyCAOpenGLLayer>()) {
    records = std::make_unique<PlayedStateRecords>(playlistState, openedItems);
    playlistBuilder =
        std::make_unique<PlaylistBuilder>(playlistState, openedItems, *moreFilesQuestion);
    filesFoldersOpening = std::make_unique<FilesFoldersOpening>(playlistState, openedItems,
                                                                *playlistBuilder, *records);
    itemMoveBookkeeping = std::make_unique<ItemMoveBookkeeping>(playlistState, *records);
    playlistDurations =
        std::make_unique<PlaylistDurations>(&MyCAOpenGLLayer::durationSecOfMovieFile);
    connect(playlistDurations.get(), &PlaylistDurations::durationsArrived, this,
            &AppController::playlistRowsChanged);

    movieTimer.setInterval(kMovieTimerInterval);
    connect(&movieTimer, &QTimer::timeout, this, &AppController::movieTimerTick);
    messageHideTimer.setSingleShot(true);
    connect(&messageHideTimer, &QTimer::timeout, this, [this] { Q_EMIT messageChanged({}); });
    nativeCountDownTimer.setInterval(kNativeCountDownStep);
    connect(&nativeCountDownTimer, &QTimer::timeout, this, &AppController::nativeCountDownTick);
    if (NativeModePlayer *native = services.nativePlayer.get()) {
        connect(native, &NativeModePlayer::loadFinished, this, &AppController::nativeLoadFinished);
        connect(native, &NativeModePlayer::endReached, this, &AppController::movieReachedItsEnd);
    }
}

AppController::~AppController() {
    // The engine's workers post notifications: stopped first, none is in
    // flight towards this object while it goes.
    myGLLayer->cleanBeforeQuit();
    observers.clear();
    movieTimer.stop();
    if (services.nativePlayer) {
        services.nativePlayer->disconnect(this);
    }
}

void AppController::awakeFromNib() {
    runAtOperationBoundary("afn", [this] {
        const std::optional<QString> unreadable = defaults->checkSettingsReadable();
        if (unreadable) {
            logWarning(*unreadable);
        }
        Q_EMIT backgroundColorChanged(false);

        menu.isInspectorShown = defaults->value(QStringLiteral("IsShowInspector")).toBool();
        menu.isPlaylistShown = defaults->value(QStringLiteral("IsShowPlaylist")).toBool();

        const WhereFolder where = whereFolderFromWhereURLData(
            defaults->value(QStringLiteral("WhereURLData")).toByteArray());
        openedItems.whereAbsoluteURL = where.whereAbsoluteURL;
        openedItems.whereURL = where.whereURL;
        isWhereFolderRestored = !where.whereAbsoluteURL.isEmpty();

        volumeSliderValue =
            std::clamp(defaults->value(QStringLiteral("Volume")).toDouble(), 0.0, 5.0);

        Q_EMIT fileNameChanged(QStringLiteral("Tolvane"), false);

        inspector = InspectorState{};
        inspector.fileName = localizedString("NOTOPENEDVIDEO");

        playlistState = Playlist{};
        isCaptionON = true;
        isAutomaticStartPlay = true;
        isAutoPlayed = false;
        isDoubleClickedPlayList = false;
        isPreventingSleep = false;
        isEndForFF = false;
        currentPlayPercentage = -100.0;
        countEnergy = 0;
        countFinalForFF = 0;
        cTimeSecForFF = 0.0;

        inspector.accelerationLabel = QStringLiteral(" ");
        const bool isFFmpegMode = currentDecodingMode() != 0;
        inspector.decodingLabel = isFFmpegMode ? QStringLiteral("FF") : QStringLiteral("NT");
        inspector.isGPUAccCheckEnabled = isFFmpegMode;
        inspector.textEncodingItem =
            defaults->value(QStringLiteral("TextEncodingPopUpItem2")).toInt();

        menu.isAutoPlay = defaults->value(QStringLiteral("AutoPlay")).toInt() == 1;
        const QString aspectRatio = defaults->value(QStringLiteral("AspectRatio")).toString();
        cRatio = 0.0;
        menu.aspectRatioName = QStringLiteral("SAR");
        for (const ForcedAspectRatio &forced : kForcedAspectRatios) {
            if (aspectRatio == QLatin1String(forced.name)) {
                cRatio = forced.ratio;
                menu.aspectRatioName = aspectRatio;
            }
        }
        menu.isAwesome = defaults->value(QStringLiteral("Awesome")).toInt() == 1;
        Q_EMIT windowLevelChanged(menu.isAwesome);
        menu.isAnotherDefaultColor =
            defaults->value(QStringLiteral("AnotherDefaultColor")).toInt() == 1;
        menu.isMoveToTrashEnabled = false;

        for (QString &frameString : windowFrameStrings) {
            frameString.clear();
        }

        registerObservers();
        Q_EMIT inspectorChanged();
        Q_EMIT menuStateChanged();
        Q_EMIT playlistChanged();
        Q_EMIT transportChanged();
    });
}

void AppController::registerObservers() {
    if (hasObservers) {
        return;
    }
    hasObservers = true;
    // Every handler runs on the main thread at the next turn of its loop: the
    // engine posts from its worker threads, and a view posting from inside a
    // drop must not wait on the modal alerts an open may show. The right
    // button ("MYRightMouseDown") opens the window's menu, which the main
    // window observes itself: a borderless window has no menu bar.
    struct ObservedNotification {
        const char *name;
        std::function<void(AppController &, const Notification &)> handler;
    };
    const ObservedNotification table[] = {
        {kDraggedFilePathsNotification,
         [](AppController &c, const Notification &n) {
             c.openViewDragFile(
                 n.userInfo.value(QLatin1String(kDraggedFilePathsKey)).toStringList());
         }},
        {kDesktopDraggedFileURLNotification,
         [](AppController &c, const Notification &n) {
             const QVariant url = n.userInfo.value(QLatin1String(kDesktopDraggedFileURLKey));
             c.openDesktopDragFile(url.canConvert<QUrl>() && url.toUrl().isLocalFile()
                                       ? url.toUrl()
                                       : QUrl::fromLocalFile(url.toString()));
         }},
        {kAudioCodecErrorNotification,
         [](AppController &c, const Notification &) { c.alertWhenAudioDecodingError(); }},
        {kIsInterlacedNotification,
         [](AppController &c, const Notification &) { c.catchedInterlacedFrameInFFmpegMode(); }},
        {"MYScrollGestureLeft",
         [](AppController &c, const Notification &) { c.clickBackwardMenu(); }},
        {"MYScrollGestureRight",
         [](AppController &c, const Notification &) { c.clickForwardMenu(); }},
        {"MYScrollGestureUp",
         [](AppController &c, const Notification &) { c.clickVolumeUpMenu(); }},
        {"MYScrollGestureDown",
         [](AppController &c, const Notification &) { c.clickVolumeDownMenu(); }},
        {"MYMagnifyInc", [](AppController &c, const Notification &) { c.clickIncreaseSizeMenu(); }},
        {"MYMagnifyDec", [](AppController &c, const Notification &) { c.clickDecreaseSizeMenu(); }},
    };
    for (const ObservedNotification &observed : table) {
        auto handler = observed.handler;
        observers.emplace_back(observed.name, [this, handler](const Notification &notification) {
            QMetaObject::invokeMethod(
                this, [this, handler, notification] { handler(*this, notification); },
                Qt::QueuedConnection);
        });
    }
}

void AppController::applicationDidFinishLaunching() {
    runAtOperationBoundary("adfl", [this] {
        restoreWindowPositionsAfterFinishLaunching();
        QList<QRect> visibleFrames;
        for (const ScreenGeometry &screen : screens) {
            visibleFrames.append(screen.visibleFrame);
        }
        const qsizetype screenCount = std::max<qsizetype>(screens.size(), 1);
        const auto storedFrame = [&](WindowKind kind) {
            return windowFrameFromString(
                windowFrameStrings[windowFrameKeyIndex(int(kind), screenCount)]);
        };

        QRect mainFrame(QPoint(0, 0), kMainWindowSizeAtLaunch);
        if (const auto stored = storedFrame(WindowKind::show)) {
            mainFrame.moveTopLeft(stored->topLeft());
        } else if (!screens.isEmpty()) {
            const int index = std::clamp(mainWindowScreenIndex, 0, int(screens.size()) - 1);
            mainFrame.moveCenter(screens[index].visibleFrame.center());
        }
        frames[int(WindowKind::show)] = frameMovedOntoVisibleScreen(mainFrame, visibleFrames);
        Q_EMIT windowFrameRequested(WindowKind::show, frames[int(WindowKind::show)], false);
        for (const WindowKind kind : {WindowKind::inspector, WindowKind::list}) {
            if (const auto stored = storedFrame(kind)) {
                frames[int(kind)] = frameMovedOntoVisibleScreen(*stored, visibleFrames);
                Q_EMIT windowFrameRequested(kind, frames[int(kind)], false);
            }
        }
        if (menu.isInspectorShown) {
            Q_EMIT windowVisibilityRequested(WindowKind::inspector, true);
        }
        if (menu.isPlaylistShown) {
            Q_EMIT windowVisibilityRequested(WindowKind::list, true);
        }
        if (isWhereFolderRestored &&
            !QFileInfo(openedItems.whereAbsoluteURL.toLocalFile()).isDir()) {
            QMetaObject::invokeMethod(
                this, [this] { alertWhenIsNotExistWhereFolder(); }, Qt::QueuedConnection);
        }
    });
}

void AppController::applicationWillTerminate() {
    if (willTerminateNotified) {
        return;
    }
    willTerminateNotified = true;
    runAtOperationBoundary("awt", [this] {
        if (isPreventingSleep && services.displaySleep &&
            services.displaySleep->releaseAssertion()) {
            isPreventingSleep = false;
        }
        // Timer work runs on this thread, so none is in flight once they stop.
        movieTimer.stop();
        messageHideTimer.stop();
        nativeCountDownTimer.stop();

        if (NativeModePlayer *native = services.nativePlayer.get()) {
            NamedLockGuard lock(movieMutex);
            if (isNativeLoading) {
                native->cancelLoading();
                isNativeLoading = false;
            }
            if (native->hasMedia()) {
                native->setRate(0.0);
                if (isAutoPlayed && shownPictureMode == PictureMode::native) {
                    playlistState.reOpen.reOpenCTimeSec = native->currentTimeSec();
                }
                native->unload();
            }
        }
        const bool hasMovie = myGLLayer->isAlsoHaveMovie();
        {
            NamedLockGuard lock(movieMutex);
            if (hasMovie) {
                myGLLayer->setRate(0.0);
                if (isAutoPlayed && shownPictureMode == PictureMode::ffmpeg) {
                    playlistState.reOpen.reOpenCTimeSec = finalCurrentTimeSecForFF();
                }
            }
            shownPictureMode = PictureMode::none;
            Q_EMIT pictureModeChanged(shownPictureMode);
            myGLLayer->cleanBeforeQuit();
        }
        if (!playlistState.isEmpty()) {
            records->saveTotalFdFlsData(QStringLiteral("auto"));
        }
        iSubtitle = subtitles::MySubtitle{};
        Q_EMIT captionsNeedRedraw();
        Q_EMIT fileNameChanged({}, false);
        inspector.frameRate = inspector.bitRate = inspector.pictureSize = inspector.videoFormat =
            QStringLiteral("---");
        inspector.soundTracks.clear();
        inspector.captionTracks.clear();
        Q_EMIT inspectorChanged();
        storeWindowPositionsBeforeQuit();
        openedItems.whereURL.clear();
    });
}

int AppController::currentDecodingMode() const { return defaults->currentDecodingMode(); }

QVariant AppController::valueForCPFSetting(const QString &cpfSetting) const {
    return defaults->valueForCPFSetting(cpfSetting);
}

void AppController::saveValue(const QVariant &value, const QString &cpfSetting) {
    defaults->saveValue(value, cpfSetting);
}

void AppController::setScreens(const QList<ScreenGeometry> &screens_, int mainWindowScreenIndex_) {
    screens = screens_;
    mainWindowScreenIndex = mainWindowScreenIndex_;
}

void AppController::windowDidMoveOrResize(WindowKind window, const QRect &frame) {
    NamedLockGuard lock(windowPositionsMutex);
    frames[int(window)] = frame;
    // The running position of this screen configuration, saved at quit.
    windowFrameStrings[windowFrameKeyIndex(int(window), std::max<qsizetype>(screens.size(), 1))] =
        windowFrameString(frame);
}

QRect AppController::windowFrame(WindowKind window) const { return frames[int(window)]; }

void AppController::restoreWindowPositionsAfterFinishLaunching() {
    runAtOperationBoundary("rwpafl", [this] {
        NamedLockGuard lock(windowPositionsMutex);
        for (int i = 0; i < int(std::size(kWindowFrameKeys)); ++i) {
            windowFrameStrings[i] = defaults->value(QLatin1String(kWindowFrameKeys[i])).toString();
        }
    });
}

void AppController::storeWindowPositionsBeforeQuit() {
    runAtOperationBoundary("swpbq", [this] {
        Q_EMIT countDownChanged({});
        NamedLockGuard lock(windowPositionsMutex);
        const qsizetype screenCount = std::max<qsizetype>(screens.size(), 1);
        for (int kind = 0; kind < kWindowFrameKinds; ++kind) {
            if (frames[kind].isValid()) {
                windowFrameStrings[windowFrameKeyIndex(kind, screenCount)] =
                    windowFrameString(frames[kind]);
            }
        }
        for (int i = 0; i < int(std::size(kWindowFrameKeys)); ++i) {
            const QString &frameString = windowFrameStrings[i];
            defaults->setValue(QLatin1String(kWindowFrameKeys[i]),
                               frameString.isEmpty() ? QStringLiteral(" ") : frameString);
        }
    });
}

void AppController::alertWhenIsNotExistWhereFolder() {
    services.userInteraction->showAlert(localizedString("WHEREALERT"),
                                        openedItems.whereAbsoluteURL.toLocalFile() +
                                            QLatin1Char('\n') + localizedString("WHEREALERTCONT"));
}

void AppController::alertWhenAudioDecodingError() {
    services.userInteraction->showAlert(localizedString("FFADERROR"),
                                        localizedString("FFADERRORCONT"));
}

void AppController::catchedInterlacedFrameInFFmpegMode() {
    if (!inspector.videoFormat.endsWith(QLatin1String(" (interlaced)"))) {
        inspector.videoFormat += QStringLiteral(" (interlaced)");
        Q_EMIT inspectorChanged();
    }
}

void AppController::showMessage(const QString &text, std::chrono::milliseconds shownFor) {
    if (!defaults->value(QStringLiteral("IsShowMessage")).toBool()) {
        return;
    }
    Q_EMIT messageChanged(text);
    messageHideTimer.start(shownFor);
}

}  // namespace tolvane
