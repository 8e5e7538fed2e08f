#pragma once

#include <QLoggingCategory>
#include <QString>
#include <string_view>

namespace tolvane {

Q_DECLARE_LOGGING_CATEGORY(lcTolvane)

// Logs "Exception at '<where>'" once, the form every operation boundary uses
// for an unexpected failure. `what` is appended when known.
void logException(std::string_view where, std::string_view what = {});
void logWarning(const QString &message);
void logInfo(const QString &message);

}  // namespace tolvane
