#include "subtitles/markup_spans.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr qsizetype kCharacterSetCloseCount = 10;

std::vector<TextSpan> spansOverCharacterRuns(QStringView lowered, QStringView openString,
                                             const QStringList &closeStrings) {
    QString closingCharacters;
    for (const QString &closing : closeStrings) {
        closingCharacters.append(closing.left(1));
    }
    std::vector<TextSpan> spans;
    ForwardFinder openFinder(lowered, openString);
    qsizetype position = 0;
    for (;;) {
        const qsizetype opening = openFinder.next(position);
        if (opening < 0) {
            break;
        }
        qsizetype runEnd = opening + openString.size();
        while (runEnd < lowered.size() && closingCharacters.contains(lowered[runEnd])) {
            ++runEnd;
        }
        if (runEnd == opening + openString.size()) {
            position = opening + 1;
            continue;
        }
        spans.push_back({opening, runEnd - 1});
        position = runEnd;
    }
    return spans;
}

// The rule below for one-character markers ("<" and ">", "{" and "}"): the
// innermost opening before a closing is the last one before it.
std::vector<TextSpan> spansBetweenCharacters(QStringView text, QChar open, QChar close) {
    std::vector<TextSpan> spans;
    for (qsizetype position = 0;;) {
        const qsizetype firstOpening = text.indexOf(open, position);
        const qsizetype closing = firstOpening < 0 ? -1 : text.indexOf(close, firstOpening + 1);
        if (closing < 0) {
            return spans;
        }
        spans.push_back({text.lastIndexOf(open, closing - 1), closing});
        position = closing + 1;
    }
}

}  // namespace

std::vector<TextSpan> startEndLocDicInContent(QStringView content, QStringView openString,
                                              const QStringList &closeStrings) {
    if (openString.isEmpty() || closeStrings.isEmpty()) {
        return {};
    }
    // Lower-casing matters only when a marker holds letters ("<" and ">" do not).
    const auto holdsLetters = [](QStringView marker) {
        return std::any_of(marker.begin(), marker.end(), [](QChar c) { return c.isLetter(); });
    };
    const bool foldCase = holdsLetters(openString) ||
                          std::any_of(closeStrings.begin(), closeStrings.end(), holdsLetters);
    const QString loweredCopy = foldCase ? asciiLowered(content) : QString();
    const QStringView lowered = foldCase ? QStringView(loweredCopy) : content;
    if (closeStrings.size() >= kCharacterSetCloseCount) {
        return spansOverCharacterRuns(lowered, openString, closeStrings);
    }
    if (openString.size() == 1 && closeStrings.size() == 1 && closeStrings.first().size() == 1 &&
        openString != closeStrings.first()) {
        return spansBetweenCharacters(lowered, openString.front(), closeStrings.first().front());
    }
    std::vector<ForwardFinder> closeFinders;
    closeFinders.reserve(std::size_t(closeStrings.size()));
    for (const QString &closing : closeStrings) {
        closeFinders.emplace_back(lowered, closing);
    }
    const qsizetype closeLength = closeStrings.first().size();
    const auto firstClosingFrom = [&](qsizetype from) {
        qsizetype best = -1;
        for (ForwardFinder &finder : closeFinders) {
            const qsizetype found = finder.next(from);
            if (found >= 0 && (best < 0 || found < best)) {
                best = found;
            }
        }
        return best;
    };

    std::vector<TextSpan> spans;
    ForwardFinder openFinder(lowered, openString);
    qsizetype position = 0;
    for (;;) {
        qsizetype opening = openFinder.next(position);
        if (opening < 0) {
            break;
        }
        qsizetype closing = firstClosingFrom(opening + openString.size());
        while (closing >= 0) {
            const qsizetype laterOpening = openFinder.next(opening + 1);
            if (laterOpening < 0 || laterOpening >= closing) {
                break;
            }
            opening = laterOpening;
            closing = firstClosingFrom(opening + openString.size());
        }
        if (closing < 0) {
            break;
        }
        spans.push_back({opening, closing + closeLength - 1});
        position = closing + closeLength;
    }
    return spans;
}

std::vector<TaggedRange> arrayFromStartEndLocDic(const std::vector<TextSpan> &tagSpans,
                                                 QStringView openTag, QStringView closeTag,
                                                 QStringView content) {
    std::vector<TaggedRange> ranges;
    std::optional<TaggedRange> pending;
    qsizetype removedBefore = 0;
    for (const TextSpan &span : tagSpans) {
        const QStringView tag = content.sliced(span.start, span.last - span.start + 1);
        const qsizetype strippedPosition = span.start - removedBefore;
        if (startsWithAsciiLowered(tag, openTag)) {
            pending = TaggedRange{strippedPosition, strippedPosition - 1, tag};
        } else if (pending && equalsIgnoringCase(tag, closeTag)) {
            pending->last = strippedPosition - 1;
            ranges.push_back(*pending);
            pending.reset();
        }
        removedBefore += tag.size();
    }
    return ranges;
}

RubyDictionary rubyDicInContent(QStringView content) {
    return rubyDicInContent(content, startEndLocDicInContent(content, u"<", {QStringLiteral(">")}));
}

RubyDictionary rubyDicInContent(QStringView content, const std::vector<TextSpan> &tagSpans) {
    RubyDictionary dictionary;
    if (!containsIgnoringCase(content, u"<rt")) {
        return dictionary;
    }
    enum class RubyTag { Ruby, Annotation, AnnotationEnd, RubyEnd, None };
    const auto rubyTagOf = [](QStringView tag) {
        for (const auto &[name, kind] :
             {std::pair{u"<ruby>", RubyTag::Ruby}, std::pair{u"<rt>", RubyTag::Annotation},
              std::pair{u"</rt>", RubyTag::AnnotationEnd},
              std::pair{u"</ruby>", RubyTag::RubyEnd}}) {
            if (equalsIgnoringCase(tag, name)) {
                return kind;
            }
        }
        return RubyTag::None;
    };
    bool inRuby = false;
    bool inAnnotation = false;
    RubyPair pair;
    qsizetype removedBefore = 0;
    for (const TextSpan &span : tagSpans) {
        const QStringView tag = content.sliced(span.start, span.last - span.start + 1);
        const qsizetype position = span.start - removedBefore;
        removedBefore += tag.size();
        const RubyTag kind = rubyTagOf(tag);
        if (kind == RubyTag::None) {
            continue;
        }
        dictionary.tagtopdic.push_back(span);
        if (kind == RubyTag::Ruby) {
            inRuby = true;
            inAnnotation = false;
            pair.baseFirst = position;
        } else if (kind == RubyTag::Annotation) {
            if (inRuby) {
                if (!inAnnotation) {
                    pair.baseLast = position - 1;
                }
                pair.annotationFirst = position;
                inAnnotation = true;
            }
        } else if (kind == RubyTag::AnnotationEnd) {
            if (inAnnotation) {
                pair.annotationLast = position - 1;
                dictionary.btmtoparray.push_back(pair);
                inAnnotation = false;
                pair.baseFirst = position;
            }
        } else {
            inRuby = false;
            inAnnotation = false;
        }
    }
    return dictionary;
}

QStringList sortedArrayWithDescriptorKey(QStringView descriptorKey, QStringList array) {
    if (descriptorKey == u"intValue") {
        std::vector<std::pair<std::int32_t, qsizetype>> keyed;
        keyed.reserve(std::size_t(array.size()));
        for (qsizetype i = 0; i < array.size(); ++i) {
            keyed.emplace_back(integerValueSaturating(array[i]), i);
        }
        std::stable_sort(keyed.begin(), keyed.end(),
                         [](const auto &a, const auto &b) { return a.first < b.first; });
        QStringList sorted;
        sorted.reserve(array.size());
        for (const auto &[value, index] : keyed) {
            sorted.append(array[index]);
        }
        return sorted;
    }
    std::stable_sort(array.begin(), array.end());
    return array;
}

}  // namespace tolvane::subtitles
