#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

namespace tolvane {

// One Tolvane per session: the first registers "org.tolvane.Tolvane" on the
// session bus; a later `tolvane PATH...` hands its paths to it (they arrive
// as pathsReceived, the way a file manager's open would) and exits.
// Thread-safety: main thread only.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    static constexpr const char *kServiceName = "org.tolvane.Tolvane";
    static constexpr const char *kObjectPath = "/org/tolvane/Tolvane";
    static constexpr const char *kInterfaceName = "org.tolvane.Tolvane";

    explicit SingleInstance(QObject *parent = nullptr);
    ~SingleInstance() override;

    // True when another Tolvane ran and took `paths` (the caller then exits 0).
    static bool handOverToRunningInstance(const QStringList &paths);
    // Registers this process as the running one; false without a session bus
    // or when another process holds the name (logged once).
    bool registerAsRunningInstance();

Q_SIGNALS:
    void pathsReceived(const QStringList &paths);

private:
    std::unique_ptr<QObject> receiver;  // exported on the bus while registered
    bool isRegistered = false;
};

}  // namespace tolvane
