#pragma once

#include <QList>
#include <QRect>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>
#include <functional>
#include <memory>

#include "app/app_controller.h"
#include "app_test_support.h"
#include "scripted_services.h"

namespace tolvane::test {

// A controller driven without a window: the windows it asks for take the
// frames asked (as the views would) and report them back; messages and
// requested frames are kept for the test to read.
class ControllerHarness {
public:
    explicit ControllerHarness(const QRect &screen);
    ~ControllerHarness();

    // Opens copies of the fixtures, made in a folder of the harness's own so
    // that the playlist holds them and no other video.
    void open(const QStringList &fixtureNames);
    QString copiedPath(const QString &fixtureName);

    QTemporaryDir media;
    ScriptedUserInteraction interaction;  // unscripted, a question gets its first button
    std::unique_ptr<AppController> controller;
    QStringList messages;
    QList<QRect> requestedFrames;  // of the main window
};

}  // namespace tolvane::test
