#include "app/desktop/single_instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include "base/log.h"

namespace tolvane {
namespace {

constexpr int kHandOverTimeoutMs = 5000;

// The object exported on the bus: its one method, Open(as), forwards the paths.
class SingleInstanceReceiver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tolvane.Tolvane")
public:
    explicit SingleInstanceReceiver(SingleInstance &owner_) : owner(owner_) {}

public Q_SLOTS:
    void Open(const QStringList &paths) { Q_EMIT owner.pathsReceived(paths); }

private:
    SingleInstance &owner;
};

void logNoSessionBusOnce() {
    static bool isLogged = false;
    if (!isLogged) {
        isLogged = true;
        logWarning(
            QStringLiteral("no D-Bus session bus: every tolvane command starts a player of "
                           "its own"));
    }
}

}  // namespace

SingleInstance::SingleInstance(QObject *parent) : QObject(parent) {}

SingleInstance::~SingleInstance() {
    if (isRegistered) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(QLatin1String(kObjectPath));
        bus.unregisterService(QLatin1String(kServiceName));
    }
}

bool SingleInstance::handOverToRunningInstance(const QStringList &paths) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logNoSessionBusOnce();
        return false;
    }
    const QDBusReply<bool> isRunning =
        bus.interface()->isServiceRegistered(QLatin1String(kServiceName));
    if (!isRunning.isValid() || !isRunning.value()) {
        return false;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(kServiceName), QLatin1String(kObjectPath),
                                       QLatin1String(kInterfaceName), QStringLiteral("Open"));
    call << paths;
    const QDBusMessage reply = bus.call(call, QDBus::Block, kHandOverTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        logWarning(QStringLiteral("the running Tolvane did not take the paths: %1")
                       .arg(reply.errorMessage()));
        return false;
    }
    return true;
}

bool SingleInstance::registerAsRunningInstance() {
    if (isRegistered) {
        return true;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logNoSessionBusOnce();
        return false;
    }
    receiver = std::make_unique<SingleInstanceReceiver>(*this);
    if (!bus.registerObject(QLatin1String(kObjectPath), receiver.get(),
                            QDBusConnection::ExportAllSlots)) {
        receiver.reset();
        logWarning(QStringLiteral("cannot export %1 on the session bus").arg(kObjectPath));
        return false;
    }
    if (!bus.registerService(QLatin1String(kServiceName))) {
        bus.unregisterObject(QLatin1String(kObjectPath));
        receiver.reset();
        logWarning(QStringLiteral("another process holds %1: this player runs on its own")
                       .arg(kServiceName));
        return false;
    }
    isRegistered = true;
    return true;
}

}  // namespace tolvane

#include "single_instance.moc"
