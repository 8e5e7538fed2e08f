#pragma once

#include <QString>
#include <QStringView>

namespace tolvane::subtitles {

// The caption format of a text, whatever its file is named: "smi" when all of
// "<sync", "start", "=", "<p", "class" and ">" occur anywhere, otherwise "srt"
// when "-->", ":" and "," all occur, otherwise empty. Case-insensitive.
// Thread-safety: reentrant.
QString recognisedSubtitleFormat(QStringView text);

}  // namespace tolvane::subtitles
