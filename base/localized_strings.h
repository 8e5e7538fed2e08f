#pragma once

#include <QLocale>
#include <QString>

namespace tolvane {

// The text of an upper-case message key ("MONO", "NOPXFMT", ...) in the
// user's language. Keys without a translation come back as the key itself.
// Thread-safety: any thread, once installLocalizedStrings() has run.
QString localizedString(const char *key);

// Installs the English table and, on top of it, the table of `locale`'s
// language when there is one. Needs a QCoreApplication; call it once from the
// main thread at start-up. Returns the language actually layered on English
// ("en" when only English is in use).
QString installLocalizedStrings(const QLocale &locale = QLocale::system());

}  // namespace tolvane
