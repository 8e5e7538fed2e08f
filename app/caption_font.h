#pragma once

#include <QString>
#include <QStringList>

namespace tolvane {

// The default caption font: a face chosen for reading subtitles, Korean ones
// first. A font name is a fontconfig pattern, "Family:style=Style" (or just
// the family), the form fc-match and the caption renderer both understand;
// it is also the key of the per-font caption settings.
// Thread-safety: reentrant (each call builds its own fontconfig query).

struct InstalledFontFace {
    QString family;
    QString style;
    int weight = 0;  // fontconfig weight: 50 light, 55 demilight, 80 regular
};

// Every installed face of the Noto Sans CJK families.
QList<InstalledFontFace> installedNotoSansCJKFaces();

// Among `faces`, the Korean family first (then Japanese, Simplified and
// Traditional Chinese, Hong Kong), at the installed weight closest to light;
// an empty name when there is none.
QString preferredCaptionFontNameAmong(const QList<InstalledFontFace> &faces);

// The preferred Noto Sans CJK face when installed, otherwise the system's
// sans-serif family as fontconfig resolves it.
QString preferredCaptionFontName();

// "Family:style=Style" for a face.
QString fontNameForFace(const InstalledFontFace &face);

}  // namespace tolvane
