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
    QChar *out = lowered.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        out[i] = QChar((unit >= u'A' && unit <= u'Z') ? char16_t(unit + 32) : unit);
    }
    return lowered;
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

}  // namespace tolvane::subtitles
