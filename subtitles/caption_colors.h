#pragma once

// Colours of caption mark-up: the default caption colour, <font color=...>
// values and the named-colour table. Thread-safety: reentrant.

#include <QStringView>
#include <array>
#include <utility>

#include "subtitles/styled_string.h"

namespace tolvane::subtitles {

// White when `isDefaultColor`, otherwise the pale yellow 241, 229, 129.
CaptionColor defaultColor(bool isDefaultColor);

// Reads two characters as a hexadecimal byte. Characters outside 0-9, A-F and
// a-f count 15, so "GG" reads as 255; caption files rely on that leniency.
double computeHexa(QStringView twoCharacters);

// The colour of a font tag's colour text (from "color=" up to the first space
// or ">"): "#RRGGBB", a table name, or bare hexadecimal; anything else is the
// default colour.
CaptionColor computeColor(QStringView attributeText, bool isDefaultColor);

// The 140 HTML colour names, lower case, with "#RRGGBB" values. Deliberately
// differs from the HTML table in three places: the light grey is only
// "lightgrey", "mediumpurple" is #9370D8 and "palevioletred" is #D87093.
using NamedColorTable = std::array<std::pair<const char *, const char *>, 140>;
const NamedColorTable &namedCaptionColors();

}  // namespace tolvane::subtitles
