#pragma once

// SAMI caption files: one time-to-content dictionary per language class.
// Thread-safety: reentrant; the tag processor is used by the calling thread.

#include <QString>
#include <QStringView>
#include <map>

#include "subtitles/time_content.h"

namespace tolvane::subtitles {

// Class names (upper-cased) to their time-to-content dictionaries.
using SamiClassDictionaries = std::map<QString, TimeContentDictionary>;

// A forward scan with case-insensitive searches for "<sync", "start", "=",
// ">", "<p", "class" and "</body>", not an HTML parser; the content between
// two syncs goes through `tagProcessor` with `type`. Stops silently at the
// first incomplete structure, keeping what was stored; a text without a
// usable first sync yields no class. Time in one pass over the text.
SamiClassDictionaries parsingSmiFileToLocalTimeContent(QStringView text, QStringView type,
                                                       const TagProcessor &tagProcessor);

}  // namespace tolvane::subtitles
