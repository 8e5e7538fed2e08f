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

char16_t asciiLoweredCharacter(QChar character) {
    const char16_t unit = character.unicode();
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + (u'a' - u'A')) : unit;
}

// Whether `needle` (ASCII, starting with a character that has no case) may
// occur in `text` for a case-insensitive replacement. Finding the first
// character is a fast scan, where Qt's search folds every character; a
// non-ASCII character counts as a possible match, leaving Unicode case
// folding to Qt.
bool mayContainIgnoringCase(QStringView text, QStringView needle) {
    for (qsizetype at = text.indexOf(needle.front()); at >= 0 && at + needle.size() <= text.size();
         at = text.indexOf(needle.front(), at + 1)) {
        qsizetype matched = 1;
        while (matched < needle.size() &&
               (text[at + matched].unicode() >= 0x80 ||
                asciiLoweredCharacter(text[at + matched]) == needle[matched].unicode())) {
            ++matched;
        }
        if (matched == needle.size()) {
            return true;
        }
    }
    return false;
}

// Every replaced text here is lower-case ASCII starting with "<", "&", "\r"
// or "\n".
void replaceAll(QString &text, QStringView before, QStringView after,
                Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive) {
    // QString::replace sets up a matcher even when there is nothing to
    // replace; looking first is cheaper for the short texts of cues.
    if (text.size() >= before.size() && mayContainIgnoringCase(text, before)) {
        text.replace(before.data(), before.size(), after.data(), after.size(), sensitivity);
    }
}

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
            replaceAll(text, u"<br>", u"\n");
            replaceAll(text, u"<br />", u"\n");
        }
    } else if (type == u"srt") {
        const bool hasCarriageReturn = text.contains(QLatin1Char('\r'));
        if (hasBreakTag) {
            replaceAll(text, u"<br />", u"<br>");
            if (hasCarriageReturn) {
                for (const QStringView lineBreak :
                     {u"<br>\r\n", u"\r\n<br>", u"<br> \r\n", u"<br>\r", u"<br> \r"}) {
                    replaceAll(text, lineBreak, u"\n");
                }
            }
        }
        if (hasCarriageReturn) {
            replaceAll(text, u"\r\n", u"\n", Qt::CaseSensitive);
            replaceAll(text, u"\r", u"\n", Qt::CaseSensitive);
        }
        if (hasBreakTag) {
            replaceAll(text, u"<br>", u"\n");
        }
    }
    if (text.contains(QLatin1Char('&'))) {
        replaceAll(text, u"&nbsp;", u" ");
        replaceAll(text, u"&nbsp", u" ");
        static const QStringList kReferenceCharacters = {"0", "1", "2", "3", "4", "5",
                                                         "6", "7", "8", "9", ";"};
        text = replacingSpans(text, startEndLocDicInContent(text, u"&#", kReferenceCharacters),
                              appendCharacterForReference);
    }

    const bool hasAngleBracket = text.contains(QLatin1Char('<'));
    if (hasAngleBracket) {
        replaceAll(text, u"</ i>", u"</i>");
        // An attribute-less <font> closes the colour before it: authors write
        // it meaning "back to normal".
        replaceAll(text, u"<font>", u"</font>");
        replaceAll(text, u"<rb>", u"");
        replaceAll(text, u"</rb>", u"");
        replaceAll(text, u"<rt><ruby>", u"</rt></ruby>");
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
        replaceAll(text, u"<!--", u"");
        replaceAll(text, u"-->", u"");
    }
    if (!hasAngleBracket) {
        return text;
    }
    static const QStringList kTagClose = {QStringLiteral(">")};
    return replacingSpans(text, startEndLocDicInContent(text, u"<", kTagClose), appendFilteredTag);
}

}  // namespace tolvane::subtitles
