#include "subtitles/sami_parser.h"

#include <optional>

#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr qsizetype kSyncTagLength = 5;       // "<sync"
constexpr qsizetype kStartWordLength = 5;     // "start"
constexpr qsizetype kParagraphTagLength = 2;  // "<p"
constexpr qsizetype kClassWordLength = 5;     // "class"

QString withoutQuotesTrimmed(QStringView text) {
    QString value = text.toString();
    value.remove(QLatin1Char('"'));
    return value.trimmed();
}

// "KR CC" joins an existing "KRCC", but a first "KR CC" stays as it is.
QString joinedClassName(QStringView rawName, const SamiClassDictionaries &classes) {
    const QString name = withoutQuotesTrimmed(rawName).toUpper();
    if (name.contains(QLatin1Char(' '))) {
        QString withoutSpaces = name;
        withoutSpaces.remove(QLatin1Char(' '));
        if (classes.contains(withoutSpaces)) {
            return withoutSpaces;
        }
    }
    return name;
}

// The stretches of one classed paragraph tag: "<p", "class", its "=" and ">".
struct ClassedParagraph {
    qsizetype equalsSign = -1;
    qsizetype closingBracket = -1;
};

class ClassedParagraphFinder {
public:
    explicit ClassedParagraphFinder(QStringView text)
        : paragraph_(text, u"<p"),
          classWord_(text, u"class"),
          equalsSign_(text, u"="),
          closingBracket_(text, u">") {}

    std::optional<ClassedParagraph> next(qsizetype from) {
        const qsizetype paragraph = paragraph_.next(from);
        if (paragraph < 0) {
            return std::nullopt;
        }
        const qsizetype classWord = classWord_.next(paragraph + kParagraphTagLength);
        if (classWord < 0) {
            return std::nullopt;
        }
        const qsizetype equalsSign = equalsSign_.next(classWord + kClassWordLength);
        if (equalsSign < 0) {
            return std::nullopt;
        }
        const qsizetype closingBracket = closingBracket_.next(equalsSign + 1);
        if (closingBracket < 0) {
            return std::nullopt;
        }
        return ClassedParagraph{equalsSign, closingBracket};
    }

private:
    ForwardFinderIgnoringAsciiCase paragraph_;
    ForwardFinderIgnoringAsciiCase classWord_;
    ForwardFinder equalsSign_;
    ForwardFinder closingBracket_;
};

}  // namespace

SamiClassDictionaries parsingSmiFileToLocalTimeContent(QStringView text, QStringView type,
                                                       const TagProcessor &tagProcessor) {
    // The mark-up is found ignoring the case of ASCII letters only, so that
    // positions in the text are those of the words found.
    ForwardFinderIgnoringAsciiCase syncTag(text, u"<sync");
    ForwardFinderIgnoringAsciiCase startWord(text, u"start");
    ForwardFinder startEqualsSign(text, u"=");
    ForwardFinder startClosingBracket(text, u">");
    ForwardFinderIgnoringAsciiCase bodyEnd(text, u"</body>");
    ClassedParagraphFinder classedParagraphs(text);

    const qsizetype firstSync = syncTag.next(0);
    if (firstSync < 0) {
        return {};
    }
    const qsizetype firstStart = startWord.next(firstSync + kSyncTagLength);
    const qsizetype firstEquals =
        firstStart < 0 ? -1 : startEqualsSign.next(firstStart + kStartWordLength);
    const qsizetype firstClose = firstEquals < 0 ? -1 : startClosingBracket.next(firstEquals + 1);
    if (firstClose < 0) {
        return {};
    }
    QString timeKey =
        withoutQuotesTrimmed(text.sliced(firstEquals + 1, firstClose - firstEquals - 1));
    qsizetype syncEnd = firstClose + 1;

    SamiClassDictionaries classes;
    QString currentClass;
    bool hasCurrentClass = false;
    const auto store = [&](qsizetype contentStart, qsizetype contentEnd) {
        // emplace moves the processed line in; insert would copy every row.
        classes[currentClass].emplace(
            timeKey,
            tagProcessor.processingTag(text.sliced(contentStart, contentEnd - contentStart), type));
    };

    for (;;) {
        const std::optional<ClassedParagraph> paragraph = classedParagraphs.next(syncEnd);
        if (!paragraph) {
            break;
        }
        const qsizetype syncAfterEnd = syncTag.next(syncEnd);
        const bool syncOwnsParagraph =
            syncAfterEnd < 0 || syncAfterEnd + kSyncTagLength > paragraph->equalsSign + 1;
        qsizetype contentStart = 0;
        const auto adoptClassOf = [&](const ClassedParagraph &classed) {
            currentClass =
                joinedClassName(text.sliced(classed.equalsSign + 1,
                                            classed.closingBracket - classed.equalsSign - 1),
                                classes);
            classes.try_emplace(currentClass);
            hasCurrentClass = true;
        };
        if (syncOwnsParagraph) {
            adoptClassOf(*paragraph);
            contentStart = paragraph->closingBracket + 1;
        } else {
            // A sync without a classed paragraph of its own (a bare "&nbsp;")
            // stays with the class of the sync before it, or with the first
            // classed paragraph of the text when it is the first.
            if (!hasCurrentClass) {
                ClassedParagraphFinder fromTheBeginning(text);
                const std::optional<ClassedParagraph> first = fromTheBeginning.next(0);
                if (!first) {
                    break;
                }
                adoptClassOf(*first);
            }
            contentStart = syncEnd;
        }

        const qsizetype nextSync = syncTag.next(contentStart);
        if (nextSync < 0) {
            const qsizetype end = bodyEnd.next(contentStart);
            store(contentStart, end < 0 ? text.size() : end);
            break;
        }
        const qsizetype nextStart = startWord.next(nextSync + kSyncTagLength);
        const qsizetype nextEquals =
            nextStart < 0 ? -1 : startEqualsSign.next(nextStart + kStartWordLength);
        if (nextEquals < 0) {
            break;
        }
        store(contentStart, nextSync);
        const qsizetype nextClose = startClosingBracket.next(nextEquals + 1);
        if (nextClose < 0) {
            break;
        }
        timeKey = withoutQuotesTrimmed(text.sliced(nextEquals + 1, nextClose - nextEquals - 1));
        syncEnd = nextClose + 1;
    }

    const ProcessedLine blank = tagProcessor.processingTag(u" ", type);
    for (auto &[className, dictionary] : classes) {
        if (!dictionary.contains(kBlankTimeKey)) {
            dictionary.insert(kBlankTimeKey, blank);
        }
    }
    return classes;
}

}  // namespace tolvane::subtitles
