#include "text_encodings.h"

#include <fcntl.h>
#include <uchardet/uchardet.h>
#include <unicode/ucnv.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <cerrno>
#include <memory>

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

const char *utf16ByteOrderFor(const QByteArray &bytes) {
    if (bytes.startsWith("\xFF\xFE")) {
        return "UTF-16LE";
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return "UTF-16BE";
    }
    // Mostly-ASCII mark-up puts its zero bytes on the high half of each unit.
    const qsizetype sample = std::min<qsizetype>(bytes.size(), 4096);
    qsizetype zerosAtEven = 0;
    qsizetype zerosAtOdd = 0;
    for (qsizetype i = 0; i < sample; ++i) {
        if (bytes[i] == '\0') {
            (i % 2 == 0 ? zerosAtEven : zerosAtOdd) += 1;
        }
    }
    return zerosAtOdd > zerosAtEven ? "UTF-16LE" : "UTF-16BE";
}

QByteArray icuNameForItem(int item, const QByteArray &bytes, const QLocale &locale) {
    const auto items = textEncodingItems();
    if (item < 0 || item >= int(items.size()) || items[item].kind != Kind::Encoding) {
        return detectTextEncoding(bytes, locale);
    }
    return items[item].icuName;
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
    }
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(name, &status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    QString text;
    // Every encoding offered yields at most two UTF-16 units per byte.
    text.resize(bytes.size() * 2 + 2);
    const int32_t length =
        ucnv_toUChars(converter.get(), reinterpret_cast<UChar *>(text.data()), int32_t(text.size()),
                      bytes.constData(), int32_t(bytes.size()), &status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    text.truncate(length);
    // Zero bytes are legal in UTF-8 and the 8-bit encodings, but a caption
    // text never holds U+0000: such a decode is UTF-16 read in the wrong
    // encoding, and failing it lets the UTF-16 try come.
    if (text.contains(QChar(u'\0'))) {
        return std::nullopt;
    }
    if (text.startsWith(QChar(0xFEFF))) {
        text.remove(0, 1);
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

QByteArray detectTextEncoding(const QByteArray &bytes, const QLocale &locale) {
    CharsetDetectorPtr detector(uchardet_new());
    QByteArray detected;
    if (detector &&
        uchardet_handle_data(detector.get(), bytes.constData(), std::size_t(bytes.size())) == 0) {
        uchardet_data_end(detector.get());
        detected = QByteArray(uchardet_get_charset(detector.get())).toUpper();
    }
    if (detected.isEmpty()) {
        return legacyEncodingForLocale(locale);
    }
    for (const EncodingAlias &alias : kDetectedEncodingAliases) {
        if (detected == alias.detected) {
            return alias.readAs;
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr probe(ucnv_open(detected.constData(), &status));
    return U_SUCCESS(status) ? detected : legacyEncodingForLocale(locale);
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
    for (const int item : encodingItems) {
        const QByteArray icuName = icuNameForItem(item, *file.bytes, locale);
        if (std::optional<QString> text = decodeTextStrictly(*file.bytes, icuName.constData())) {
            return {std::move(text), TextReadFailure::None, icuName};
        }
        result.failure = TextReadFailure::Undecodable;
    }
    return result;
}

}  // namespace tolvane
