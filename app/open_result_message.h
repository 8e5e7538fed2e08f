#pragma once

#include <QString>

namespace tolvane {

// The controller's own result code for an exception inside the engine's open.
inline constexpr const char *kOpenRaisedException = "-3000";

// The text shown under "ERROPEN" for a failed open result ("-2005: ..."):
// the message of a listed code, the result's own message otherwise, and only
// the five-character code when that message is "(null)" or missing.
QString messageForOpenResult(const QString &result);

}  // namespace tolvane
