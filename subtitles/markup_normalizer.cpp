#include "subtitles/markup_normalizer.h"

#include <array>
#include <functional>

#include "subtitles/markup_spans.h"
#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr char32_t kReplacementCharacter = 0xFFFD;

// Rebuilds `text` with each span replaced by what `replacementFor` returns;
// the spans must be in text order and must not overlap.
QString replacingSpans(const QString &text, const std::vector<TextSpan> &spans,
                       const std::function<QString(QStringView)> &replacementFor) {
    if (spans.empty()) {
        return text;
    }
    QString result;
    result.reserve(text.size());
    qsizetype copiedUpTo = 0;
    for (const TextSpan &span : spans) {
        result.append(QStringView(text).sliced(copiedUpTo, span.start - copiedUpTo));
        result.append(
            replacementFor(QStringView(text).sliced(span.start, span.last - span.start + 1)));
        copiedUpTo = span.last + 1;
    }
    result.append(QStringView(text).sliced(copiedUpTo));
    return result;
}

QString removingSpans(const QString &text, QStringView openString, const QStringList &closeString) {
    return replacingSpans(text, startEndLocDicInContent(text, openString, closeString),
                          [](QStringView) { return QString(); });
}

void replaceAll(QString &text, QStringView before, QStringView after,
                Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive) {
    if (text.size() >= before.size()) {
        text.replace(before.data(), before.size(), after.data(), after.size(), sensitivity);
    }
}

QString characterForReference(QStringView reference) {
    QString digits;
    for (const QChar character : reference.sliced(2)) {
        if (character != u';') {
            digits.append(character);
        }
    }
    const std::int32_t code = integerValueSaturating(digits);
    // "&#0;" was a NUL where these captions were made, which draws nothing.
    if (code == 0) {
        return QString();
    }
    const bool valid = code > 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
    const char32_t codePoint = valid ? char32_t(code) : kReplacementCharacter;
    return QString::fromUcs4(&codePoint, 1);
}

QString filteredTag(QStringView tag) {
    static const std::array<QStringView, 9> kHonouredTags = {
        u"<ruby>", u"<rt>", u"</rt>", u"</ruby>", u"<i>", u"</i>", u"<b>", u"</b>", u"</font>",
    };
    const QString lowered = asciiLowered(tag);
    for (const QStringView honoured : kHonouredTags) {
        if (lowered == honoured) {
            return tag.toString();
        }
    }
    if (lowered.startsWith(u"<font")) {
        return tag.toString();
    }
    if (tag.size() < 3) {
        return QString();
    }
    const QChar second = lowered[1];
    if ((second >= u'a' && second <= u'z') || second == u'/') {
        return QString();
    }
    return QStringLiteral("「") + tag.sliced(1, tag.size() - 2).toString() + QStringLiteral("」");
}

}  // namespace

QString pre_processingTag(QStringView content, QStringView type) {
    QString text = content.toString();
    if (type == u"smi") {
        text.remove(QLatin1Char('\r'));
        text.remove(QLatin1Char('\n'));
        replaceAll(text, u"<br>", u"\n");
        replaceAll(text, u"<br />", u"\n");
    } else if (type == u"srt") {
        replaceAll(text, u"<br />", u"<br>");
        for (const QStringView lineBreak :
             {u"<br>\r\n", u"\r\n<br>", u"<br> \r\n", u"<br>\r", u"<br> \r"}) {
            replaceAll(text, lineBreak, u"\n");
        }
        replaceAll(text, u"\r\n", u"\n", Qt::CaseSensitive);
        replaceAll(text, u"\r", u"\n", Qt::CaseSensitive);
        replaceAll(text, u"<br>", u"\n");
    }
    // Most cue texts hold no mark-up at all: each step runs only when its
    // marker character is there.
    if (text.contains(QLatin1Char('&'))) {
        replaceAll(text, u"&nbsp;", u" ");
        replaceAll(text, u"&nbsp", u" ");
        static const QStringList kReferenceCharacters = {"0", "1", "2", "3", "4", "5",
                                                         "6", "7", "8", "9", ";"};
        text = replacingSpans(text, startEndLocDicInContent(text, u"&#", kReferenceCharacters),
                              characterForReference);
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
        static const QStringList kParenthesisClose = {QStringLiteral("</rp>")};
        text = removingSpans(text, u"<rp>", kParenthesisClose);
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
    return replacingSpans(text, startEndLocDicInContent(text, u"<", kTagClose), filteredTag);
}

}  // namespace tolvane::subtitles
