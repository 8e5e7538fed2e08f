#include "subtitles/text_plausibility.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <QByteArray>
#include <algorithm>
#include <array>
#include <bitset>
#include <memory>
#include <vector>

namespace tolvane {

namespace {

constexpr char32_t kFirstHangulSyllable = 0xAC00;
constexpr char32_t kLastHangulSyllable = 0xD7A3;
constexpr char32_t kFirstUnifiedIdeograph = 0x4E00;
constexpr char32_t kLastUnifiedIdeograph = 0x9FFF;

enum Script { Hangul, Kana, Han, Latin, OtherScript, kScriptCount, NoScript = kScriptCount };

// A character's script and what it adds to the score.
struct CharacterScore {
    Script script;
    int weight;
};

// Whose everyday ideographs count as common: an ideograph that one encoding
// keeps among its rare ones is usually the sign of text in another encoding.
enum class Family { Korean, Japanese, Simplified, Traditional, Any };
constexpr std::size_t kHanSets = 3;  // Japanese, Simplified, Traditional

// The Hangul syllables of KS X 1001 and the first-level ideographs of JIS X
// 0208, GB 2312 and Big5: the characters that everyday text is made of.
// Derived from ICU's own tables once, and read-only from then on.
struct CommonCharacters {
    std::bitset<kLastHangulSyllable - kFirstHangulSyllable + 1> hangul;
    std::array<std::bitset<kLastUnifiedIdeograph - kFirstUnifiedIdeograph + 1>, kHanSets> han;
};

struct ByteRange {
    unsigned char first;
    unsigned char last;
};

struct CommonRange {
    const char *icuName;
    Family family;
    ByteRange lead;
    std::array<ByteRange, 2> trails;
};

constexpr std::array kCommonRanges = {
    CommonRange{"windows-949-2000", Family::Korean, {0xB0, 0xC8}, {{{0xA1, 0xFE}, {0xA1, 0xFE}}}},
    CommonRange{"EUC-JP", Family::Japanese, {0xB0, 0xCF}, {{{0xA1, 0xFE}, {0xA1, 0xFE}}}},
    CommonRange{"GB18030", Family::Simplified, {0xB0, 0xD7}, {{{0xA1, 0xFE}, {0xA1, 0xFE}}}},
    CommonRange{"Big5", Family::Traditional, {0xA4, 0xC5}, {{{0x40, 0x7E}, {0xA1, 0xFE}}}},
};

void addDecodedCharacters(const CommonRange &range, CommonCharacters &common) {
    QByteArray bytes;
    for (int lead = range.lead.first; lead <= range.lead.last; ++lead) {
        for (const ByteRange &trail : range.trails) {
            for (int byte = trail.first; byte <= trail.last; ++byte) {
                bytes.append(char(lead));
                bytes.append(char(byte));
            }
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open(range.icuName, &status), &ucnv_close);
    if (U_FAILURE(status)) {
        return;
    }
    std::vector<UChar> decoded(std::size_t(bytes.size()) + 1);
    const int32_t length = ucnv_toUChars(converter.get(), decoded.data(), int32_t(decoded.size()),
                                         bytes.constData(), int32_t(bytes.size()), &status);
    if (U_FAILURE(status)) {
        return;
    }
    for (int32_t i = 0; i < length; ++i) {
        const char32_t unit = decoded[std::size_t(i)];
        if (unit >= kFirstHangulSyllable && unit <= kLastHangulSyllable) {
            common.hangul.set(unit - kFirstHangulSyllable);
        } else if (unit >= kFirstUnifiedIdeograph && unit <= kLastUnifiedIdeograph &&
                   range.family != Family::Korean) {
            common.han[std::size_t(range.family) - std::size_t(Family::Japanese)].set(
                unit - kFirstUnifiedIdeograph);
        }
    }
}

const CommonCharacters &commonCharacters() {
    static const CommonCharacters common = [] {
        CommonCharacters built;
        for (const CommonRange &range : kCommonRanges) {
            addDecodedCharacters(range, built);
        }
        return built;
    }();
    return common;
}

constexpr bool isBetween(char32_t c, char32_t first, char32_t last) {
    return c >= first && c <= last;
}

// The punctuation that legitimate windows-1252 captions use.
constexpr std::array<char32_t, 12> kPlainPunctuation = {
    0x2013, 0x2014, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2026, 0x20AC, 0x2122, 0x266A, 0x266B,
};

Family familyOfEncoding(const char *icuName) {
    struct Named {
        const char *icuName;
        Family family;
    };
    constexpr Named kFamilies[] = {
        {"windows-949-2000", Family::Korean}, {"Shift_JIS", Family::Japanese},
        {"EUC-JP", Family::Japanese},         {"ISO-2022-JP", Family::Japanese},
        {"GB18030", Family::Simplified},      {"Big5", Family::Traditional},
    };
    for (const Named &named : kFamilies) {
        if (qstricmp(named.icuName, icuName) == 0) {
            return named.family;
        }
    }
    return Family::Any;
}

bool isCommonIdeograph(char32_t c, Family family, const CommonCharacters &common) {
    const std::size_t bit = c - kFirstUnifiedIdeograph;
    switch (family) {
        case Family::Korean:  // hanja are rare in Korean captions
            return false;
        case Family::Any:
            return common.han[0].test(bit) || common.han[1].test(bit) || common.han[2].test(bit);
        default:
            return common.han[std::size_t(family) - std::size_t(Family::Japanese)].test(bit);
    }
}

CharacterScore scoreOfCharacter(char32_t c, Family family, const CommonCharacters &common) {
    if (c == 0xFFFD) {
        return {NoScript, -5};
    }
    if (isBetween(c, kFirstHangulSyllable, kLastHangulSyllable)) {
        return {Hangul, common.hangul.test(c - kFirstHangulSyllable) ? 3 : -1};
    }
    if (isBetween(c, 0x3131, 0x318E)) {  // compatibility jamo: "ㅋㅋ"
        return {Hangul, 1};
    }
    if (isBetween(c, 0x3041, 0x30FF)) {
        // Korean and Chinese encodings hold kana too, for the rare quotation.
        return {Kana, family == Family::Japanese || family == Family::Any ? 3 : 0};
    }
    if (isBetween(c, kFirstUnifiedIdeograph, kLastUnifiedIdeograph)) {
        return {Han, isCommonIdeograph(c, family, common) ? 2 : 0};
    }
    if (isBetween(c, 0x3000, 0x303F)) {
        return {NoScript, 1};
    }
    if (isBetween(c, 0xFF01, 0xFF5E) ||
        std::find(kPlainPunctuation.begin(), kPlainPunctuation.end(), c) !=
            kPlainPunctuation.end()) {
        return {NoScript, 0};
    }
    if (isBetween(c, 0xC0, 0xFF) && c != 0xD7 && c != 0xF7) {
        return {Latin, 1};
    }
    if (isBetween(c, 0x80, 0x9F)) {
        return {NoScript, -3};
    }
    if (isBetween(c, 0xA0, 0xBF) || c == 0xD7 || c == 0xF7) {
        return {NoScript, -2};
    }
    if (c == 0x152 || c == 0x153 || c == 0x160 || c == 0x161 || c == 0x178 || c == 0x17D ||
        c == 0x17E) {
        return {Latin, 0};
    }
    if (isBetween(c, 0xFF61, 0xFF9F)) {  // half-width katakana
        return {NoScript, -2};
    }
    if (isBetween(c, 0xE000, 0xF8FF) || u_charType(UChar32(c)) == U_UNASSIGNED) {
        return {NoScript, -3};
    }
    if (isBetween(c, 0xF900, 0xFAFF) || isBetween(c, 0x3300, 0x33FF)) {
        return {NoScript, -1};
    }
    return {OtherScript, -1};
}

// Which scripts may share one text: kana come with kanji.
constexpr std::array<std::array<bool, kScriptCount>, 4> kScriptGroups = {{
    {true, false, false, false, false},  // Korean
    {false, true, true, false, false},   // Japanese
    {false, false, true, false, false},  // Chinese
    {false, false, false, true, false},  // Latin
}};
constexpr int kForeignScriptCost = 2;

}  // namespace

int textPlausibilityScore(QStringView text, const char *icuName) {
    const CommonCharacters &common = commonCharacters();
    const Family family = familyOfEncoding(icuName);
    std::array<int, kScriptCount> weightOfScript{};
    std::array<int, kScriptCount> countOfScript{};
    int unscripted = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (c < 0x80) {
            continue;
        }
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(char16_t(c), text[i + 1].unicode());
            ++i;
        }
        const CharacterScore score = scoreOfCharacter(c, family, common);
        if (score.script == NoScript) {
            unscripted += score.weight;
        } else {
            weightOfScript[score.script] += score.weight;
            countOfScript[score.script] += 1;
        }
    }
    int scriptedCount = 0;
    for (const int count : countOfScript) {
        scriptedCount += count;
    }
    int best = scriptedCount == 0 ? 0 : -kForeignScriptCost * scriptedCount;
    for (const auto &group : kScriptGroups) {
        int score = 0;
        for (int script = 0; script < kScriptCount; ++script) {
            score += group[std::size_t(script)]
                         ? weightOfScript[std::size_t(script)]
                         : -kForeignScriptCost * countOfScript[std::size_t(script)];
        }
        best = std::max(best, score);
    }
    return best + unscripted;
}

}  // namespace tolvane
