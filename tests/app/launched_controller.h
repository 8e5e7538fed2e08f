#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/app_controller.h"
#include "app/user_defaults.h"
#include "app_test_support.h"
#include "engine/my_ca_opengl_layer.h"
#include "scripted_services.h"

namespace tolvane::test {

// One controller as the application runs it, with scripted alerts, a scripted
// Native-mode player and a counting display-sleep assertion, on one 1920 x
// 1080 screen. Settings start empty but for "AutoPlay" off. The windows it
// asks for take the frames asked, as the views do; the frames and the
// messages are kept for the test to read.
class LaunchedController : public ::testing::Test {
public:
    static constexpr QRect kScreen{0, 0, 1920, 1080};

protected:
    void SetUp() override {
        clearTolvaneSettings();
        setSetting("AutoPlay", 0);
    }
    void TearDown() override { quit(); }

    AppController &launch() {
        auto nativePlayer = std::make_unique<ScriptedNativeModePlayer>();
        auto displaySleep = std::make_unique<CountingDisplaySleepAssertion>();
        native = nativePlayer.get();
        sleep = displaySleep.get();
        controller = std::make_unique<AppController>(
            AppController::Services{&ui, std::move(nativePlayer), std::move(displaySleep)});
        QObject::connect(controller.get(), &AppController::windowFrameRequested,
                         [this](WindowKind kind, const QRect &frame, bool) {
                             requestedFrames.append({kind, frame});
                             controller->windowDidMoveOrResize(kind, frame);
                         });
        QObject::connect(controller.get(), &AppController::messageChanged,
                         [this](const QString &text) {
                             if (!text.isEmpty()) {
                                 messages.append(text);
                             }
                         });
        controller->awakeFromNib();
        controller->setScreens({{kScreen, kScreen}}, 0);
        controller->applicationDidFinishLaunching();
        QCoreApplication::processEvents();
        return *controller;
    }
    void quit() {
        if (controller) {
            controller->applicationWillTerminate();
            controller.reset();
        }
        requestedFrames.clear();
        messages.clear();
    }

    // Copies a media fixture to `name` in the tree; returns its path.
    QString copyMedia(const char *fixture, const QString &name) {
        QDir().mkpath(QFileInfo(tree.path(name)).path());
        QFile::copy(mediaPath(fixture), tree.path(name));
        return tree.path(name);
    }
    // Opens copies of media fixtures, made in a folder of their own so that
    // the playlist holds them and no other video.
    void open(const QStringList &fixtures) {
        QList<QUrl> urls;
        for (const QString &name : fixtures) {
            urls.append(QUrl::fromLocalFile(copyMedia(qPrintable(name), "opened/" + name)));
        }
        controller->openPanelOK(urls);
    }
    QSize lastMainWindowSize() const {
        for (auto frame = requestedFrames.crbegin(); frame != requestedFrames.crend(); ++frame) {
            if (frame->first == WindowKind::show) {
                return frame->second.size();
            }
        }
        return {};
    }
    double enginePositionSec() {
        return controller->engine().currentTimeSec() - controller->engine().startTimeSec();
    }
    static void setSetting(const char *key, const QVariant &value) {
        UserDefaults(QStringLiteral("sans-serif")).setValue(QLatin1String(key), value);
    }

    TemporaryTree tree;
    ScriptedUserInteraction ui;
    ScriptedNativeModePlayer *native = nullptr;
    CountingDisplaySleepAssertion *sleep = nullptr;
    std::unique_ptr<AppController> controller;
    QList<std::pair<WindowKind, QRect>> requestedFrames;
    QStringList messages;
};

}  // namespace tolvane::test
