#include "subtitles/markup_spans.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

struct SpanCase {
    const char *content;
    const char *open;
    QStringList closes;
    std::vector<TextSpan> expected;
};

TEST(StartEndLocDicInContent, FindsInnermostClosedSpans) {
    const QStringList close = {">"};
    const QStringList references = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", ";"};
    const SpanCase cases[] = {
        {"<a>b<c>", "<", close, {{0, 2}, {4, 6}}},
        {"<<<a>", "<", close, {{2, 4}}},
        {"a<b", "<", close, {}},
        {">a>", "<", close, {}},
        {"<FONT>x</Font>", "<font", {"</font>"}, {{0, 13}}},
        {"<font><font>x</font></font>", "<font", {"</font>"}, {{6, 19}}},
        {"&#12;x&#&#3a", "&#", references, {{0, 4}, {8, 10}}},
        {"&#", "&#", references, {}},
    };
    for (const SpanCase &spanCase : cases) {
        EXPECT_EQ(startEndLocDicInContent(QString::fromUtf8(spanCase.content),
                                          QString::fromUtf8(spanCase.open), spanCase.closes),
                  spanCase.expected)
            << spanCase.content;
    }
}

TEST(ArrayFromStartEndLocDic, PairsTagsInTextWithoutTags) {
    const QString content = QStringLiteral("a<i>bc</i>d<i>e<i>f</i></i><I></I>");
    const auto tags = startEndLocDicInContent(content, u"<", {QStringLiteral(">")});
    const std::vector<TaggedRange> expected = {
        {1, 2, "<i>"},
        {5, 5, "<i>"},
        {6, 5, "<I>"},
    };
    EXPECT_EQ(arrayFromStartEndLocDic(tags, u"<i>", u"</i>", content), expected);
}

TEST(RubyDicInContent, PairsBasesWithAnnotations) {
    const QString content =
        QStringLiteral("x<ruby>AB<rt>ab</rt>C<rt>c</rt></ruby>y<ruby>D<rt>d</ruby>");
    const RubyDictionary ruby = rubyDicInContent(content);
    const std::vector<RubyPair> expected = {{1, 2, 3, 4}, {5, 5, 6, 6}};
    EXPECT_EQ(ruby.btmtoparray, expected);
    EXPECT_EQ(ruby.tagtopdic.size(), 9u);
}

TEST(SortedArrayWithDescriptorKey, SortsByIntegerValueStably) {
    EXPECT_EQ(sortedArrayWithDescriptorKey(u"intValue",
                                           {"1000 End=2000", "-900000000", "200", " 1000", "abc"}),
              QStringList({"-900000000", "abc", "200", "1000 End=2000", " 1000"}));
}

}  // namespace
}  // namespace tolvane::subtitles
