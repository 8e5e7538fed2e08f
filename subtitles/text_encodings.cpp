#include "text_encodings.h"

#include <fcntl.h>
#include <uchardet/uchardet.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unistd.h>

#include <QFile>
#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>

#include "subtitles/text_plausibility.h"

namespace tolvane {

namespace {

using Kind = TextEncodingItem::Kind;

constexpr std::array kTextEncodingItems = {
    TextEncodingItem{Kind::Encoding, "Unicode (UTF-8)", "UTF-8"},
    TextEncodingItem{Kind::Encoding, "Unicode (UTF-16)", "UTF-16"},
    TextEncodingItem{Kind::Separator, "", nullptr},
    TextEncodingItem{Kind::Automatic, "Automatic", nullptr},
    TextEncodingItem{Kind::Separator, "", nullptr},
    TextEncodingItem{Kind::Encoding, "Korean (Windows, EUC-KR)", "windows-949-2000"},
    TextEncodingItem{Kind::Encoding, "Japanese (Shift JIS)", "Shift_JIS"},
    TextEncodingItem{Kind::Encoding, "Japanese (EUC)", "EUC-JP"},
    TextEncodingItem{Kind::Encoding, "Japanese (ISO 2022-JP)", "ISO-2022-JP"},
    TextEncodingItem{Kind::Encoding, "Chinese Simplified (GB 18030)", "GB18030"},
    TextEncodingItem{Kind::Encoding, "Chinese Traditional (Big 5)", "Big5"},
    TextEncodingItem{Kind::Encoding, "Thai (Windows, TIS-620)", "windows-874-2000"},
    TextEncodingItem{Kind::Encoding, "Central European (Windows)", "windows-1250"},
    TextEncodingItem{Kind::Encoding, "Cyrillic (Windows)", "windows-1251"},
    TextEncodingItem{Kind::Encoding, "Western (Windows Latin 1)", "windows-1252"},
    TextEncodingItem{Kind::Encoding, "Greek (Windows)", "windows-1253"},
    TextEncodingItem{Kind::Encoding, "Turkish (Windows Latin 5)", "windows-1254"},
    TextEncodingItem{Kind::Encoding, "Hebrew (Windows)", "windows-1255"},
    TextEncodingItem{Kind::Encoding, "Arabic (Windows)", "windows-1256"},
    TextEncodingItem{Kind::Encoding, "Baltic (Windows)", "windows-1257"},
    TextEncodingItem{Kind::Encoding, "Vietnamese (Windows)", "windows-1258"},
    TextEncodingItem{Kind::Encoding, "Western (ISO Latin 1)", "ISO-8859-1"},
    TextEncodingItem{Kind::Encoding, "Central European (ISO Latin 2)", "ISO-8859-2"},
    TextEncodingItem{Kind::Encoding, "Western (ISO Latin 3)", "ISO-8859-3"},
    TextEncodingItem{Kind::Encoding, "Central European (ISO Latin 4)", "ISO-8859-4"},
    TextEncodingItem{Kind::Encoding, "Cyrillic (ISO 8859-5)", "ISO-8859-5"},
    TextEncodingItem{Kind::Encoding, "Arabic (ISO 8859-6)", "ISO-8859-6"},
    TextEncodingItem{Kind::Encoding, "Greek (ISO 8859-7)", "ISO-8859-7"},
    TextEncodingItem{Kind::Encoding, "Hebrew (ISO 8859-8)", "ISO-8859-8"},
    TextEncodingItem{Kind::Encoding, "Turkish (ISO Latin 5)", "ISO-8859-9"},
    TextEncodingItem{Kind::Encoding, "Nordic (ISO Latin 6)", "ISO-8859-10"},
    TextEncodingItem{Kind::Encoding, "Thai (ISO 8859-11)", "ISO-8859-11"},
    TextEncodingItem{Kind::Encoding, "Baltic (ISO Latin 7)", "ISO-8859-13"},
    TextEncodingItem{Kind::Encoding, "Celtic (ISO Latin 8)", "ISO-8859-14"},
    TextEncodingItem{Kind::Encoding, "Western (ISO Latin 9)", "ISO-8859-15"},
    TextEncodingItem{Kind::Encoding, "Cyrillic (KOI8-R)", "KOI8-R"},
};

// Detector names for which we read with a superset instead.
struct EncodingAlias {
    const char *detected;
    const char *readAs;
};
constexpr std::array kDetectedEncodingAliases = {
    EncodingAlias{"EUC-KR", "windows-949-2000"},  EncodingAlias{"UHC", "windows-949-2000"},
    EncodingAlias{"CP949", "windows-949-2000"},   EncodingAlias{"ASCII", "UTF-8"},
    EncodingAlias{"TIS-620", "windows-874-2000"}, EncodingAlias{"GB2312", "GB18030"},
};

struct ConverterCloser {
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

struct CharsetDetectorDeleter {
    void operator()(uchardet_t detector) const { uchardet_delete(detector); }
};
using CharsetDetectorPtr =
    std::unique_ptr<std::remove_pointer_t<uchardet_t>, CharsetDetectorDeleter>;

// The byte order of UTF-16 text, or null when the bytes do not look like
// UTF-16. Without a byte-order mark only the zero bytes tell: caption mark-up
// is mostly ASCII, whose units have a zero high byte, so one half of the
// bytes holds many zeros and the other almost none. Legacy multi-byte text
// has no zero bytes at all.
const char *utf16ByteOrderFor(const QByteArray &bytes) {
    if (bytes.startsWith("\xFF\xFE")) {
        return "UTF-16LE";
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return "UTF-16BE";
    }
    const qsizetype sample = std::min<qsizetype>(bytes.size(), 4096);
    qsizetype zerosAtEven = 0;
    qsizetype zerosAtOdd = 0;
    for (qsizetype i = 0; i < sample; ++i) {
        if (bytes[i] == '\0') {
            (i % 2 == 0 ? zerosAtEven : zerosAtOdd) += 1;
        }
    }
    const qsizetype units = sample / 2;
    const qsizetype more = std::max(zerosAtEven, zerosAtOdd);
    const qsizetype fewer = std::min(zerosAtEven, zerosAtOdd);
    if (units == 0 || more * 8 < units || fewer * 8 > more) {
        return nullptr;
    }
    return zerosAtOdd > zerosAtEven ? "UTF-16LE" : "UTF-16BE";
}

enum class InvalidBytes { Fail, Replace };

void replaceWithReplacementCharacter(const void *, UConverterToUnicodeArgs *arguments, const char *,
                                     int32_t, UConverterCallbackReason reason, UErrorCode *status) {
    if (reason > UCNV_IRREGULAR) {
        return;
    }
    *status = U_ZERO_ERROR;
    const UChar replacement = 0xFFFD;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

// Decodes `bytes` with the ICU converter `icuName`. With `isWholeText` false
// the bytes are a prefix, and a character cut at their end is no error.
std::optional<QString> decodeBytes(QByteArrayView bytes, const char *icuName,
                                   InvalidBytes invalidBytes, bool isWholeText = true) {
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(icuName, &status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    if (invalidBytes == InvalidBytes::Fail) {
        ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                            &status);
    } else {
        ucnv_setToUCallBack(converter.get(), replaceWithReplacementCharacter, nullptr, nullptr,
                            nullptr, &status);
    }
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    QString text;
    // Every encoding offered yields at most two UTF-16 units per byte.
    text.resize(bytes.size() * 2 + 2);
    UChar *target = reinterpret_cast<UChar *>(text.data());
    const char *source = bytes.data();
    ucnv_toUnicode(converter.get(), &target, target + text.size(), &source, source + bytes.size(),
                   nullptr, isWholeText, &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.truncate(target - reinterpret_cast<UChar *>(text.data()));
    if (text.startsWith(QChar(0xFEFF))) {
        text.remove(0, 1);
    }
    return text;
}

// The legacy encodings that Automatic weighs besides uchardet's answer, in
// the order that breaks ties after it.
constexpr std::array kAutomaticCandidates = {
    "UTF-8", "windows-949-2000", "Shift_JIS", "EUC-JP", "GB18030", "Big5", "windows-1252",
};
// Plausibility is judged on the start of the text; validity on all of it.
constexpr qsizetype kPlausibilitySampleBytes = 64 * 1024;

struct AutomaticChoice {
    std::optional<QString> text;  // decoded strictly in `encoding`
    QByteArray encoding;
    QByteArray mostPlausible;  // for reading with replacements when nothing is strict
};

// Decodes the start of `bytes` in every candidate and tries them strictly in
// order of plausibility, best first; uchardet's answer wins ties. Only texts
// that look at least neutral are taken; U+FFFD counts against a candidate.
AutomaticChoice chooseAutomaticEncoding(const QByteArray &bytes, const QLocale &locale) {
    std::vector<QByteArray> candidates;
    const auto addCandidate = [&candidates](const QByteArray &name) {
        for (const QByteArray &known : candidates) {
            if (name.isEmpty() || qstricmp(known.constData(), name.constData()) == 0) {
                return;
            }
        }
        candidates.push_back(name);
    };
    addCandidate(detectedTextEncoding(bytes));
    addCandidate(legacyEncodingForLocale(locale));
    for (const char *name : kAutomaticCandidates) {
        addCandidate(name);
    }

    const QByteArrayView sample =
        QByteArrayView(bytes).first(std::min(bytes.size(), kPlausibilitySampleBytes));
    const bool isWholeText = sample.size() == bytes.size();
    struct Judged {
        QByteArray encoding;
        int score;
    };
    std::vector<Judged> judged;
    for (const QByteArray &candidate : candidates) {
        if (const std::optional<QString> start =
                decodeBytes(sample, candidate.constData(), InvalidBytes::Replace, isWholeText)) {
            judged.push_back({candidate, textPlausibilityScore(*start, candidate.constData())});
        }
    }
    std::stable_sort(judged.begin(), judged.end(),
                     [](const Judged &a, const Judged &b) { return a.score > b.score; });
    AutomaticChoice choice;
    if (!judged.empty()) {
        choice.mostPlausible = judged.front().encoding;
    }
    for (const Judged &candidate : judged) {
        // windows-1252 reads any bytes: a text that looks worse in it than
        // nothing is a damaged file in the likeliest encoding instead.
        if (candidate.score < 0) {
            break;
        }
        if (std::optional<QString> text =
                decodeTextStrictly(bytes, candidate.encoding.constData())) {
            choice.text = std::move(text);
            choice.encoding = candidate.encoding;
            break;
        }
    }
    return choice;
}

bool isAutomaticItem(int item) {
    const auto items = textEncodingItems();
    return item < 0 || item >= int(items.size()) || items[item].kind != Kind::Encoding;
}

}  // namespace

std::span<const TextEncodingItem> textEncodingItems() { return kTextEncodingItems; }

std::vector<int> encodingItemsToTry(int userEncodingItem) {
    return {kUtf8EncodingItem, userEncodingItem, kUtf16EncodingItem};
}

std::optional<QString> decodeTextStrictly(const QByteArray &bytes, const char *icuName) {
    const char *name = icuName;
    if (qstricmp(icuName, "UTF-16") == 0) {
        name = utf16ByteOrderFor(bytes);
        if (!name) {
            return std::nullopt;
        }
    }
    std::optional<QString> text = decodeBytes(bytes, name, InvalidBytes::Fail);
    // Zero bytes are legal in UTF-8 and the 8-bit encodings, but a caption
    // text never holds U+0000: such a decode is UTF-16 read in the wrong
    // encoding, and failing it lets the UTF-16 try come.
    if (text && text->contains(QChar(u'\0'))) {
        return std::nullopt;
    }
    return text;
}

QByteArray legacyEncodingForLocale(const QLocale &locale) {
    switch (locale.language()) {
        case QLocale::Korean:
            return "windows-949-2000";
        case QLocale::Japanese:
            return "Shift_JIS";
        case QLocale::Chinese:
            return "GB18030";
        default:
            return "windows-1252";
    }
}

QByteArray detectedTextEncoding(const QByteArray &bytes) {
    CharsetDetectorPtr detector(uchardet_new());
    QByteArray detected;
    if (detector &&
        uchardet_handle_data(detector.get(), bytes.constData(), std::size_t(bytes.size())) == 0) {
        uchardet_data_end(detector.get());
        detected = QByteArray(uchardet_get_charset(detector.get())).toUpper();
    }
    if (detected.isEmpty()) {
        return {};
    }
    for (const EncodingAlias &alias : kDetectedEncodingAliases) {
        if (detected == alias.detected) {
            return alias.readAs;
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr probe(ucnv_open(detected.constData(), &status));
    return U_SUCCESS(status) ? detected : QByteArray();
}

QByteArray detectTextEncoding(const QByteArray &bytes, const QLocale &locale) {
    const QByteArray detected = detectedTextEncoding(bytes);
    return detected.isEmpty() ? legacyEncodingForLocale(locale) : detected;
}

FileBytes readFileBytes(const QString &path) {
    // Opened by hand so that a refused read can be told from a missing file.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return {std::nullopt, errno == EACCES || errno == EPERM};
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    if (file.size() > kMaxTextFileBytes) {
        return {};
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {};
    }
    return {std::move(bytes), false};
}

TextReadResult readTextFile(const QString &path, std::span<const int> encodingItems,
                            const QLocale &locale, const FileByteReader &reader) {
    TextReadResult result;
    result.failure = TextReadFailure::Other;
    const FileBytes file = reader(path);
    if (file.permissionDenied) {
        result.failure = TextReadFailure::NoPermission;
        return result;
    }
    if (!file.bytes) {
        return result;
    }
    std::optional<AutomaticChoice> automatic;
    for (const int item : encodingItems) {
        if (isAutomaticItem(item)) {
            if (!automatic) {
                automatic = chooseAutomaticEncoding(*file.bytes, locale);
            }
            if (automatic->text) {
                return {automatic->text, TextReadFailure::None, automatic->encoding};
            }
        } else if (std::optional<QString> text =
                       decodeTextStrictly(*file.bytes, textEncodingItems()[item].icuName)) {
            return {std::move(text), TextReadFailure::None, textEncodingItems()[item].icuName};
        }
        result.failure = TextReadFailure::Undecodable;
    }
    // Automatic promises captions, not a verdict: when nothing reads the file
    // strictly, the likeliest encoding reads it with U+FFFD for the bad bytes.
    if (automatic && !automatic->mostPlausible.isEmpty()) {
        if (std::optional<QString> text = decodeBytes(
                *file.bytes, automatic->mostPlausible.constData(), InvalidBytes::Replace)) {
            text->remove(QChar(u'\0'));
            return {std::move(text), TextReadFailure::None, automatic->mostPlausible};
        }
    }
    return result;
}

}  // namespace tolvane
