#include "log.h"

namespace tolvane {

Q_LOGGING_CATEGORY(lcTolvane, "tolvane")

void logException(std::string_view where, std::string_view what) {
    const QString whereText = QString::fromUtf8(where.data(), qsizetype(where.size()));
    if (what.empty()) {
        qCWarning(lcTolvane).noquote() << QStringLiteral("Exception at '%1'").arg(whereText);
    } else {
        qCWarning(lcTolvane).noquote()
            << QStringLiteral("Exception at '%1': %2")
                   .arg(whereText, QString::fromUtf8(what.data(), qsizetype(what.size())));
    }
}

void logWarning(const QString &message) { qCWarning(lcTolvane).noquote() << message; }

void logInfo(const QString &message) { qCInfo(lcTolvane).noquote() << message; }

}  // namespace tolvane
