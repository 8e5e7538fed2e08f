#pragma once

#include <QStringView>

namespace tolvane {

// How much `text`, decoded from `icuName`, looks like a caption in one
// language: higher is more plausible. Only characters outside ASCII count, since every candidate
// encoding reads ASCII alike. Common Hangul syllables, kana and common
// ideographs score; Latin-1 letters score a little; the characters that a
// wrong legacy decoding produces (Latin-1 symbols, C1 controls, half-width
// katakana, rare UHC syllables, private-use, unassigned and compatibility
// characters, U+FFFD) cost; and characters outside the text's dominant script
// (Hangul, kana with kanji, Han, Latin) cost too.
// Thread-safety: reentrant.
int textPlausibilityScore(QStringView text, const char *icuName);

}  // namespace tolvane
