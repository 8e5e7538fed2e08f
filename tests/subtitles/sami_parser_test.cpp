#include "subtitles/sami_parser.h"

#include <gtest/gtest.h>

#include "processed_line_text.h"
#include "subtitles/markup_spans.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using test::rowTexts;

// Each class as "key=row|row;key=row" over its keys in integer order, the
// blank key included.
QStringList describe(const SamiClassDictionaries &classes) {
    QStringList described;
    for (const auto &[className, dictionary] : classes) {
        QStringList cues;
        for (const QString &key : sortedArrayWithDescriptorKey(u"intValue", dictionary.keys())) {
            cues.append(key + "=" + rowTexts(dictionary.value(key)).join('|'));
        }
        described.append(className + ":" + cues.join(';'));
    }
    return described;
}

const QString kHead = QStringLiteral(
    "<SAMI><HEAD><STYLE><!-- .KRCC {Name:Korean; lang:ko-KR;} --></STYLE></HEAD><BODY>\r\n");

TEST(ParsingSmiFileToLocalTimeContent, GivesTimedLinesPerClass) {
    struct Case {
        const char *name;
        QString text;
        QStringList expected;
    };
    // clang-format off
    const Case cases[] = {
        {"OneClassPerSync", kHead + "<SYNC Start=1000><P Class=KRCC>가<P Class=ENCC>A\r\n"
                                    "<SYNC Start=2000><P Class=ENCC>B</BODY>",
         {"ENCC:-900000000= ;2000=B", "KRCC:-900000000= ;1000=가A"}},
        {"QuotedAndSpacedStart", kHead + "<SYNC Start=\"1000\"><P Class=KRCC>a"
                                         "<SYNC Start= 2000 ><P Class=\"krcc\">b</body>",
         {"KRCC:-900000000= ;1000=a;2000=b"}},
        {"KeysStoredAsWritten", "<sync start=1000 end=2000><p class=KRCC>a<sync start=3000><p class=KRCC>b",
         {"KRCC:-900000000= ;1000 end=2000=a;3000=b"}},
        {"BodyEndInAnyCase", "<sync start=1000><p class=KRCC>a<br>b</BoDy></sami>trailing",
         {"KRCC:-900000000= ;1000=a|b"}},
        {"LastSyncWithoutStartLosesTheContentBefore",
         "<sync start=1000><p class=KRCC>a<sync start=2000><p class=KRCC>b<sync><p class=KRCC>c",
         {"KRCC:-900000000= ;1000=a"}},
        {"IncompleteLastSyncIsNotStored", "<sync start=1000><p class=KRCC>a<sync start=2000>&nbsp;",
         {"KRCC:-900000000= ;1000=a"}},
        {"BareSyncKeepsThePreviousClass",
         "<sync start=1000><p class=ENCC>a<sync start=2000>&nbsp;<sync start=3000><p class=ENCC>c",
         {"ENCC:-900000000= ;1000=a;2000= ;3000=c"}},
        {"FirstBareSyncTakesTheFirstClassOfTheText", "<sync start=500>x<sync start=1000><p class=ENCC>a",
         {"ENCC:-900000000= ;500=x;1000=a"}},
        {"SpacedClassJoinsAnExistingOne",
         "<sync start=1><p class=KR CC>a<sync start=2><p class=KRCC>b<sync start=3><p class=KR CC>c",
         {"KR CC:-900000000= ;1=a", "KRCC:-900000000= ;2=b;3=c"}},
        {"ExplicitBlankKeyIsKept", "<sync start=-900000000><p class=KRCC>early<sync start=5><p class=KRCC>b",
         {"KRCC:-900000000=early;5=b"}},
        {"NoStartAnywhere", "<sync><p class=KRCC>a", {}},
        {"NoSync", "<p class=KRCC>a", {}},
        {"Empty", "", {}},
        {"OversizedAndNegativeStarts", "<sync start=12345678901234567890><p class=A>a<sync start=-5><p class=A>b",
         {"A:-900000000= ;-5=b;12345678901234567890=a"}},
    };
    // clang-format on
    const TagProcessor processor = test::fixedWidthProcessor();
    for (const Case &c : cases) {
        EXPECT_EQ(describe(parsingSmiFileToLocalTimeContent(c.text, u"smi", processor)), c.expected)
            << c.name;
    }
}

}  // namespace
}  // namespace tolvane::subtitles
