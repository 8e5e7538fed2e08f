#include "subtitles/markup_normalizer.h"

#include <algorithm>
#include <array>

#include "subtitles/markup_spans.h"
#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr char32_t kReplacementCharacter = 0xFFFD;

// Appends to `into` what replaces one span of mark-up.
using SpanReplacement = void (*)(QStringView span, QString &into);

// Rebuilds `text` with each span replaced; the spans must be in text order and
// must not overlap.
QString replacingSpans(const QString &text, const std::vector<TextSpan> &spans,
                       SpanReplacement appendReplacement) {
    if (spans.empty()) {
        return text;
    }
    QString result;
    result.reserve(text.size());
    qsizetype copiedUpTo = 0;
    for (const TextSpan &span : spans) {
        result.append(QStringView(text).sliced(copiedUpTo, span.start - copiedUpTo));
        appendReplacement(QStringView(text).sliced(span.start, span.last - span.start + 1), result);
        copiedUpTo = span.last + 1;
    }
    result.append(QStringView(text).sliced(copiedUpTo));
    return result;
}

QString removingSpans(const QString &text, QStringView openString, const QStringList &closeString) {
    return replacingSpans(text, startEndLocDicInContent(text, openString, closeString),
                          [](QStringView, QString &) {});
}

// Whether `needle` (ASCII, starting with a character that has no case) may
// begin at `at` of `text`, whose character there is its first, for a
// case-insensitive replacement. A non-ASCII character counts as a possible
// match, leaving Unicode case folding to Qt.
bool mayMatchIgnoringCaseAt(QStringView text, qsizetype at, QStringView needle) {
    if (at + needle.size() > text.size()) {
        return false;
    }
    const char16_t *candidate = text.utf16() + at;
    const char16_t *wanted = needle.utf16();
    for (qsizetype i = 1; i < needle.size(); ++i) {
        if (candidate[i] < 0x80 && asciiLoweredUnit(candidate[i]) != wanted[i]) {
            return false;
        }
    }
    return true;
}

// Whether `needle` as above may occur in `text`. Finding the first character
// is a fast scan, where Qt's search folds every character.
bool mayContainIgnoringCase(QStringView text, QStringView needle) {
    for (qsizetype at = text.indexOf(needle.front()); at >= 0 && at + needle.size() <= text.size();
         at = text.indexOf(needle.front(), at + 1)) {
        if (mayMatchIgnoringCaseAt(text, at, needle)) {
            return true;
        }
    }
    return false;
}

// One replacement of every occurrence of `before`; every `before` here is
// lower-case ASCII starting with a character that has no case.
struct Replacement {
    QStringView before;
    QStringView after;
    Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive;
};

// At most as many as the SubRip line-break repairs make in one turn.
constexpr std::size_t kMaxReplacementsInTurn = 9;

class ReplacementTurn {
public:
    void add(Replacement replacement) {
        // The turns below are written out in full; one more than fits is a
        // mistake in this file, not in the input.
        Q_ASSERT(count_ < kMaxReplacementsInTurn);
        const QStringView before = replacement.before;
        openings_[count_] = {before.front().unicode(),
                             before.size() > 1 ? before[1].unicode() : u'\0'};
        replacements_[count_++] = replacement;
    }

    // Replaces each `before` in the order added, each on the text the ones
    // before it left, as separate QString::replace calls would. One scan over
    // the first characters finds which may occur at all (QString::replace sets
    // up a matcher even when there is nothing to replace, and a scan per
    // replacement was most of a short cue's cost). After each replacement the
    // rest are looked for again: what it wrote may have joined its neighbours
    // into another one's text ("</<rb>rb>").
    void apply(QString &text) const {
        for (std::size_t next = 0; next < count_;) {
            const Marks mayOccur = whichMayOccur(text, next);
            std::size_t found = next;
            while (found < count_ &&
                   !(mayOccur[found] && text.size() >= replacements_[found].before.size())) {
                ++found;
            }
            if (found == count_) {
                return;
            }
            const Replacement &replacement = replacements_[found];
            text.replace(replacement.before.data(), replacement.before.size(),
                         replacement.after.data(), replacement.after.size(),
                         replacement.sensitivity);
            next = found + 1;
        }
    }

private:
    using Marks = std::array<bool, kMaxReplacementsInTurn>;

    // The first two characters of a `before`; the second is NUL for a
    // one-character `before`.
    struct Opening {
        char16_t first = u'\0';
        char16_t second = u'\0';
    };

    // Marks, among the replacements from `from` on, those whose `before` may
    // occur in `text`, scanning once for each distinct first character.
    Marks whichMayOccur(QStringView text, std::size_t from) const {
        Marks mayOccur{};
        std::size_t unmarked = count_ - from;
        for (std::size_t lead = from; lead < count_ && unmarked > 0; ++lead) {
            const char16_t leadCharacter = openings_[lead].first;
            if (std::any_of(openings_.begin() + std::ptrdiff_t(from),
                            openings_.begin() + std::ptrdiff_t(lead), [&](const Opening &earlier) {
                                return earlier.first == leadCharacter;
                            })) {
                continue;
            }
            for (qsizetype at = text.indexOf(QChar(leadCharacter)); at >= 0 && unmarked > 0;
                 at = text.indexOf(QChar(leadCharacter), at + 1)) {
                // Most candidates differ at once in their second character.
                const char16_t second = at + 1 < text.size() ? text.utf16()[at + 1] : u'\0';
                const char16_t loweredSecond = asciiLoweredUnit(second);
                for (std::size_t i = lead; i < count_; ++i) {
                    const Opening &opening = openings_[i];
                    if (mayOccur[i] || opening.first != leadCharacter ||
                        (opening.second != u'\0' && second < 0x80 &&
                         loweredSecond != opening.second)) {
                        continue;
                    }
                    if (mayMatchIgnoringCaseAt(text, at, replacements_[i].before)) {
                        mayOccur[i] = true;
                        --unmarked;
                    }
                }
            }
        }
        return mayOccur;
    }

    std::array<Replacement, kMaxReplacementsInTurn> replacements_{};
    std::array<Opening, kMaxReplacementsInTurn> openings_{};
    std::size_t count_ = 0;
};

void appendCharacterForReference(QStringView reference, QString &into) {
    // Semicolons inside the run of digits are skipped, as they always were.
    QString digits;
    for (const QChar character : reference.sliced(2)) {
        if (character != u';') {
            digits.append(character);
        }
    }
    const std::int32_t code = integerValueSaturating(digits);
    // "&#0;" was a NUL where these captions were made, which draws nothing.
    if (code == 0) {
        return;
    }
    const bool valid = code > 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
    const char32_t codePoint = valid ? char32_t(code) : kReplacementCharacter;
    into.append(QStringView(QChar::fromUcs4(codePoint)));
}

void appendFilteredTag(QStringView tag, QString &into) {
    static constexpr std::array<QStringView, 9> kHonouredTags = {
        u"<ruby>", u"<rt>", u"</rt>", u"</ruby>", u"<i>", u"</i>", u"<b>", u"</b>", u"</font>",
    };
    const bool honoured =
        std::any_of(kHonouredTags.begin(), kHonouredTags.end(),
                    [&](QStringView kept) { return equalsAsciiLowered(tag, kept); });
    if (honoured || startsWithAsciiLowered(tag, u"<font")) {
        into.append(tag);
        return;
    }
    if (tag.size() < 3) {
        return;
    }
    const char16_t second = tag[1].unicode();
    if ((second >= u'a' && second <= u'z') || (second >= u'A' && second <= u'Z') ||
        second == u'/') {
        return;
    }
    into.append(u'「');
    into.append(tag.sliced(1, tag.size() - 2));
    into.append(u'」');
}

}  // namespace

QString pre_processingTag(QStringView content, QStringView type) {
    QString text = content.toString();
    // Most cue texts hold no mark-up at all: each step runs only when its
    // marker character is there, since every replacement scans the text.
    const bool hasBreakTag = text.contains(QLatin1Char('<'));
    if (type == u"smi") {
        text.remove(QLatin1Char('\r'));
        text.remove(QLatin1Char('\n'));
        if (hasBreakTag) {
            ReplacementTurn breaks;
            breaks.add({u"<br>", u"\n"});
            breaks.add({u"<br />", u"\n"});
            breaks.apply(text);
        }
    } else if (type == u"srt") {
        const bool hasCarriageReturn = text.contains(QLatin1Char('\r'));
        ReplacementTurn breaks;
        if (hasBreakTag) {
            breaks.add({u"<br />", u"<br>"});
            if (hasCarriageReturn) {
                for (const QStringView lineBreak :
                     {u"<br>\r\n", u"\r\n<br>", u"<br> \r\n", u"<br>\r", u"<br> \r"}) {
                    breaks.add({lineBreak, u"\n"});
                }
            }
        }
        if (hasCarriageReturn) {
            breaks.add({u"\r\n", u"\n", Qt::CaseSensitive});
            breaks.add({u"\r", u"\n", Qt::CaseSensitive});
        }
        if (hasBreakTag) {
            breaks.add({u"<br>", u"\n"});
        }
        breaks.apply(text);
    }
    if (text.contains(QLatin1Char('&'))) {
        ReplacementTurn spaces;
        spaces.add({u"&nbsp;", u" "});
        spaces.add({u"&nbsp", u" "});
        spaces.apply(text);
        static const QStringList kReferenceCharacters = {"0", "1", "2", "3", "4", "5",
                                                         "6", "7", "8", "9", ";"};
        text = replacingSpans(text, startEndLocDicInContent(text, u"&#", kReferenceCharacters),
                              appendCharacterForReference);
    }

    const bool hasAngleBracket = text.contains(QLatin1Char('<'));
    if (hasAngleBracket) {
        ReplacementTurn repairs;
        repairs.add({u"</ i>", u"</i>"});
        // An attribute-less <font> closes the colour before it: authors write
        // it meaning "back to normal".
        repairs.add({u"<font>", u"</font>"});
        repairs.add({u"<rb>", u""});
        repairs.add({u"</rb>", u""});
        repairs.add({u"<rt><ruby>", u"</rt></ruby>"});
        repairs.apply(text);
        if (mayContainIgnoringCase(text, u"<rp>")) {
            static const QStringList kParenthesisClose = {QStringLiteral("</rp>")};
            text = removingSpans(text, u"<rp>", kParenthesisClose);
        }
    }
    if (text.contains(QLatin1Char('{')) || text.contains(QLatin1Char('}'))) {
        static const QStringList kBraceClose = {QStringLiteral("}")};
        text = removingSpans(text, u"{", kBraceClose);
        text.remove(QLatin1Char('{'));
        text.remove(QLatin1Char('}'));
    }
    if (hasAngleBracket || text.contains(QLatin1Char('-'))) {
        static const QStringList kCommentClose = {QStringLiteral("-->")};
        text = removingSpans(text, u"<!--", kCommentClose);
        ReplacementTurn leftOvers;
        leftOvers.add({u"<!--", u""});
        leftOvers.add({u"-->", u""});
        leftOvers.apply(text);
    }
    if (!hasAngleBracket) {
        return text;
    }
    static const QStringList kTagClose = {QStringLiteral(">")};
    return replacingSpans(text, startEndLocDicInContent(text, u"<", kTagClose), appendFilteredTag);
}

}  // namespace tolvane::subtitles
