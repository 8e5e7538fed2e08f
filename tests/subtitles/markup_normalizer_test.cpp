#include "subtitles/markup_normalizer.h"

#include <gtest/gtest.h>

#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

TEST(PreProcessingTag, NormalizesAsTheCaptionFilesExpect) {
    struct Case {
        const char *type;
        QString content;
        QString expected;
    };
    const Case cases[] = {
        // Line breaks
        {"smi", "one\r\ntwo\rthree\nfour", "onetwothreefour"},
        {"smi", "a<br>b<BR />c<Br>d", "a\nb\nc\nd"},
        {"srt", "a\r\nb\rc\nd", "a\nb\nc\nd"},
        {"srt", "a<br>\r\nb\r\n<br>c<br> \r\nd", "a\nb\nc\nd"},  // one break, not two
        // References
        {"smi", "&nbsp;a&NBSP", " a "},
        {"smi", "x&#65y", "xAy"},
        {"smi", "&#6;5;", "A"},  // semicolons inside the digit run
        {"smi", "&#128512;", QString::fromUcs4(U"\U0001F600")},
        {"smi", "&#x41;", "&#x41;"},
        {"smi", "&#1114111;", QString::fromUcs4(U"\U0010FFFF")},
        {"smi", "&#1114112;&#55296;&#57343;&#99999999999999999999;", QString(4, QChar(0xFFFD))},
        {"smi", "a&#0;b&#00;c&#;d", "abcd"},  // NUL shows nothing, as where the captions were made
        // Repairs and removals
        {"smi", "<i>a</ i>", "<i>a</i>"},
        {"smi", "<font color=red>a<font>b", "<font color=red>a</font>b"},
        {"smi", "<ruby><rb>a</rb><rt>b</rt></ruby>", "<ruby>a<rt>b</rt></ruby>"},
        {"smi", "<ruby>a<rt>b<rt><ruby>", "<ruby>a<rt>b</rt></ruby>"},
        {"smi", "<ruby>a<rp>(</rp><rt>b</rt><rp>)</rp></ruby>", "<ruby>a<rt>b</rt></ruby>"},
        {"srt", "{\\an8}top {x", "top x"},
        {"smi", "<!-- head -->a<!-- b", "a b"},
        {"smi", "<!-- a <!-- b -->c", " a c"},  // the innermost opening pairs
        // The tag filter
        {"smi", "<I>a</I><b>b</b><FONT color=red>c</font>",
         "<I>a</I><b>b</b><FONT color=red>c</font>"},
        {"smi", "<P Class=KRCC><span>a</span><x>", "a"},
        {"smi", "a <3> b", "a 「3」 b"},
        {"smi", "< c >", "「 c 」"},
        {"smi", "a<>b<1>", "ab「1」"},
        {"smi", "a < b <i>c", "a < b <i>c"},
        {"smi", "a <b", "a <b"},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(pre_processingTag(c.content, QString::fromLatin1(c.type)), c.expected)
            << c.type << ": " << c.content.toStdString();
    }
}

}  // namespace
}  // namespace tolvane::subtitles
