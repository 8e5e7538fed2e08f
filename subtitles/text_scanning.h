#pragma once

// Text primitives shared by the mark-up processor and the two parsers: the
// integer read of caption files, ASCII case folding for the case-insensitive
// searches, and a finder whose forward-only searches cost linear time overall.
// Thread-safety: free functions are reentrant; a ForwardFinder is used by one
// thread at a time.

#include <QString>
#include <QStringView>
#include <cstdint>

namespace tolvane::subtitles {

// Skips leading white space, takes an optional sign and the digits, stops at
// the first other character; no digits read as 0. Saturates at the limits of
// a signed 32-bit integer instead of overflowing.
std::int32_t integerValueSaturating(QStringView text);

// Lower-cases A-Z only, so positions in the result match the input exactly.
// Every marker the parsers look for is ASCII.
constexpr char16_t asciiLoweredUnit(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') ? char16_t(unit + (u'a' - u'A')) : unit;
}
QString asciiLowered(QStringView text);
// Whether `text` lower-cased as above equals, starts with or contains
// `loweredNeedle` (lower-case ASCII), without building the lowered copy.
bool equalsAsciiLowered(QStringView text, QStringView loweredNeedle);
bool startsWithAsciiLowered(QStringView text, QStringView loweredNeedle);
qsizetype indexOfAsciiLowered(QStringView text, QStringView loweredNeedle);

// Qt's case-insensitive equality and search with a lower-case ASCII needle,
// without folding the text through Unicode's tables: outside ASCII only U+017F
// and U+212A fold into it (to "s" and "k"), so a needle holding neither letter
// can only meet ASCII characters.
bool equalsIgnoringCase(QStringView text, QStringView loweredNeedle);
bool containsIgnoringCase(QStringView text, QStringView loweredNeedle);

bool isNewlineCharacter(QChar character);
// Trims the newline set (line feed, carriage return, vertical tab, form feed,
// U+0085, U+2028, U+2029) from both ends; spaces stay.
QStringView trimmedOfNewlines(QStringView text);

// Searches one needle in one haystack. Queries whose start positions never
// decrease reuse the previous answer when it still lies ahead, so a whole scan
// costs one pass over the haystack however often it asks.
class ForwardFinder {
public:
    ForwardFinder(QStringView haystack, QStringView needle)
        : haystack_(haystack), needle_(needle) {}

    // Position of the first occurrence at or after `from`, or -1.
    qsizetype next(qsizetype from);

private:
    QStringView haystack_;
    QStringView needle_;
    qsizetype queriedFrom_ = -1;
    qsizetype found_ = -1;
};

// A ForwardFinder for a lower-case ASCII needle in the haystack as asciiLowered
// would make it, without making it: a whole file's lowered copy cost as much
// as the searches. Candidates are the occurrences of the needle's first
// character, in both cases when it is a letter, each kept by a ForwardFinder
// of its own so that a whole scan stays one pass. Not copyable: its finders
// view its own copy of the first character.
class ForwardFinderIgnoringAsciiCase {
public:
    // `loweredNeedle` must not be empty.
    ForwardFinderIgnoringAsciiCase(QStringView haystack, QStringView loweredNeedle);
    ForwardFinderIgnoringAsciiCase(const ForwardFinderIgnoringAsciiCase &) = delete;
    ForwardFinderIgnoringAsciiCase &operator=(const ForwardFinderIgnoringAsciiCase &) = delete;

    // Position of the first occurrence at or after `from`, or -1.
    qsizetype next(qsizetype from);

private:
    qsizetype nextCandidate(qsizetype from);

    QStringView haystack_;
    QStringView needle_;
    char16_t firstUpper_;  // the first character itself when it has no case
    ForwardFinder first_;
    ForwardFinder firstUpperFinder_;
    qsizetype queriedFrom_ = -1;
    qsizetype found_ = -1;
};

}  // namespace tolvane::subtitles
