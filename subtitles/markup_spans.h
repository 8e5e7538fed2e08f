#pragma once

// Span finding over caption mark-up. Positions are UTF-16 indices, as the
// caption files' string positions have always been counted.
// Thread-safety: reentrant free functions.

#include <QString>
#include <QStringList>
#include <QStringView>
#include <vector>

namespace tolvane::subtitles {

// A span from its first character to its last character, both inclusive.
struct TextSpan {
    qsizetype start = 0;
    qsizetype last = 0;

    bool operator==(const TextSpan &) const = default;
};

// Spans from `openString` (lower case) to the first following closing string,
// compared lower-cased, in text order. When another opening begins before any
// closing, the earlier opening is dropped (the innermost opening wins); an
// opening without a closing yields nothing. With ten or more closing strings,
// each one character long (the character-reference case), a span instead runs
// over the longest run of characters from that set right after the opening.
std::vector<TextSpan> startEndLocDicInContent(QStringView content, QStringView openString,
                                              const QStringList &closeStrings);

// One open/close tag pair, in positions of the text with every tag removed;
// `last` is `first - 1` for an empty range. `openTag` views the content.
struct TaggedRange {
    qsizetype first = 0;
    qsizetype last = -1;
    QStringView openTag;

    bool operator==(const TaggedRange &) const = default;
};

// Pairs each closing tag with the latest unclosed opening tag. `tagSpans` are
// the "<" to ">" spans of `content` in order; `openTag` and `closeTag` are
// lower-case ASCII. An opening tag matches by prefix (lower-cased), a closing
// tag whole, ignoring case.
std::vector<TaggedRange> arrayFromStartEndLocDic(const std::vector<TextSpan> &tagSpans,
                                                 QStringView openTag, QStringView closeTag,
                                                 QStringView content);

// A ruby base and its annotation, in positions of the text with every tag removed.
struct RubyPair {
    qsizetype baseFirst = 0;
    qsizetype baseLast = -1;
    qsizetype annotationFirst = 0;
    qsizetype annotationLast = -1;

    bool operator==(const RubyPair &) const = default;
};

struct RubyDictionary {
    std::vector<RubyPair> btmtoparray;  // the pairs in text order
    std::vector<TextSpan> tagtopdic;    // the ruby tags' own spans in `content`
};

// Finds "<ruby>" base "<rt>" annotation "</rt>" ... "</ruby>"; several <rt>
// in one ruby each annotate the text since the previous one.
RubyDictionary rubyDicInContent(QStringView content);
// The same over the "<" to ">" spans of `content` found already.
RubyDictionary rubyDicInContent(QStringView content, const std::vector<TextSpan> &tagSpans);

// Sorts ascending by `descriptorKey`: "intValue" (the saturating integer read)
// or anything else for plain string order. Stable.
QStringList sortedArrayWithDescriptorKey(QStringView descriptorKey, QStringList array);

}  // namespace tolvane::subtitles
