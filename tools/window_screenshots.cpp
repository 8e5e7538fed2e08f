// window-screenshots OUTDIR MEDIA_PATH [AT_SEC]: opens MEDIA_PATH in the
// player's real windows, lets it play to AT_SEC, pauses, and saves one PNG of
// each window (main.png with the control panel shown, inspector.png,
// playlist.png, preferences.png). Run by scripts/take-screenshot on a virtual
// display with a settings folder of its own.

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QScreen>
#include <QSurfaceFormat>
#include <QTextStream>
#include <QUrl>

#include "app/app_controller.h"
#include "base/localized_strings.h"
#include "views/application_windows.h"

namespace {

using namespace tolvane;

constexpr int kWaitLimitMsec = 20000;

void spinEventsUntil(const std::function<bool()> &isDone, int limitMsec) {
    QElapsedTimer timer;
    timer.start();
    while (!isDone() && timer.elapsed() < limitMsec) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

void settle() {
    spinEventsUntil([] { return false; }, 400);
}

bool saveGrab(QWidget &window, const QDir &outDir, const char *name) {
    window.raise();
    settle();
    const QString path = outDir.filePath(QLatin1String(name));
    // From the screen: the picture is drawn by a window of its own, which a
    // widget grab does not see.
    const bool isSaved = window.screen()->grabWindow(window.winId()).save(path);
    QTextStream(isSaved ? stdout : stderr)
        << (isSaved ? "saved " : "could not save ") << path << '\n';
    return isSaved;
}

}  // namespace

int main(int argc, char **argv) {
    QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tolvane"));
    QApplication::setApplicationName(QStringLiteral("Tolvane"));
    installLocalizedStrings();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3) {
        QTextStream(stderr) << "usage: window-screenshots OUTDIR MEDIA_PATH [AT_SEC]\n";
        return 2;
    }
    const QDir outDir(arguments[1]);
    const double atSec = arguments.size() > 3 ? arguments[3].toDouble() : 3.1;

    MessageBoxInteraction interaction;
    AppController::Services services;
    services.userInteraction = &interaction;
    AppController controller(std::move(services));
    ApplicationWindows windows(controller, interaction);
    controller.awakeFromNib();
    windows.mainWindow().show();
    controller.applicationDidFinishLaunching();
    controller.openPanelOK({QUrl::fromLocalFile(QFileInfo(arguments[2]).absoluteFilePath())});

    spinEventsUntil([&] { return controller.transportState().positionSec >= atSec; },
                    kWaitLimitMsec);
    if (controller.transportState().isPlaying) {
        controller.clickPlayPauseButton();
    }
    windows.mainWindow().view().showChrome();
    bool isEverySaved = saveGrab(windows.mainWindow(), outDir, "main.png");

    controller.clickInspectorButton();
    isEverySaved = saveGrab(windows.inspectorWindow(), outDir, "inspector.png") && isEverySaved;
    controller.clickPlaylistButton();
    isEverySaved = saveGrab(windows.playlistWindow(), outDir, "playlist.png") && isEverySaved;
    windows.preferencesWindow().show();
    isEverySaved = saveGrab(windows.preferencesWindow(), outDir, "preferences.png") && isEverySaved;

    controller.applicationWillTerminate();
    return isEverySaved ? 0 : 1;
}
