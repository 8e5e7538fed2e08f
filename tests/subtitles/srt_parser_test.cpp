#include "subtitles/srt_parser.h"

#include <gtest/gtest.h>

#include "processed_line_text.h"
#include "subtitles/markup_spans.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {

void PrintTo(const TimeLineMsec &times, std::ostream *out) {
    *out << '[' << times.start << ", " << times.end << ']';
}

namespace {

using test::rowTexts;

QStringList describe(const std::optional<SrtParsingResult> &result) {
    if (!result) {
        return {"none"};
    }
    QStringList described = {"last=" + result->lastcuenumber};
    for (const QString &key : sortedArrayWithDescriptorKey(u"intValue", result->topdic.keys())) {
        described.append(key + "=" + rowTexts(result->topdic.value(key)).join('|'));
    }
    return described;
}

TEST(ParsingSrtFileToTimeContent, GivesTimedLines) {
    struct Case {
        const char *name;
        QString text;
        QStringList expected;
    };
    const Case cases[] = {
        {"StartEqualToPreviousEnd",
         "1\n00:00:01,000 --> 00:00:02,000\nA\n\n2\n00:00:02,000 --> 00:00:03,000\nB",
         {"last=2", "-900000000= ", "1000=A", "2000=B", "3000="}},
        {"MissingEndDropsTheCue",
         "1\n00:00:01,000 --> 00:00:02\nA\n\n2\n00:00:05,000 --> 00:00:06,000\nB\n",
         {"last=2", "-900000000= ", "5000=B", "6000="}},
        {"LostLastLineWithoutBlank",
         "1\n00:00:01,000 --> 00:00:02,000\nA\nB\n2\n00:00:03,000 --> 00:00:04,000\nC\n",
         {"last=2", "-900000000= ", "1000=A", "2000=", "3000=C", "4000="}},
        {"InnerCrLfKept",
         "1\r\n00:00:01,000 --> 00:00:02,000\r\nA\r\nB\r\n\r\n",
         {"last=1", "-900000000= ", "1000=A|B", "2000="}},
        {"ExtraBlankLinesTrimmed",
         "7\n00:00:01,000 --> 00:00:02,000\nA\n\n\n\n8\n00:00:03,000 --> 00:00:04,000\nB",
         {"last=8", "-900000000= ", "1000=A", "2000=", "3000=B", "4000="}},
        {"NotANumberBeforeTheLastTimeLine",
         "x\n00:00:01,000 --> 00:00:02,000\nA",
         {"last=0", "-900000000= ", "1000=A", "2000="}},
        {"OnlyTimeLineFirst", "00:00:01,000 --> 00:00:02,000\nA\n", {"none"}},
        {"MarkersNeverTogether", "1\n00:00:01\n-->\n,", {"none"}},
        {"Empty", "", {"none"}},
        {"OversizedAndNegativeTimes",
         "1\n4294967296:00:00,000 --> 99999999999999999999:00:00,000\nhuge\n\n"
         "2\n-1:00:00,000 --> -00:00:00,-20\nnegative\n",
         {"last=2", "-900000000= ", "-3600000=negative", "-20=", "2147483647="}},  // the end wins
        {"OversizedCueNumber",
         "99999999999999999999\n00:00:01,000 --> 00:00:02,000\nx",
         {"last=2147483647", "-900000000= ", "1000=x", "2000="}},
    };
    const TagProcessor processor = test::fixedWidthProcessor();
    for (const Case &c : cases) {
        EXPECT_EQ(describe(parsingSrtFileToTimeContent(c.text, u"srt", processor)), c.expected)
            << c.name;
    }
}

TEST(MsecFromTimeLine, ReadsTheWrittenForms) {
    const std::pair<const char *, TimeLineMsec> cases[] = {
        {"00:00:01,000 --> 00:00:02,500", {1000, 2500}},
        {"01:02:03,4 --> 01:02:04,40", {3723004, 3724040}},
        {"  00:01:02,500 --> 00:01:04,000 X1:100 X2:200 \r\n", {62500, 64000}},
        {"00:00:01,000 --> 00:00:02", {1000, -1}},
        {"00:00:01.500 --> 00:00:02.000", {-1, -1}},
        {"00:00:-01,000 --> 00:00:00,-5", {-1000, -5}},
        {"no time", {-1, -1}},
    };
    for (const auto &[line, expected] : cases) {
        EXPECT_EQ(msecFromTimeLine(QString::fromLatin1(line)), expected) << line;
    }
}

}  // namespace
}  // namespace tolvane::subtitles
