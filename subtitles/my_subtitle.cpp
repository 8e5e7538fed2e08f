#include "subtitles/my_subtitle.h"

#include <QFileInfo>
#include <algorithm>
#include <exception>

#include "base/localized_strings.h"
#include "base/log.h"
#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"
#include "subtitles/subtitle_discovery.h"
#include "subtitles/subtitle_format.h"
#include "subtitles/tag_processor.h"
#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

namespace {

constexpr const char *kLoadedCode = "x";
constexpr const char *kNotShownOrder = "x";
constexpr const char *kFailedLang = "x";
constexpr const char *kFormatFailureCode = "f";

struct LoadFailureMessage {
    const char *code;
    const char *key;
};
constexpr LoadFailureMessage kLoadFailureMessages[] = {
    {"s", "WARNINGMTXACC"},  // reading refused: no permission
    {"e", "WARNINGMTXTXE"},  // not text in the last encoding tried
    {"f", "WARNINGMTXFMT"},  // text, but neither SAMI nor SubRip
    {"c", "WARNINGMTXCTS"},  // unreadable for any other reason
};

const char *codeOfReadFailure(TextReadFailure failure) {
    switch (failure) {
        case TextReadFailure::NoPermission:
            return "s";
        case TextReadFailure::Undecodable:
            return "e";
        case TextReadFailure::None:
        case TextReadFailure::Other:
            break;
    }
    return "c";
}

std::vector<SortedTimeKey> sortedTimeKeysOf(const TimeContentDictionary &dictionary) {
    std::vector<SortedTimeKey> sorted;
    sorted.reserve(std::size_t(dictionary.size()));
    for (auto line = dictionary.cbegin(); line != dictionary.cend(); ++line) {
        sorted.push_back({integerValueSaturating(line.key()), line.key()});
    }
    // Keys of equal value ("1000", "1000 ") in string order, so that the
    // hash's order never shows.
    std::sort(sorted.begin(), sorted.end(), [](const SortedTimeKey &a, const SortedTimeKey &b) {
        return a.msec != b.msec ? a.msec < b.msec : a.key < b.key;
    });
    return sorted;
}

SubtitleEntry failedEntry(const QString &url, const QString &pathType, const char *code) {
    SubtitleEntry entry;
    entry.url = url;
    entry.fileType = QFileInfo(url).suffix().toLower();
    entry.pathType = pathType;
    entry.error = QString::fromLatin1(code);
    entry.order = QString::fromLatin1(kNotShownOrder);
    entry.lang = QString::fromLatin1(kFailedLang);
    return entry;
}

SubtitleEntry loadedEntry(const QString &url, const QString &fileType, const QString &pathType,
                          const QString &lang, TimeContentDictionary dictionary) {
    SubtitleEntry entry;
    entry.url = url;
    entry.fileType = fileType;
    entry.pathType = pathType;
    entry.error = QString::fromLatin1(kLoadedCode);
    entry.order = QString::fromLatin1(kNotShownOrder);
    entry.lang = lang;
    entry.sorted = sortedTimeKeysOf(dictionary);
    entry.tcDic = std::move(dictionary);
    return entry;
}

template <typename Column, typename Field>
Column columnOf(const std::vector<SubtitleEntry> &entries, Field field) {
    Column column;
    column.reserve(qsizetype(entries.size()));
    for (const SubtitleEntry &entry : entries) {
        column.append(field(entry));
    }
    return column;
}

}  // namespace

CaptionStyle MySubtitle::captionStyle() const {
    return CaptionStyle{.fnamePF = fnamePF,
                        .boldPF = boldPF,
                        .sizePF = sizePF,
                        .viewWidth = viewSize.width(),
                        .viewHeight = viewSize.height(),
                        .isDefaultColor = isDefaultColor};
}

void MySubtitle::appendEntry(SubtitleEntry entry) { entries_.push_back(std::move(entry)); }

void MySubtitle::openSubtitleFileURL(const QString &videoPath, std::span<const int> encodingItems,
                                     bool bdmv, const QString &whereFolder, const QLocale &locale,
                                     const FileByteReader &reader) {
    try {
        std::vector<FoundSubtitleFile> candidates =
            realSubtitleURL(videoPath, QStringLiteral("smi"), bdmv, whereFolder);
        for (FoundSubtitleFile &found :
             realSubtitleURL(videoPath, QStringLiteral("srt"), bdmv, whereFolder)) {
            candidates.push_back(std::move(found));
        }
        if (candidates.empty()) {
            return;
        }
        const TagProcessor tagProcessor(captionStyle());
        for (const FoundSubtitleFile &candidate : candidates) {
            loadSubtitleFile(candidate.url, candidate.ptype, encodingItems, locale, reader,
                             tagProcessor);
        }
    } catch (const std::exception &exception) {
        logException("osfurl:e:b:wurl", exception.what());
    } catch (...) {
        logException("osfurl:e:b:wurl");
    }
}

void MySubtitle::loadSubtitleFile(const QString &url, const QString &pathType,
                                  std::span<const int> encodingItems, const QLocale &locale,
                                  const FileByteReader &reader, const TagProcessor &tagProcessor) {
    const TextReadResult read = readTextFile(url, encodingItems, locale, reader);
    if (!read.text) {
        appendEntry(failedEntry(url, pathType, codeOfReadFailure(read.failure)));
        return;
    }
    const QString format = recognisedSubtitleFormat(*read.text);
    if (format == u"smi") {
        SamiClassDictionaries classes =
            parsingSmiFileToLocalTimeContent(*read.text, format, tagProcessor);
        // The class names are upper-cased already, so the map's order is the
        // upper-cased order. No class means no entry, not a failed one: the
        // caller sees such a file as absent.
        for (auto &[className, dictionary] : classes) {
            appendEntry(loadedEntry(url, format, pathType, className, std::move(dictionary)));
        }
    } else if (format == u"srt") {
        // No time line, or none with a cue number before it: not SubRip after all.
        std::optional<SrtParsingResult> parsed =
            parsingSrtFileToTimeContent(*read.text, format, tagProcessor);
        if (!parsed) {
            appendEntry(failedEntry(url, pathType, kFormatFailureCode));
            return;
        }
        appendEntry(
            loadedEntry(url, format, pathType, parsed->lastcuenumber, std::move(parsed->topdic)));
    } else {
        appendEntry(failedEntry(url, pathType, kFormatFailureCode));
    }
}

QStringList MySubtitle::subtitleFileURLs() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.url; });
}
QStringList MySubtitle::subtitleFileTypes() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.fileType; });
}
QStringList MySubtitle::subtitlePathTypes() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.pathType; });
}
QStringList MySubtitle::subtitleErrors() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.error; });
}
QStringList MySubtitle::subtitleOrders() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.order; });
}
QStringList MySubtitle::subtitleLangs() const {
    return columnOf<QStringList>(entries_, [](const SubtitleEntry &e) { return e.lang; });
}
QList<TimeContentDictionary> MySubtitle::subtitleTCDics() const {
    return columnOf<QList<TimeContentDictionary>>(entries_,
                                                  [](const SubtitleEntry &e) { return e.tcDic; });
}
QList<QStringList> MySubtitle::subtitleSorteds() const {
    return columnOf<QList<QStringList>>(entries_, [](const SubtitleEntry &e) {
        QStringList keys;
        keys.reserve(qsizetype(e.sorted.size()));
        for (const SortedTimeKey &sorted : e.sorted) {
            keys.append(sorted.key);
        }
        return keys;
    });
}
QList<qint32> MySubtitle::subtitleDelays() const {
    return columnOf<QList<qint32>>(entries_, [](const SubtitleEntry &e) { return e.delay; });
}

QStringList MySubtitle::successSubtitleFileURLs() const {
    QStringList urls;
    for (const SubtitleEntry &entry : entries_) {
        if (entry.error == QLatin1String(kLoadedCode)) {
            urls.append(entry.url);
        }
    }
    return urls;
}

const char *MySubtitle::humanReadableErrorKey(const QString &code) {
    for (const LoadFailureMessage &message : kLoadFailureMessages) {
        if (code == QLatin1String(message.code)) {
            return message.key;
        }
    }
    return nullptr;
}

QString MySubtitle::humanReadableError(const QString &code) {
    const char *key = humanReadableErrorKey(code);
    return key ? localizedString(key) : QString();
}

QString MySubtitle::fullKey(qint64 index) const {
    if (index < 0 || index >= entryCount()) {
        return QStringLiteral("");
    }
    const SubtitleEntry &entry = entries_[std::size_t(index)];
    const QFileInfo file(entry.url);
    const QString separator = QString::fromLatin1(kFullKeySeparator);
    return file.completeBaseName() + separator + file.suffix().toLower() + separator +
           entry.fileType + separator + entry.pathType + separator + entry.lang;
}

QString MySubtitle::stringFromLastFourComponentsInFullKey(const QString &fullKey) {
    const QStringList parts = fullKey.split(QLatin1String(kFullKeySeparator));
    if (parts.size() < 4) {
        return QStringLiteral(" ");
    }
    QString matchingKey = QStringLiteral(" ");
    for (qsizetype i = parts.size() - 1; i >= parts.size() - 4; --i) {
        matchingKey = parts[i] + QLatin1Char('.') + matchingKey;
    }
    return matchingKey;
}

QStringList MySubtitle::reOpenSubtitleIdxs() const {
    QStringList idxs;
    for (qint64 i = 0; i < entryCount() && idxs.size() < 2; ++i) {
        const QString &order = entries_[std::size_t(i)].order;
        if (order == u"f") {
            idxs.prepend(fullKey(i));
        } else if (order == u"s") {
            idxs.append(fullKey(i));
        }
    }
    if (integrated_) {
        idxs.append(QString::fromLatin1(kIntegratedChoice));
    }
    return idxs;
}

SubtitleDelayDic MySubtitle::reOpenDelayDic() const {
    SubtitleDelayDic delays;
    for (qint64 i = 0; i < entryCount(); ++i) {
        delays.insert(fullKey(i), entries_[std::size_t(i)].delay);
    }
    return delays;
}

void MySubtitle::dump() const {
    QString message;
    for (const SubtitleEntry &entry : entries_) {
        // One multi-argument arg(), so that a "%1" in a file name stays as it is.
        message += QStringLiteral(
                       "\n\n→[%1]\n[ftype: %2][ptype: %3][error: %4][order: %5][lang: %6]"
                       "[tccount: %7][stcount: %8][delay: %9]")
                       .arg(entry.url, entry.fileType, entry.pathType, entry.error, entry.order,
                            entry.lang, QString::number(entry.tcDic.size()),
                            QString::number(entry.sorted.size()), QString::number(entry.delay));
    }
    message += QStringLiteral("\n\n→[bold: %1][dftc: %2][intd: %3]")
                   .arg(int(boldPF))
                   .arg(int(isDefaultColor))
                   .arg(int(integrated_));
    logInfo(message);
}

}  // namespace tolvane::subtitles
