#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <csignal>

#include "app/desktop/screen_saver_inhibitor.h"
#include "app/desktop/single_instance.h"
#include "app/desktop/termination_signals.h"
#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

// These run on a private session bus (dbus-run-session), where no screen
// saver answers until the test registers one.
class FakeScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    QList<quint32> held;

public Q_SLOTS:
    quint32 Inhibit(const QString &, const QString &) {
        held.append(++lastCookie);
        return lastCookie;
    }
    void UnInhibit(quint32 cookie) { held.removeAll(cookie); }

private:
    quint32 lastCookie = 40;
};

TEST(ScreenSaverInhibitor, HoldsAndReleasesTheScreenSaverAndAnswersFalseWithoutIt) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected()) << "run under dbus-run-session";
    ScreenSaverInhibitor inhibitor;
    EXPECT_FALSE(inhibitor.createAssertion()) << "no screen saver on the bus yet";

    FakeScreenSaver screenSaver;
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerObject("/org/freedesktop/ScreenSaver", &screenSaver,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService("org.freedesktop.ScreenSaver"));
    EXPECT_TRUE(inhibitor.createAssertion());
    EXPECT_TRUE(inhibitor.createAssertion()) << "held once, however often asked";
    EXPECT_EQ(screenSaver.held, QList<quint32>({41}));
    EXPECT_TRUE(inhibitor.releaseAssertion());
    EXPECT_TRUE(screenSaver.held.isEmpty());
    {
        ScreenSaverInhibitor leftHeld;
        EXPECT_TRUE(leftHeld.createAssertion());
    }
    EXPECT_TRUE(screenSaver.held.isEmpty()) << "released when destroyed";
    bus.unregisterService("org.freedesktop.ScreenSaver");
    bus.unregisterObject("/org/freedesktop/ScreenSaver");
}

TEST(SingleInstance, ASecondStartHandsItsPathsToTheRunningOne) {
    EXPECT_FALSE(SingleInstance::handOverToRunningInstance({"/videos/a.mkv"})) << "nobody runs yet";
    SingleInstance running;
    QStringList received;
    QObject::connect(&running, &SingleInstance::pathsReceived,
                     [&](const QStringList &paths) { received += paths; });
    ASSERT_TRUE(running.registerAsRunningInstance());
    SingleInstance another;
    EXPECT_FALSE(another.registerAsRunningInstance()) << "the name is taken";

    EXPECT_TRUE(SingleInstance::handOverToRunningInstance({"/videos/a.mkv", "/videos/b 2.mkv"}));
    test::processEventsUntil([&] { return !received.isEmpty(); });
    EXPECT_EQ(received, QStringList({"/videos/a.mkv", "/videos/b 2.mkv"}));
}

TEST(TerminationSignals, EachSignalBecomesOneRequestOnTheMainThread) {
    TerminationSignals signals;
    int requests = 0;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, [&] { ++requests; });
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        const int before = requests;
        std::raise(signalNumber);
        EXPECT_TRUE(test::processEventsUntil([&] { return requests > before; })) << signalNumber;
    }
    EXPECT_EQ(requests, 3);
}

}  // namespace
}  // namespace tolvane

#include "desktop_services_test.moc"
