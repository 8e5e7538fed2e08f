#include "subtitles/text_scanning.h"

#include <limits>

namespace tolvane::subtitles {

std::int32_t integerValueSaturating(QStringView text) {
    qsizetype index = 0;
    while (index < text.size() && text[index].isSpace()) {
        ++index;
    }
    bool negative = false;
    if (index < text.size() && (text[index] == u'-' || text[index] == u'+')) {
        negative = text[index] == u'-';
        ++index;
    }
    constexpr std::int64_t kLimit = std::int64_t(std::numeric_limits<std::int32_t>::max()) + 1;
    std::int64_t magnitude = 0;
    for (; index < text.size(); ++index) {
        const char16_t unit = text[index].unicode();
        if (unit < u'0' || unit > u'9') {
            break;
        }
        if (magnitude <= kLimit) {
            magnitude = magnitude * 10 + (unit - u'0');
        }
    }
    if (negative) {
        return std::int32_t(-std::min(magnitude, kLimit));
    }
    return std::int32_t(std::min(magnitude, kLimit - 1));
}

QString asciiLowered(QStringView text) {
    QString lowered(text.size(), Qt::Uninitialized);
    const char16_t *in = text.utf16();
    char16_t *out = reinterpret_cast<char16_t *>(lowered.data());
    for (qsizetype i = 0, size = text.size(); i < size; ++i) {
        out[i] = asciiLoweredUnit(in[i]);
    }
    return lowered;
}

bool startsWithAsciiLowered(QStringView text, QStringView loweredNeedle) {
    if (text.size() < loweredNeedle.size()) {
        return false;
    }
    const char16_t *in = text.utf16();
    const char16_t *needle = loweredNeedle.utf16();
    for (qsizetype i = 0, size = loweredNeedle.size(); i < size; ++i) {
        if (asciiLoweredUnit(in[i]) != needle[i]) {
            return false;
        }
    }
    return true;
}

bool equalsAsciiLowered(QStringView text, QStringView loweredNeedle) {
    return text.size() == loweredNeedle.size() && startsWithAsciiLowered(text, loweredNeedle);
}

qsizetype indexOfAsciiLowered(QStringView text, QStringView loweredNeedle) {
    if (loweredNeedle.isEmpty()) {
        return 0;
    }
    // A first character without case is found by Qt's fast scan.
    const char16_t first = loweredNeedle.front().unicode();
    const bool firstHasCase = first >= u'a' && first <= u'z';
    for (qsizetype at = firstHasCase ? 0 : text.indexOf(QChar(first));
         at >= 0 && at + loweredNeedle.size() <= text.size();
         at = firstHasCase ? at + 1 : text.indexOf(QChar(first), at + 1)) {
        if (startsWithAsciiLowered(text.sliced(at), loweredNeedle)) {
            return at;
        }
    }
    return -1;
}

namespace {

bool foldsFromOutsideAscii(QStringView loweredNeedle) {
    return loweredNeedle.contains(u's') || loweredNeedle.contains(u'k');
}

}  // namespace

bool equalsIgnoringCase(QStringView text, QStringView loweredNeedle) {
    if (text.size() != loweredNeedle.size()) {
        return false;
    }
    if (foldsFromOutsideAscii(loweredNeedle)) {
        return text.compare(loweredNeedle, Qt::CaseInsensitive) == 0;
    }
    return equalsAsciiLowered(text, loweredNeedle);
}

bool containsIgnoringCase(QStringView text, QStringView loweredNeedle) {
    if (foldsFromOutsideAscii(loweredNeedle)) {
        return text.contains(loweredNeedle, Qt::CaseInsensitive);
    }
    return indexOfAsciiLowered(text, loweredNeedle) >= 0;
}

bool isNewlineCharacter(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

QStringView trimmedOfNewlines(QStringView text) {
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && isNewlineCharacter(text[first])) {
        ++first;
    }
    while (end > first && isNewlineCharacter(text[end - 1])) {
        --end;
    }
    return text.sliced(first, end - first);
}

qsizetype ForwardFinder::next(qsizetype from) {
    if (queriedFrom_ >= 0 && from >= queriedFrom_ && (found_ < 0 || from <= found_)) {
        return found_;
    }
    queriedFrom_ = from;
    found_ = (from < 0 || from > haystack_.size()) ? -1 : haystack_.indexOf(needle_, from);
    return found_;
}

ForwardFinderIgnoringAsciiCase::ForwardFinderIgnoringAsciiCase(QStringView haystack,
                                                               QStringView loweredNeedle)
    : haystack_(haystack),
      needle_(loweredNeedle),
      firstUpper_(loweredNeedle.front() >= u'a' && loweredNeedle.front() <= u'z'
                      ? char16_t(loweredNeedle.front().unicode() - (u'a' - u'A'))
                      : loweredNeedle.front().unicode()),
      first_(haystack, loweredNeedle.first(1)),
      firstUpperFinder_(haystack, QStringView(&firstUpper_, 1)) {}

qsizetype ForwardFinderIgnoringAsciiCase::nextCandidate(qsizetype from) {
    const qsizetype lower = first_.next(from);
    if (firstUpper_ == needle_.front()) {
        return lower;
    }
    const qsizetype upper = firstUpperFinder_.next(from);
    return lower < 0 || (upper >= 0 && upper < lower) ? upper : lower;
}

qsizetype ForwardFinderIgnoringAsciiCase::next(qsizetype from) {
    if (queriedFrom_ >= 0 && from >= queriedFrom_ && (found_ < 0 || from <= found_)) {
        return found_;
    }
    queriedFrom_ = from;
    found_ = -1;
    if (from < 0 || from > haystack_.size()) {
        return found_;
    }
    const char16_t *const units = haystack_.utf16();
    for (qsizetype at = nextCandidate(from); at >= 0; at = nextCandidate(at + 1)) {
        // Most candidates differ at once in their second character.
        if (needle_.size() > 1 &&
            (at + 1 >= haystack_.size() || asciiLoweredUnit(units[at + 1]) != needle_.utf16()[1])) {
            continue;
        }
        if (startsWithAsciiLowered(haystack_.sliced(at), needle_)) {
            found_ = at;
            break;
        }
    }
    return found_;
}

}  // namespace tolvane::subtitles
