#include "subtitles/text_scanning.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

TEST(IntegerValueSaturating, ReadsLikeTheCaptionFilesExpect) {
    const std::pair<const char *, std::int32_t> cases[] = {
        {"  \t-42xyz", -42},
        {"+7", 7},
        {"1000 End=2000", 1000},
        {"abc", 0},
        {"-", 0},
        {"2147483648", 2147483647},
        {"-2147483649", -2147483647 - 1},
        {"00000000000000000000012", 12},
        {"99999999999999999999999999999999", 2147483647},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(integerValueSaturating(QString::fromLatin1(text)), expected) << text;
    }
}

// Only A-Z fold: the Kelvin sign and the dotted capital I that Unicode folding
// turns into "k" and "i" must not make a tag.
TEST(AsciiLowered, ComparisonsFoldAsciiLettersOnly) {
    struct Case {
        const char16_t *text;
        const char16_t *needle;
        bool equals;
        bool startsWith;
        qsizetype index;
    };
    const Case cases[] = {
        {u"<FONT color=red>", u"<font", false, true, 0},
        {u"<I>", u"<i>", true, true, 0},
        {u"<\u0130>", u"<i>", false, false, -1},
        {u"<\u212Aa>", u"<ka>", false, false, -1},
        {u"<fo", u"<font", false, false, -1},
        {u"<font size=3 COLOR=#fff>", u"color=", false, false, 13},
        {u"", u"", true, true, 0},
    };
    for (const Case &c : cases) {
        const QString text = QString::fromUtf16(c.text);
        EXPECT_EQ(equalsAsciiLowered(text, c.needle), c.equals) << text.toStdString();
        EXPECT_EQ(startsWithAsciiLowered(text, c.needle), c.startsWith) << text.toStdString();
        EXPECT_EQ(indexOfAsciiLowered(text, c.needle), c.index) << text.toStdString();
    }
}

}  // namespace
}  // namespace tolvane::subtitles
