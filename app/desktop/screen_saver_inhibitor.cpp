#include "app/desktop/screen_saver_inhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include "base/log.h"

namespace tolvane {
namespace {

constexpr const char *kScreenSaverService = "org.freedesktop.ScreenSaver";
constexpr const char *kScreenSaverPath = "/org/freedesktop/ScreenSaver";
constexpr const char *kScreenSaverInterface = "org.freedesktop.ScreenSaver";
constexpr int kCallTimeoutMs = 2000;

QDBusMessage callScreenSaver(const QString &method, const QVariantList &arguments) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return QDBusMessage::createError(QStringLiteral("org.tolvane.NoSessionBus"),
                                         QStringLiteral("no D-Bus session bus"));
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QLatin1String(kScreenSaverService), QLatin1String(kScreenSaverPath),
        QLatin1String(kScreenSaverInterface), method);
    call.setArguments(arguments);
    return bus.call(call, QDBus::Block, kCallTimeoutMs);
}

}  // namespace

ScreenSaverInhibitor::~ScreenSaverInhibitor() {
    if (isHeld) {
        releaseAssertion();
    }
}

bool ScreenSaverInhibitor::createAssertion() {
    if (isHeld) {
        return true;
    }
    const QDBusMessage reply = callScreenSaver(
        QStringLiteral("Inhibit"), {QStringLiteral("Tolvane"), QStringLiteral("Playing a video")});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        if (!isFailureLogged) {
            isFailureLogged = true;
            logWarning(QStringLiteral("the screen saver cannot be held off: %1")
                           .arg(reply.errorMessage()));
        }
        return false;
    }
    energyAssertionID = reply.arguments().constFirst().toUInt();
    isHeld = true;
    return true;
}

bool ScreenSaverInhibitor::releaseAssertion() {
    if (!isHeld) {
        return true;
    }
    const QDBusMessage reply =
        callScreenSaver(QStringLiteral("UnInhibit"), {QVariant::fromValue(energyAssertionID)});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        if (!isFailureLogged) {
            isFailureLogged = true;
            logWarning(QStringLiteral("the screen saver inhibition cannot be released: %1")
                           .arg(reply.errorMessage()));
        }
        return false;
    }
    isHeld = false;
    energyAssertionID = 0;
    return true;
}

}  // namespace tolvane
