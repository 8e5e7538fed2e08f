#include "controller_harness.h"

#include <QFile>

#include "app_test_support.h"
#include "support/test_media.h"

namespace tolvane::test {

ControllerHarness::ControllerHarness(const QRect &screen) {
    clearTolvaneSettings();
    AppController::Services services;
    interaction.answerWhenUnscripted = 0;
    services.userInteraction = &interaction;
    controller = std::make_unique<AppController>(std::move(services));
    AppController &c = *controller;
    QObject::connect(&c, &AppController::messageChanged, &c, [this](const QString &text) {
        if (!text.isEmpty()) {
            messages.append(text);
        }
    });
    QObject::connect(&c, &AppController::windowFrameRequested, &c,
                     [this](WindowKind kind, const QRect &frame, bool) {
                         if (kind == WindowKind::show) {
                             requestedFrames.append(frame);
                         }
                         controller->windowDidMoveOrResize(kind, frame);
                     });
    c.awakeFromNib();
    c.setScreens({ScreenGeometry{screen, screen}}, 0);
    c.windowDidMoveOrResize(WindowKind::show, QRect(QPoint(0, 0), QSize(960, 540)));
}

ControllerHarness::~ControllerHarness() { controller->applicationWillTerminate(); }

QString ControllerHarness::copiedPath(const QString &fixtureName) {
    const QString path = media.filePath(fixtureName);
    if (!QFile::exists(path)) {
        QFile::copy(mediaPath(fixtureName.toUtf8().constData()), path);
    }
    return path;
}

void ControllerHarness::open(const QStringList &fixtureNames) {
    QList<QUrl> urls;
    for (const QString &name : fixtureNames) {
        urls.append(QUrl::fromLocalFile(copiedPath(name)));
    }
    controller->openPanelOK(urls);
}

}  // namespace tolvane::test
