// Window size, aspect ratio and full screen of AppController: the rules of
// app/window_sizing.h applied to the main window's frame and its screen. The
// views apply the frames asked for and report the result through
// windowDidMoveOrResize(). Main thread only.

#include <exception>

#include "app/app_controller.h"
#include "app/user_defaults.h"
#include "app/window_sizing.h"
#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {
namespace {

// The view menu's ratio items: the name shown, checked and stored under
// "AspectRatio", and the ratio; "SAR" is the picture's own.
struct AspectRatioItem {
    const char *name;
    double ratio;  // 0: the natural width over the natural height
};
constexpr AspectRatioItem kAspectRatioItems[] = {
    {"SAR", 0.0},     {"4:3", 4.0 / 3.0}, {"16:9", 16.0 / 9.0},
    {"1.85:1", 1.85}, {"2.35:1", 2.35},   {"2.40:1", 2.4},
};

const AspectRatioItem *aspectRatioItemNamed(const QString &name) {
    for (const AspectRatioItem &item : kAspectRatioItems) {
        if (name == QLatin1String(item.name)) {
            return &item;
        }
    }
    return nullptr;
}

// A screen nobody reported yet: the 960 x 540 window's fallback screen.
const QRect kUnknownScreen(0, 0, 1920, 1080);

}  // namespace

QRect AppController::visibleFrameOfMainScreen() const {
    if (mainWindowScreenIndex < 0 || mainWindowScreenIndex >= screens.size() ||
        screens[mainWindowScreenIndex].visibleFrame.isEmpty()) {
        return kUnknownScreen;
    }
    return screens[mainWindowScreenIndex].visibleFrame;
}

QRect AppController::fullFrameOfMainScreen() const {
    if (mainWindowScreenIndex < 0 || mainWindowScreenIndex >= screens.size() ||
        screens[mainWindowScreenIndex].fullFrame.isEmpty()) {
        return kUnknownScreen;
    }
    return screens[mainWindowScreenIndex].fullFrame;
}

QSize AppController::naturalSizeAtRatio() const {
    return naturalSize(naturalPictureSize, cRatio, visibleFrameOfMainScreen());
}

void AppController::requestMainWindowFrame(const QRect &frame, bool showMessage) {
    Q_EMIT windowFrameRequested(WindowKind::show, frame, showMessage);
}

bool AppController::determineNaturalSizeRatio() {
    const QSize oldNaturalSizeAtRatio =
        naturalSize(determinedNaturalSize, determinedRatio, visibleFrameOfMainScreen());

    QSizeF natural = kFallbackNaturalSize;
    NativeModePlayer *native = services.nativePlayer.get();
    if (shownPictureMode == PictureMode::native && native && native->hasMedia()) {
        natural = tolvane::naturalPictureSize(native->naturalSize().width(),
                                              native->naturalSize().height());
    } else if (myGLLayer && myGLLayer->tracks().videotrack) {
        const VideoTrack &video = *myGLLayer->tracks().videotrack;
        natural = tolvane::naturalPictureSize(video.width, video.height);
    }
    naturalPictureSize = natural;
    const AspectRatioItem *item =
        aspectRatioItemNamed(defaults->value(QStringLiteral("AspectRatio")).toString());
    cRatio = !item || item->ratio == 0.0 ? natural.width() / natural.height() : item->ratio;

    const bool isSame = natural == determinedNaturalSize && cRatio == determinedRatio;
    determinedNaturalSize = natural;
    determinedRatio = cRatio;
    return isSame && frames[int(WindowKind::show)].size() != oldNaturalSizeAtRatio;
}

void AppController::resizeWindowToLoadedFile() {
    runAtOperationBoundary("rwtlf", [&] {
        if (determineNaturalSizeRatio()) {
            return;
        }
        if (menu.isFullScreen) {
            const QRect full = fullFrameOfMainScreen();
            Q_EMIT fullScreenRequested(true, fullViewRect(cRatio, full));
            return;
        }
        const QRect visible = visibleFrameOfMainScreen();
        const QSize size = limitedSize(naturalSizeAtRatio(), cRatio, visible);
        requestMainWindowFrame(placedFrame(frames[int(WindowKind::show)].topLeft(), size, visible),
                               false);
    });
}

void AppController::changeWindowRatioTo(double ratio, const QString &name) {
    runAtOperationBoundary("cwrt:s", [&] {
        if (!(ratio > 0.0)) {
            return;
        }
        cRatio = ratio;
        if (menu.isFullScreen) {
            const QRect full = fullFrameOfMainScreen();
            Q_EMIT fullScreenRequested(true, fullViewRect(cRatio, full));
        } else {
            requestMainWindowFrame(ratioChangedFrame(frames[int(WindowKind::show)], cRatio,
                                                     visibleFrameOfMainScreen()),
                                   false);
        }
        menu.aspectRatioName = name;
        Q_EMIT menuStateChanged();
        defaults->setValue(QStringLiteral("AspectRatio"), name);
    });
}

void AppController::clickAspectRatioMenu(const QString &name) {
    const AspectRatioItem *item = aspectRatioItemNamed(name);
    if (!item) {
        logWarning(QStringLiteral("Unknown aspect ratio '%1'").arg(name));
        return;
    }
    changeWindowRatioTo(
        item->ratio != 0.0 ? item->ratio : naturalPictureSize.width() / naturalPictureSize.height(),
        name);
}

void AppController::changeMainWindowSizeBy(int step) {
    const bool isLoaded = (services.nativePlayer && services.nativePlayer->hasMedia()) ||
                          (myGLLayer && myGLLayer->isAlsoHaveMovie());
    if (!isLoaded || menu.isFullScreen) {
        return;
    }
    if (const auto frame = sizeChangedFrame(frames[int(WindowKind::show)], step, cRatio,
                                            visibleFrameOfMainScreen())) {
        requestMainWindowFrame(*frame, true);
    }
}

void AppController::clickIncreaseSizeMenu() {
    runAtOperationBoundary("cism", [&] { changeMainWindowSizeBy(+kSizeStepsPerPress); });
}

void AppController::clickDecreaseSizeMenu() {
    runAtOperationBoundary("cdsm", [&] { changeMainWindowSizeBy(-kSizeStepsPerPress); });
}

void AppController::clickFullScreen() {
    if (menu.isFullScreen) {
        leaveFullScreen();
        return;
    }
    menu.isFullScreen = true;
    const QRect full = fullFrameOfMainScreen();
    Q_EMIT fullScreenRequested(true, fullViewRect(cRatio > 0.0 ? cRatio : 16.0 / 9.0, full));
    Q_EMIT menuStateChanged();
}

void AppController::leaveFullScreen() {
    if (!menu.isFullScreen) {
        return;
    }
    menu.isFullScreen = false;
    Q_EMIT fullScreenRequested(false, QRect());
    Q_EMIT menuStateChanged();
}

void AppController::clickAwesomeMenu() {
    const int awesome = defaults->value(QStringLiteral("Awesome")).toInt() == 1 ? 0 : 1;
    defaults->setValue(QStringLiteral("Awesome"), awesome);
    menu.isAwesome = awesome == 1;
    Q_EMIT windowLevelChanged(menu.isAwesome);
    Q_EMIT menuStateChanged();
}

void AppController::clickAnotherDefaultColorMenu() {
    const int another = defaults->value(QStringLiteral("AnotherDefaultColor")).toInt() == 1 ? 0 : 1;
    defaults->setValue(QStringLiteral("AnotherDefaultColor"), another);
    menu.isAnotherDefaultColor = another == 1;
    Q_EMIT captionsNeedRedraw();
    Q_EMIT menuStateChanged();
}

}  // namespace tolvane
