#pragma once

#include <QString>

namespace tolvane {

// The name the caption list shows for a track's language: SAMI class names
// such as "KRCC" or "ENCC" become "Korean" or "English"; anything not in the
// table (a SubRip track's last cue number, say) is shown as it is.
QString humanReadableLang(const QString &lang);

}  // namespace tolvane
