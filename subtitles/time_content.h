#pragma once

// The time-to-content dictionary that both parsers produce: time keys (decimal
// millisecond strings; SAMI keeps them as written) to processed lines.

#include <QHash>
#include <QString>

#include "subtitles/tag_processor.h"

namespace tolvane::subtitles {

using TimeContentDictionary = QHash<QString, ProcessedLine>;

// Every track holds a blank line under this key unless a cue wrote to it, so
// that a lookup before the first cue finds something to show.
inline const QString kBlankTimeKey = QStringLiteral("-900000000");

}  // namespace tolvane::subtitles
