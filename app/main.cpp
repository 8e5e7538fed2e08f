// tolvane [PATH...]: the player. Opens the given files and folders, or hands
// them to the Tolvane already running and exits.

#include <QApplication>
#include <QFileInfo>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QSessionManager>
#include <QSurfaceFormat>
#include <QTextStream>
#include <QUrl>
#include <memory>

#include "app/app_controller.h"
#include "app/desktop/mpris_service.h"
#include "app/desktop/screen_saver_inhibitor.h"
#include "app/desktop/single_instance.h"
#include "app/desktop/termination_signals.h"
#include "app/native/lazy_native_mode_player.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "views/application_windows.h"
#include "views/message_box_interaction.h"

namespace {

// The video view draws with OpenGL 3.3; without it (the offscreen platform, a
// broken driver) the first frame would fail deep in the flush.
bool canCreateOpenGLContext() {
    QOffscreenSurface surface;
    surface.setFormat(QSurfaceFormat::defaultFormat());
    surface.create();
    QOpenGLContext context;
    context.setFormat(QSurfaceFormat::defaultFormat());
    if (!surface.isValid() || !context.create() || !context.makeCurrent(&surface)) {
        return false;
    }
    context.doneCurrent();
    return true;
}

QStringList absolutePathsOfArguments(const QStringList &arguments) {
    QStringList paths;
    for (const QString &argument : arguments) {
        const QUrl url(argument);
        paths.append(url.isLocalFile() ? url.toLocalFile()
                                       : QFileInfo(argument).absoluteFilePath());
    }
    return paths;
}

}  // namespace

int main(int argc, char **argv) {
    using namespace tolvane;
    QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    QApplication::setDesktopFileName(QStringLiteral("tolvane"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/tolvane.svg")));
    installLocalizedStrings();
    removeOwnerlessSettingsLock();

    const QStringList paths = absolutePathsOfArguments(QApplication::arguments().mid(1));
    if (SingleInstance::handOverToRunningInstance(paths)) {
        return 0;
    }
    MessageBoxInteraction interaction;
    auto nativePlayer = std::make_unique<LazyNativeModePlayer>();
    LazyNativeModePlayer *nativePlayerShown = nativePlayer.get();
    AppController::Services services;
    services.userInteraction = &interaction;
    services.nativePlayer = std::move(nativePlayer);
    services.displaySleep = std::make_unique<ScreenSaverInhibitor>();
    AppController controller(std::move(services));

    ApplicationWindows windows(controller, interaction);
    QObject::connect(
        nativePlayerShown, &LazyNativeModePlayer::playerMade, &windows,
        [&windows](QVideoSink *sink) { windows.mainWindow().view().showNativePicturesFrom(sink); });

    controller.awakeFromNib();
    windows.mainWindow().show();
    controller.applicationDidFinishLaunching();

    // Every road out (Quit, closing the window, a signal, the session ending)
    // saves once, then leaves the event loop.
    const auto quitInOrder = [&controller] {
        if (!controller.isWillTerminateNotified()) {
            controller.applicationWillTerminate();
        }
        QApplication::quit();
    };
    QObject::connect(&windows, &ApplicationWindows::quitRequested, &application, quitInOrder);
    TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::terminationRequested, &application,
                     quitInOrder);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [quitInOrder](QSessionManager &) { quitInOrder(); });
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application, [&controller] {
        if (!controller.isWillTerminateNotified()) {
            controller.applicationWillTerminate();
        }
    });

    SingleInstance singleInstance;
    singleInstance.registerAsRunningInstance();
    QObject::connect(&singleInstance, &SingleInstance::pathsReceived, &controller,
                     [&controller, &windows](const QStringList &received) {
                         for (const QString &path : received) {
                             controller.openFile(path);
                         }
                         windows.mainWindow().raise();
                         windows.mainWindow().activateWindow();
                     });

    MprisService mpris(controller);
    mpris.registerOnSessionBus();

    if (!paths.isEmpty()) {
        QList<QUrl> urls;
        for (const QString &path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        controller.openPanelOK(urls);
    }
    // Checked this late because the check loads the OpenGL driver, the
    // longest step of a launch: the file's first picture is decoded meanwhile
    // on the engine's threads. The picture's window draws nothing before the
    // event loop (an alert about the file aside), and no sound plays before
    // it has drawn the first picture.
    if (!canCreateOpenGLContext()) {
        QTextStream(stderr) << localizedString("NOOPENGL") << '\n';
        return 1;
    }
    return QApplication::exec();
}
