// Hostile and oversized caption input: each case must finish (linear time, no
// recursion) and keep its documented result.

#include <gtest/gtest.h>

#include <string_view>

#include "processed_line_text.h"
#include "subtitles/markup_normalizer.h"
#include "subtitles/sami_parser.h"
#include "subtitles/srt_parser.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using test::rowTexts;

constexpr qsizetype kTenMegabytes = 10 * 1024 * 1024;

QString repeated(QStringView piece, qsizetype times) { return piece.toString().repeated(times); }

TEST(Robustness, TenMegabyteSingleLineWithTheSystemFont) {
    const TagProcessor processor{CaptionStyle{}};
    const QString line = repeated(u"word ", kTenMegabytes / 5);
    const ProcessedLine processed = processor.processingTag(line, u"srt");
    ASSERT_GT(processed.rows.size(), 1000u);  // wrapped at spaces
    qsizetype characters = 0;
    for (const ProcessedRow &row : processed.rows) {
        characters += row.fill.text().size() + 1;
    }
    EXPECT_EQ(characters - 1, line.size());  // a line feed between rows, none after the last
}

// Found by the SAMI fuzz target: a colour pair around no text at all.
TEST(Robustness, FontColourPairAroundNothing) {
    const auto classes =
        parsingSmiFileToLocalTimeContent(u"<SYNCStart=><fontcolor=><font><syncstart <P Class=>",
                                         u"smi", test::fixedWidthProcessor());
    EXPECT_LE(classes.size(), 1u);
}

TEST(Robustness, MillionsOfTagsAndDeepNesting) {
    const TagProcessor processor = test::fixedWidthProcessor();
    struct TagCase {
        const char *name;
        QString content;
        QString expectedFirstRow;
    };
    const TagCase cases[] = {
        {"TwoMillionItalicOpenings", repeated(u"<i>", 2'000'000) + "x", "x"},
        {"MillionItalicPairs", repeated(u"<i>a</i>", 1'000'000), repeated(u"a", 1'000'000)},
        {"NestedFonts",
         repeated(u"<font color=red>", 100'000) + "x" + repeated(u"</font>", 100'000), "x"},
        {"StrayClosings", repeated(u"</i></b></font></rt></ruby>", 200'000) + "y", "y"},
        {"UnclosedOpenings", repeated(u"<ruby><rt><b><font color=red>", 100'000) + "w", "w"},
        {"UnclosedBrackets", repeated(u"<", 1'000'000) + "z", repeated(u"<", 1'000'000) + "z"},
        {"UnclosedComments", repeated(u"<!--{", 500'000), ""},
    };
    for (const TagCase &tagCase : cases) {
        const ProcessedLine line = processor.processingTag(tagCase.content, u"smi");
        const QStringList rows = rowTexts(line);
        if (tagCase.expectedFirstRow.isEmpty()) {
            EXPECT_LE(rows.size(), 1) << tagCase.name;
        } else {
            ASSERT_FALSE(rows.isEmpty()) << tagCase.name;
            EXPECT_EQ(rows.first(), tagCase.expectedFirstRow) << tagCase.name;
        }
        if (std::string_view(tagCase.name) == "NestedFonts") {
            EXPECT_EQ(line.rows[0].fill.attributesAt(0).fillColor.hexName(), "#FF0000");
        }
    }
}

TEST(Robustness, ManyReplacementsAndRows) {
    const TagProcessor processor = test::fixedWidthProcessor();
    const ProcessedLine rows = processor.processingTag(repeated(u"&NBSP;x<BR />", 100'000), u"smi");
    ASSERT_EQ(rows.rows.size(), 100'000u);
    EXPECT_EQ(rows.rows.back().fill.text(), " x");
    EXPECT_EQ(rows.rows.back().rowKey, 200'000);
    EXPECT_EQ(pre_processingTag(repeated(u"&#65;", 1'000'000), u"srt"), repeated(u"A", 1'000'000));
    EXPECT_EQ(pre_processingTag(repeated(u"&#", 1'000'000), u"smi"), repeated(u"&#", 1'000'000));
}

TEST(Robustness, ManySyncsWithoutParagraphsBeforeOneClassedParagraph) {
    // Every bare sync asks for the next classed paragraph, which lies at the
    // very end: a re-scan per sync would be quadratic.
    QString text;
    for (int i = 0; i < 200'000; ++i) {
        text += QStringLiteral("<sync start=%1>&nbsp;").arg(i);
    }
    text += QStringLiteral("<p class=LAST>end");
    const auto classes =
        parsingSmiFileToLocalTimeContent(text, u"smi", test::fixedWidthProcessor());
    ASSERT_EQ(classes.size(), 1u);
    EXPECT_EQ(classes.at("LAST").size(), 200'001);
}

TEST(Robustness, LongSrtLinesAndManyTimeLines) {
    const TagProcessor processor = test::fixedWidthProcessor();
    const QString oneLine = "1\n" + repeated(u"0:0:0,1 --> ", kTenMegabytes / 12);
    EXPECT_TRUE(parsingSrtFileToTimeContent(oneLine, u"srt", processor).has_value());
    const QString manyTimeLines = "1\n" + repeated(u"00:00:01,000 --> 00:00:02,000\n", 300'000);
    const auto result = parsingSrtFileToTimeContent(manyTimeLines, u"srt", processor);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->topdic.size(), 3);
}

}  // namespace
}  // namespace tolvane::subtitles
