#pragma once

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tolvane {

// One item of the subtitle text-encoding menu. The menu's item index is what
// the "TextEncodingPopUpItem2" setting stores.
struct TextEncodingItem {
    enum class Kind { Encoding, Separator, Automatic };
    Kind kind;
    const char *title;    // shown in the menu
    const char *icuName;  // ICU converter name; null for separators and Automatic
};

inline constexpr int kUtf8EncodingItem = 0;
inline constexpr int kUtf16EncodingItem = 1;
inline constexpr int kAutomaticEncodingItem = 3;  // the setting's default

std::span<const TextEncodingItem> textEncodingItems();

// The encodings a caption file is tried in, in order: UTF-8, then the user's
// menu item (detected from the file's bytes when it is Automatic), then UTF-16.
std::vector<int> encodingItemsToTry(int userEncodingItem);

// Decodes `bytes` as the ICU encoding `icuName`; an illegal or truncated
// sequence fails the whole text instead of becoming a replacement character.
// UTF-16 without a byte-order mark is read in the byte order its text suggests;
// a leading byte-order mark is never part of the text. A text holding U+0000
// fails too: that is UTF-16 read as UTF-8 or as an 8-bit encoding.
std::optional<QString> decodeTextStrictly(const QByteArray &bytes, const char *icuName);

// The encoding of `bytes` as uchardet judges it (EUC-KR read as its superset
// windows-949), or empty when it gives nothing ICU knows.
QByteArray detectedTextEncoding(const QByteArray &bytes);
// The same, or the legacy encoding of `locale`'s language when detection
// gives nothing.
QByteArray detectTextEncoding(const QByteArray &bytes, const QLocale &locale = QLocale::system());
QByteArray legacyEncodingForLocale(const QLocale &locale);

// Reading a caption file as text.
enum class TextReadFailure {
    None,
    NoPermission,  // reading was refused: no further encodings are tried
    Undecodable,   // the bytes are not text in the last encoding tried
    Other,         // missing, unreadable or too large
};

struct TextReadResult {
    std::optional<QString> text;
    TextReadFailure failure = TextReadFailure::None;
    QByteArray encoding;  // the ICU name that decoded the text
};

// How the bytes of a file are obtained; replaced in tests to inject failures.
struct FileBytes {
    std::optional<QByteArray> bytes;
    bool permissionDenied = false;
};
using FileByteReader = std::function<FileBytes(const QString &path)>;
FileBytes readFileBytes(const QString &path);

// Largest caption file read; anything bigger is treated as unreadable.
inline constexpr qint64 kMaxTextFileBytes = 64 * 1024 * 1024;

// Reads `path` trying the menu items `encodingItems` in order; the first that
// decodes strictly wins. Automatic weighs uchardet's answer, the legacy
// encoding of `locale` and those of Korean, Japanese, Chinese and Western
// captions by how plausible each decoded text is, since uchardet misjudges
// short texts; and when no item decodes strictly, Automatic reads the file in
// its likeliest encoding with U+FFFD for the bad bytes. Thread-safety: reentrant.
TextReadResult readTextFile(const QString &path, std::span<const int> encodingItems,
                            const QLocale &locale = QLocale::system(),
                            const FileByteReader &reader = readFileBytes);

}  // namespace tolvane
