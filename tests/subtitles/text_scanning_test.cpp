#include "subtitles/text_scanning.h"

#include <gtest/gtest.h>

#include "subtitles/markup_spans.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

TEST(IntegerValueSaturating, ReadsLikeTheCaptionFilesExpect) {
    const std::pair<const char *, std::int32_t> cases[] = {
        {"1000", 1000},
        {"  \t-42xyz", -42},
        {"+7", 7},
        {"1000 End=2000", 1000},
        {"abc", 0},
        {"", 0},
        {"-", 0},
        {"2147483647", 2147483647},
        {"2147483648", 2147483647},
        {"-2147483648", -2147483647 - 1},
        {"-2147483649", -2147483647 - 1},
        {"4294967296", 2147483647},
        {"00000000000000000000012", 12},
        {"99999999999999999999999999999999", 2147483647},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(integerValueSaturating(QString::fromLatin1(text)), expected) << text;
    }
}

TEST(TrimmedOfNewlines, TrimsLineEndsButNotSpaces) {
    EXPECT_EQ(trimmedOfNewlines(u"\r\n a\r\nb \r\n\n").toString(), " a\r\nb ");
    EXPECT_EQ(trimmedOfNewlines(u"\u2028x\u0085").toString(), "x");
    EXPECT_TRUE(trimmedOfNewlines(u"\n\r\n").isEmpty());
}

TEST(ForwardFinder, AnswersForwardQueriesAndRewinds) {
    const QString haystack = QStringLiteral("ab<sync>cd<sync>");
    ForwardFinder finder(haystack, u"<sync");
    EXPECT_EQ(finder.next(0), 2);
    EXPECT_EQ(finder.next(2), 2);
    EXPECT_EQ(finder.next(3), 10);
    EXPECT_EQ(finder.next(11), -1);
    EXPECT_EQ(finder.next(12), -1);
    EXPECT_EQ(finder.next(1), 2);  // an earlier start searches again
    EXPECT_EQ(finder.next(100), -1);
}

TEST(SortedArrayWithDescriptorKey, SortsByIntegerValueStably) {
    EXPECT_EQ(sortedArrayWithDescriptorKey(u"intValue",
                                           {"1000 End=2000", "-900000000", "200", " 1000", "abc"}),
              QStringList({"-900000000", "abc", "200", "1000 End=2000", " 1000"}));
}

}  // namespace
}  // namespace tolvane::subtitles
