#include "subtitles/markup_normalizer.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

struct NormalizingCase {
    const char *name;
    QString type;
    QString content;
    QString expected;
};

class PreProcessingTag : public ::testing::TestWithParam<NormalizingCase> {};

TEST_P(PreProcessingTag, NormalizesAsTheCaptionFilesExpect) {
    EXPECT_EQ(pre_processingTag(GetParam().content, GetParam().type), GetParam().expected);
}

const QString kSmi = QStringLiteral("smi");
const QString kSrt = QStringLiteral("srt");

INSTANTIATE_TEST_SUITE_P(
    LineBreaks, PreProcessingTag,
    ::testing::Values(
        NormalizingCase{"SmiDropsRawLineEnds", kSmi, "one\r\ntwo\rthree\nfour", "onetwothreefour"},
        NormalizingCase{"SmiBreaksAtBrAnyCase", kSmi, "a<br>b<BR />c<Br>d", "a\nb\nc\nd"},
        NormalizingCase{"SrtBreaksAtRawLineEnds", kSrt, "a\r\nb\rc\nd", "a\nb\nc\nd"},
        NormalizingCase{"SrtBrBesideLineEndIsOneBreak", kSrt, "a<br>\r\nb\r\n<br>c<br> \r\nd",
                        "a\nb\nc\nd"},
        NormalizingCase{"SrtLoneBr", kSrt, "a<br />b<BR>c", "a\nb\nc"}),
    [](const auto &testCase) { return std::string(testCase.param.name); });

INSTANTIATE_TEST_SUITE_P(
    References, PreProcessingTag,
    ::testing::Values(
        NormalizingCase{"Nbsp", kSmi, "&nbsp;a&NBSP", " a "},
        NormalizingCase{"Hangul", kSmi, "&#44032;", QString(QChar(44032))},
        NormalizingCase{"WithoutSemicolon", kSmi, "x&#65y", "xAy"},
        NormalizingCase{"SemicolonsInsideTheRun", kSmi, "&#6;5;", "A"},
        NormalizingCase{"AstralPlane", kSmi, "&#128512;", QString::fromUcs4(U"\U0001F600")},
        NormalizingCase{"BeyondUnicode", kSmi, "&#1114112;", QString(QChar(0xFFFD))},
        NormalizingCase{"Surrogate", kSmi, "&#55296;", QString(QChar(0xFFFD))},
        NormalizingCase{"Zero", kSmi, "&#0;", QString(QChar(0xFFFD))},
        NormalizingCase{"TwentyDigits", kSmi, "&#12345678901234567890;", QString(QChar(0xFFFD))},
        NormalizingCase{"NoDigitsStays", kSmi, "&#x41;", "&#x41;"}),
    [](const auto &testCase) { return std::string(testCase.param.name); });

INSTANTIATE_TEST_SUITE_P(
    RepairsAndRemovals, PreProcessingTag,
    ::testing::Values(
        NormalizingCase{"SpacedItalicClose", kSmi, "<i>a</ i>", "<i>a</i>"},
        NormalizingCase{"BareFontCloses", kSmi, "<font color=red>a<font>b",
                        "<font color=red>a</font>b"},
        NormalizingCase{"RubyBaseTagsGo", kSmi, "<ruby><rb>a</rb><rt>b</rt></ruby>",
                        "<ruby>a<rt>b</rt></ruby>"},
        NormalizingCase{"MisorderedRubyEnd", kSmi, "<ruby>a<rt>b<rt><ruby>",
                        "<ruby>a<rt>b</rt></ruby>"},
        NormalizingCase{"RubyParentheses", kSmi, "<ruby>a<rp>(</rp><rt>b</rt><rp>)</rp></ruby>",
                        "<ruby>a<rt>b</rt></ruby>"},
        NormalizingCase{"OverrideCodes", kSrt, "{\\an8}top {x", "top x"},
        NormalizingCase{"Comments", kSmi, "<!-- head -->a<!-- b", "a b"},
        NormalizingCase{"NestedCommentOpensInnermost", kSmi, "<!-- a <!-- b -->c", " a c"}),
    [](const auto &testCase) { return std::string(testCase.param.name); });

INSTANTIATE_TEST_SUITE_P(
    TagFilter, PreProcessingTag,
    ::testing::Values(NormalizingCase{"HonouredTagsStay", kSmi,
                                      "<I>a</I><b>b</b><FONT color=red>c</font>",
                                      "<I>a</I><b>b</b><FONT color=red>c</font>"},
                      NormalizingCase{"OtherTagsGo", kSmi, "<P Class=KRCC><span>a</span><x>", "a"},
                      NormalizingCase{"DigitAfterBracketIsText", kSmi, "a <3> b", "a 「3」 b"},
                      NormalizingCase{"SpaceAfterBracketIsText", kSmi, "< c >", "「 c 」"},
                      NormalizingCase{"ShortBracketsGo", kSmi, "a<>b<1>", "ab「1」"},
                      NormalizingCase{"InnermostBracketWins", kSmi, "a < b <i>c", "a < b <i>c"},
                      NormalizingCase{"UnclosedBracketStays", kSmi, "a <b", "a <b"}),
    [](const auto &testCase) { return std::string(testCase.param.name); });

}  // namespace
}  // namespace tolvane::subtitles
