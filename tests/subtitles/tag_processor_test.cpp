#include "subtitles/tag_processor.h"

#include <gtest/gtest.h>

#include "processed_line_text.h"
#include "subtitles/caption_colors.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using test::fixedWidthProcessor;
using test::rowTexts;

// Line breaks, references and the tag filter are the normaliser's; these are
// what the processor adds on top.
TEST(ProcessingTag, SplitsTheTextIntoRows) {
    struct Case {
        const char16_t *type;
        QString content;
        QStringList rows;
    };
    const Case cases[] = {
        {u"srt", " ", {" "}},
        {u"srt", "", {}},
        {u"srt", "a\n\nb\n", {"a", " ", "b"}},
        {u"smi", "<font color=red>a</font> <i>b</i><p>c", {"a bc"}},
        // Colour pairs around nothing, as the SAMI fuzz target found them.
        {u"smi", "<font color=red></font>", {}},
        {u"smi", "<fontcolor=><font>", {}},
        {u"smi", "<font color=red><font color=blue></font></font>", {}},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(rowTexts(fixedWidthProcessor().processingTag(c.content, c.type)), c.rows)
            << c.content.toStdString();
    }
}

TEST(ProcessingTag, ColoursOnlyTheFillString) {
    for (const bool isDefaultColor : {true, false}) {
        CaptionStyle style;
        style.isDefaultColor = isDefaultColor;
        const QString base = isDefaultColor ? "#FFFFFF" : "#F1E581";  // white or pale yellow
        const ProcessedLine line = fixedWidthProcessor(6.0, style)
                                       .processingTag(u"a<font color=\"Red\">bc</font>d", u"smi");
        ASSERT_EQ(line.rows.size(), 1u);
        const ProcessedRow &row = line.rows[0];
        EXPECT_EQ(row.fill.attributesAt(0).fillColor.hexName(), base);
        EXPECT_EQ(row.fill.attributesAt(1).fillColor.hexName(), "#FF0000");
        EXPECT_EQ(row.fill.attributesAt(1).strokeColor.hexName(), "#FF0000");
        EXPECT_EQ(row.fill.attributesAt(2).fillColor.hexName(), "#FF0000");
        EXPECT_EQ(row.fill.attributesAt(3).fillColor.hexName(), base);
        EXPECT_EQ(row.fill.runs().size(), 3u);
        EXPECT_EQ(row.outline.runs().size(), 1u);
        EXPECT_EQ(row.outline.attributesAt(1).fillColor.hexName(), "#000000");
    }
}

// A track holds each style once: the same colour and face in two cues (and
// in a blank row) is one object, a different colour another.
TEST(ProcessingTag, LinesOfOneProcessorShareTheirAttributes) {
    const TagProcessor processor = fixedWidthProcessor();
    const ProcessedLine first =
        processor.processingTag(u"<i>a</i><font color=red>b</font>", u"srt");
    const ProcessedLine second =
        processor.processingTag(u"<i>c</i>\n\n<font color=blue>d</font>", u"srt");
    ASSERT_EQ(first.rows.size(), 1u);
    ASSERT_EQ(second.rows.size(), 3u);
    EXPECT_EQ(&first.rows[0].fill.attributesAt(0), &second.rows[0].fill.attributesAt(0));
    EXPECT_EQ(&first.rows[0].outline.attributesAt(0), &second.rows[0].outline.attributesAt(0));
    EXPECT_EQ(&first.rows[0].outline.attributesAt(1), &second.rows[1].outline.attributesAt(0));
    EXPECT_NE(&first.rows[0].fill.attributesAt(1), &second.rows[2].fill.attributesAt(0));
    EXPECT_EQ(second.rows[2].fill.attributesAt(0).fillColor.hexName(), "#0000FF");
}

TEST(ProcessingTag, ItalicAndBoldFacesWithTheirMarkers) {
    const ProcessedLine line = fixedWidthProcessor().processingTag(u"<i>a<b>b</i>c</b>d", u"smi");
    ASSERT_EQ(line.rows.size(), 1u);
    const QStringList expectedMarkers = {"i", "ib", "b", ""};
    for (qsizetype i = 0; i < 4; ++i) {
        for (const StyledString *string : {&line.rows[0].fill, &line.rows[0].outline}) {
            const CaptionTextAttributes &attributes = string->attributesAt(i);
            EXPECT_EQ(attributes.marker, expectedMarkers[i]) << i;
            EXPECT_EQ(attributes.italic, expectedMarkers[i].contains('i')) << i;
            EXPECT_EQ(attributes.bold, expectedMarkers[i].contains('b')) << i;
        }
    }
}

TEST(ProcessingTag, FontSizeAndStrokeWidthsFollowTheStyle) {
    struct StyleCase {
        float sizePF;
        double width, height;
        bool boldPF;
        int fontSize;
        double outlineStroke, fillStroke;
    };
    const StyleCase cases[] = {
        {0.05f, 960.0, 540.0, false, 48, -5.0, 0.0},
        {0.05f, 640.0, 480.0, true, 33, -7.0, -2.0},  // 4:3 gets 1.05: 33.6 truncated
        {0.0f, 960.0, 540.0, false, 0, -5.0, 0.0},
    };
    for (const StyleCase &styleCase : cases) {
        CaptionStyle style;
        style.fnamePF = QStringLiteral("Noto Sans CJK KR");
        style.sizePF = styleCase.sizePF;
        style.viewWidth = styleCase.width;
        style.viewHeight = styleCase.height;
        style.boldPF = styleCase.boldPF;
        const ProcessedLine line = fixedWidthProcessor(6.0, style).processingTag(u"x", u"srt");
        ASSERT_EQ(line.rows.size(), 1u);
        const CaptionTextAttributes &fill = line.rows[0].fill.attributesAt(0);
        EXPECT_EQ(fill.fontSize, styleCase.fontSize);
        EXPECT_EQ(line.rows[0].outline.attributesAt(0).strokeWidth, styleCase.outlineStroke);
        EXPECT_EQ(fill.strokeWidth, styleCase.fillStroke);
    }
}

TEST(ProcessingTag, RubyAnnotationsSitUnderTheOddKeyOfTheirRow) {
    CaptionStyle style;
    style.sizePF = 0.05f;  // 48 px, annotations at 21 px
    const ProcessedLine line =
        fixedWidthProcessor(6.0, style)
            .processingTag(u"top<br>x<ruby>漢字<rt>かん<br>じ</rt></ruby>y<ruby>A<rt>a</rt></ruby>",
                           u"smi");
    EXPECT_EQ(rowTexts(line), QStringList({"top", "x漢字yA"}));
    ASSERT_EQ(line.rows.size(), 2u);
    EXPECT_TRUE(line.rows[0].rubyAnnotations.empty());
    QStringList annotations;  // "<base columns> <fill>|<outline> <font size>"
    for (const auto &ruby : line.rows[1].rubyAnnotations) {
        annotations << QStringLiteral("%1-%2 %3|%4 %5")
                           .arg(ruby.baseFirstColumn)
                           .arg(ruby.baseLastColumn)
                           .arg(ruby.fill.text(), ruby.outline.text())
                           .arg(ruby.fill.attributesAt(0).fontSize);
    }
    EXPECT_EQ(annotations, QStringList({"1-2 かん じ|かん じ 21", "4-4 a|a 21"}));
}

TEST(ProcessingTag, WrapsALongSingleLineIntoEvenRows) {
    // 80 characters; at 6 px each the line measures 480 px, narrow characters.
    const QString words = QStringLiteral(
        "The quick brown fox jumps over the lazy dog while seven wizards quietly watch on");
    ASSERT_EQ(words.size(), 80);
    const QStringList narrow = rowTexts(fixedWidthProcessor(6.0).processingTag(words, u"srt"));
    ASSERT_EQ(narrow.size(), 3);  // 36 per line: 3 lines of about 26
    for (const QString &row : narrow) {
        EXPECT_LE(row.size(), 36) << row.toStdString();
    }
    EXPECT_EQ(narrow.join(' '), words);
    // At 8 px each the average is wide: 26 per line.
    const QStringList wide = rowTexts(fixedWidthProcessor(8.0).processingTag(words, u"srt"));
    EXPECT_EQ(wide.size(), 4);
    EXPECT_EQ(wide.join(' '), words);
    // Under 410 px, with a line break already, or without spaces: untouched.
    EXPECT_EQ(rowTexts(fixedWidthProcessor(5.0).processingTag(words, u"srt")).size(), 1);
    EXPECT_EQ(rowTexts(fixedWidthProcessor(8.0).processingTag(words + "\nx", u"srt")).size(), 2);
    EXPECT_EQ(rowTexts(fixedWidthProcessor(8.0).processingTag(QString(80, 'x'), u"srt")).size(), 1);
}

}  // namespace
}  // namespace tolvane::subtitles
