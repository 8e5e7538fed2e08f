#include "subtitles/my_subtitle.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "base/localized_strings.h"
#include "subtitle_test_folder.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using test::encodeAs;
using test::samiText;
using test::SubtitleTestFolder;

const QString kTwoClassSami = QStringLiteral(
    "<SAMI><BODY>\n"
    "<SYNC Start=1000><P Class=KRCC>안녕하세요\n"
    "<SYNC Start=1000><P Class=ENCC>Hello\n"
    "<SYNC Start=2000><P Class=KRCC>&nbsp;\n"
    "<SYNC Start=2000><P Class=ENCC>&nbsp;\n"
    "</BODY></SAMI>\n");
const QString kSrt = QStringLiteral(
    "1\n00:00:01,000 --> 00:00:02,500\nHello\n\n2\n00:00:03,000 --> 00:00:04,000\nWorld\n");

struct FileToWrite {
    const char *path;
    QByteArray bytes;
};

class MySubtitleLoadTest : public ::testing::Test {
protected:
    MySubtitle load(const QString &video, bool bdmv = false, const QString &where = {},
                    const FileByteReader &reader = readFileBytes,
                    int encodingItem = kAutomaticEncodingItem) {
        MySubtitle subtitle;
        subtitle.openSubtitleFileURL(folder.path(video), encodingItemsToTry(encodingItem), bdmv,
                                     where.isEmpty() ? QString() : folder.path(where),
                                     QLocale(QLocale::English), reader);
        return subtitle;
    }
    // "<file> <type> <path type> <code> <order> <lang>" per entry.
    QStringList summary(const MySubtitle &subtitle) {
        QStringList lines;
        for (const SubtitleEntry &entry : subtitle.entries()) {
            lines << QStringList{folder.relative(entry.url),
                                 entry.fileType,
                                 entry.pathType,
                                 entry.error,
                                 entry.order,
                                 entry.lang}
                         .join(' ');
        }
        return lines;
    }
    SubtitleTestFolder folder;
};

void expectColumnsOfEqualLength(const MySubtitle &subtitle) {
    const qsizetype count = subtitle.entryCount();
    EXPECT_EQ(subtitle.subtitleFileURLs().size(), count);
    EXPECT_EQ(subtitle.subtitleFileTypes().size(), count);
    EXPECT_EQ(subtitle.subtitlePathTypes().size(), count);
    EXPECT_EQ(subtitle.subtitleErrors().size(), count);
    EXPECT_EQ(subtitle.subtitleOrders().size(), count);
    EXPECT_EQ(subtitle.subtitleLangs().size(), count);
    EXPECT_EQ(subtitle.subtitleTCDics().size(), count);
    EXPECT_EQ(subtitle.subtitleSorteds().size(), count);
    EXPECT_EQ(subtitle.subtitleDelays().size(), count);
}

TEST_F(MySubtitleLoadTest, EntriesCodesAndOrderWhereverTheFilesAre) {
    struct Case {
        const char *what;
        std::vector<FileToWrite> files;
        const char *video;
        bool bdmv;
        const char *where;
        QStringList expected;
    };
    const QByteArray twoClasses = kTwoClassSami.toUtf8();
    const QByteArray srt = kSrt.toUtf8();
    const QByteArray korean = samiText("KRCC", {{1000, "하나"}}).toUtf8();
    const Case cases[] = {
        {"beside the video: SAMI classes by name, the asterisk copy, then SubRip",
         {{"a/a.mkv", {}}, {"a/a.smi", twoClasses}, {"a/a*.smi", korean}, {"a/a.srt", srt}},
         "a/a.mkv",
         false,
         "",
         {"a/a.smi smi v x x ENCC", "a/a.smi smi v x x KRCC", "a/a*.smi smi v* x x KRCC",
          "a/a.srt srt v x x 2"}},
        {"only in the chosen folder's Tolvane subfolder",
         {{"b/b.mkv", {}}, {"bw/Tolvane/b.srt", srt}},
         "b/b.mkv",
         false,
         "bw",
         {"bw/Tolvane/b.srt srt k x x 2"}},
        {"a copy beside the video hides the chosen folder's",
         {{"c/c.mkv", {}}, {"c/c.srt", srt}, {"cw/Tolvane/c.srt", srt}},
         "c/c.mkv",
         false,
         "cw",
         {"c/c.srt srt v x x 2"}},
        {"under the disc title of a BDMV structure",
         {{"d/Title/BDMV/STREAM/00001.m2ts", {}},
          {"dw/Tolvane/Title.smi", korean},
          {"dw/Tolvane/Title*.srt", srt}},
         "d/Title/BDMV/STREAM/00001.m2ts",
         true,
         "dw",
         {"dw/Tolvane/Title.smi smi b x x KRCC", "dw/Tolvane/Title*.srt srt b* x x 2"}},
        {"the format comes from the text, not the extension",
         {{"e/e.mkv", {}}, {"e/e.smi", srt}, {"e/e.srt", korean}},
         "e/e.mkv",
         false,
         "",
         {"e/e.smi srt v x x 2", "e/e.srt smi v x x KRCC"}},
        {"neither format keeps the extension as type; SubRip markers on no one line fail too",
         {{"f/f.mkv", {}}, {"f/f.smi", "Just some notes."}, {"f/f.srt", "a --> b\nc: d\ne, f\n"}},
         "f/f.mkv",
         false,
         "",
         {"f/f.smi smi v f x x", "f/f.srt srt v f x x"}},
        {"a SAMI text without a usable sync adds no entry at all",
         {{"g/g.mkv", {}},
          {"g/g.smi", "<SAMI><HEAD>start</HEAD><BODY><P Class=KRCC>hi<SYNC ></BODY>"},
          {"g/g.srt", srt}},
         "g/g.mkv",
         false,
         "",
         {"g/g.srt srt v x x 2"}},
        {"a SubRip text whose only time line comes first has no cue number",
         {{"h/h.mkv", {}}, {"h/h.srt", "00:00:01,000 --> 00:00:02,000\nHi\n"}},
         "h/h.mkv",
         false,
         "",
         {"h/h.srt srt v f x x"}},
        {"no caption files", {{"i/i.mkv", {}}}, "i/i.mkv", false, "", {}},
    };
    for (const Case &c : cases) {
        for (const FileToWrite &file : c.files) {
            folder.write(QString::fromUtf8(file.path), file.bytes);
        }
        const MySubtitle subtitle =
            load(QString::fromUtf8(c.video), c.bdmv, QString::fromUtf8(c.where));
        EXPECT_EQ(summary(subtitle), c.expected) << c.what;
        expectColumnsOfEqualLength(subtitle);
    }
}

TEST_F(MySubtitleLoadTest, EveryEntryHoldsItsSortedKeysAndNoDelay) {
    folder.write("v.mkv");
    folder.write("v.smi", kTwoClassSami.toUtf8());
    folder.write("v.srt", kSrt.toUtf8());
    const MySubtitle subtitle = load("v.mkv");
    ASSERT_EQ(subtitle.entryCount(), 3);
    EXPECT_EQ(subtitle.subtitleSorteds()[0], (QStringList{"-900000000", "1000", "2000"}));
    EXPECT_EQ(subtitle.subtitleSorteds()[2],
              (QStringList{"-900000000", "1000", "2500", "3000", "4000"}));
    EXPECT_EQ(subtitle.subtitleTCDics()[2].size(), 5);
    EXPECT_EQ(subtitle.subtitleDelays(),
              (QList<qint32>{kUnsetSubtitleDelay, kUnsetSubtitleDelay, kUnsetSubtitleDelay}));
    EXPECT_EQ(subtitle.lineAt(1, 1).rows.at(0).fill.text(), "안녕하세요");
    EXPECT_EQ(subtitle.successSubtitleFileURLs(),
              (QStringList{folder.path("v.smi"), folder.path("v.smi"), folder.path("v.srt")}));
}

// The text of the line under key "1000" of the only entry, or the code.
QString firstLineOrCode(const MySubtitle &subtitle) {
    if (subtitle.entryCount() != 1) {
        return QStringLiteral("%1 entries").arg(subtitle.entryCount());
    }
    const SubtitleEntry &entry = subtitle.entries().front();
    if (entry.error != u"x") {
        return entry.error;
    }
    const ProcessedLine line = entry.tcDic.value(QStringLiteral("1000"));
    return line.rows.empty() ? QStringLiteral("no line") : line.rows.front().fill.text();
}

TEST_F(MySubtitleLoadTest, ReadsEachEncodingOrSaysWhyNot) {
    const QString korean = QStringLiteral("안녕하세요, 오늘은 날씨가 참 좋네요. 산책하러 갈까요?");
    const QString japanese = QStringLiteral("こんにちは、世界。今日はとても良い天気ですね。");
    const QString koreanSami = samiText("KRCC", {{1000,
                                                  "안녕하세요, 오늘은 날씨가 참 좋네요. "
                                                  "산책하러 갈까요?"},
                                                 {3000, "우리 같이 공원에 가요. 꽃이 피었어요."}});
    const QString asciiSrt = QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\nPlain\n");
    const QString japaneseSrt = QStringLiteral(
                                    "1\n00:00:01,000 --> 00:00:02,000\n%1\n\n"
                                    "2\n00:00:03,000 --> 00:00:04,000\n昼ご飯を食べてから、"
                                    "ゆっくり歩いて行きましょう。\n")
                                    .arg(japanese);
    constexpr int kShiftJisItem = 6;
    struct Case {
        const char *what;
        QByteArray bytes;
        int encodingItem;
        QString expected;
    };
    const Case cases[] = {
        {"UTF-8", koreanSami.toUtf8(), kAutomaticEncodingItem, korean},
        {"UTF-8 with BOM", "\xEF\xBB\xBF" + koreanSami.toUtf8(), kAutomaticEncodingItem, korean},
        {"UTF-16 LE with BOM", "\xFF\xFE" + encodeAs(koreanSami, "UTF-16LE"),
         kAutomaticEncodingItem, korean},
        {"UTF-16 BE with BOM", "\xFE\xFF" + encodeAs(koreanSami, "UTF-16BE"),
         kAutomaticEncodingItem, korean},
        {"UTF-16 LE without BOM", encodeAs(koreanSami, "UTF-16LE"), kAutomaticEncodingItem, korean},
        {"UTF-16 BE without BOM", encodeAs(koreanSami, "UTF-16BE"), kAutomaticEncodingItem, korean},
        {"ASCII in UTF-16 LE without BOM", encodeAs(asciiSrt, "UTF-16LE"), kAutomaticEncodingItem,
         "Plain"},
        {"ASCII in UTF-16 BE without BOM", encodeAs(asciiSrt, "UTF-16BE"), kAutomaticEncodingItem,
         "Plain"},
        {"windows-949, detected", encodeAs(koreanSami, "windows-949-2000"), kAutomaticEncodingItem,
         korean},
        {"Shift_JIS, detected", encodeAs(japaneseSrt, "Shift_JIS"), kAutomaticEncodingItem,
         japanese},
        {"Shift_JIS, chosen", encodeAs(japaneseSrt, "Shift_JIS"), kShiftJisItem, japanese},
        // Not UTF-8, not Shift_JIS, and of odd length for UTF-16.
        {"undecodable", QByteArray("\x82\xb1\xff\xff\xfe", 5), kShiftJisItem, "e"},
    };
    int number = 0;
    for (const Case &c : cases) {
        const QString video = QStringLiteral("enc%1.mkv").arg(++number);
        folder.write(video);
        // SAMI and SubRip alike are named .srt: the text decides.
        folder.write(QStringLiteral("enc%1.srt").arg(number), c.bytes);
        EXPECT_EQ(firstLineOrCode(load(video, false, {}, readFileBytes, c.encodingItem)),
                  c.expected)
            << c.what;
    }
}

TEST_F(MySubtitleLoadTest, ReadFailuresBecomeEntriesWithTheirCodes) {
    folder.write("r.mkv");
    const QString refused = folder.write("r.smi", kTwoClassSami.toUtf8());
    folder.write("r*.smi", kTwoClassSami.toUtf8());
    const QString huge = folder.write("r.srt");
    ASSERT_TRUE(QFile::resize(huge, kMaxTextFileBytes + 1));  // sparse: costs no disk

    int refusedReads = 0;
    const auto reader = [&](const QString &path) {
        if (path == refused) {
            ++refusedReads;
            return FileBytes{std::nullopt, true};
        }
        return readFileBytes(path);
    };
    const MySubtitle subtitle = load("r.mkv", false, {}, reader);
    EXPECT_EQ(summary(subtitle), (QStringList{"r.smi smi v s x x", "r*.smi smi v* x x ENCC",
                                              "r*.smi smi v* x x KRCC", "r.srt srt v c x x"}));
    EXPECT_EQ(refusedReads, 1);
    EXPECT_EQ(subtitle.subtitleSorteds()[0], QStringList{});
    EXPECT_EQ(subtitle.subtitleTCDics()[0].size(), 0);
    EXPECT_EQ(subtitle.successSubtitleFileURLs(),
              (QStringList{folder.path("r*.smi"), folder.path("r*.smi")}));
}

TEST_F(MySubtitleLoadTest, AFailureHalfWayKeepsWhatWasLoadedAndTheColumnsEqual) {
    folder.write("m.mkv");
    folder.write("m.smi", kTwoClassSami.toUtf8());
    const QString failing = folder.write("m*.smi", kTwoClassSami.toUtf8());
    folder.write("m.srt", kSrt.toUtf8());
    const auto reader = [&](const QString &path) {
        if (path == failing) {
            throw std::runtime_error("disk went away");
        }
        return readFileBytes(path);
    };
    const MySubtitle subtitle = load("m.mkv", false, {}, reader);
    EXPECT_EQ(summary(subtitle), (QStringList{"m.smi smi v x x ENCC", "m.smi smi v x x KRCC"}))
        << "the load ends at the failure";
    expectColumnsOfEqualLength(subtitle);
}

TEST_F(MySubtitleLoadTest, FullKeysAndTheRememberedChoice) {
    folder.write("Show.S01E01.mkv");
    folder.write("Show.S01E01.smi", kTwoClassSami.toUtf8());
    folder.write("Show.S01E01*.SRT", kSrt.toUtf8());
    folder.write("Show.S01E01*.srt", kSrt.toUtf8());
    MySubtitle subtitle = load("Show.S01E01.mkv");
    ASSERT_EQ(subtitle.entryCount(), 3);
    const QString separator = QString::fromLatin1(kFullKeySeparator);
    EXPECT_EQ(subtitle.fullKey(0),
              QStringList({"Show.S01E01", "smi", "smi", "v", "ENCC"}).join(separator));
    EXPECT_EQ(subtitle.fullKey(2),
              QStringList({"Show.S01E01*", "srt", "srt", "v*", "2"}).join(separator));
    EXPECT_EQ(subtitle.fullKey(-1), "");
    EXPECT_EQ(subtitle.fullKey(3), "");
    EXPECT_EQ(MySubtitle::stringFromLastFourComponentsInFullKey(subtitle.fullKey(2)),
              "srt.srt.v*.2. ");
    EXPECT_EQ(MySubtitle::stringFromLastFourComponentsInFullKey("a#*QZR*SPC*KEY*#b"), " ");

    EXPECT_EQ(subtitle.reOpenSubtitleIdxs(), QStringList{});
    subtitle.toggleRow(2);
    subtitle.toggleRow(0);
    EXPECT_EQ(subtitle.reOpenSubtitleIdxs(),
              (QStringList{subtitle.fullKey(2), subtitle.fullKey(0)}));
    subtitle.toggleRow(3);
    EXPECT_EQ(subtitle.reOpenSubtitleIdxs(),
              (QStringList{subtitle.fullKey(2), subtitle.fullKey(0), "integrated"}));
    EXPECT_EQ(MySubtitle::cofIdxsFromReOpenSubtitleIdxs(subtitle.reOpenSubtitleIdxs()).last(),
              "#*QZR*COF*KEY*#integrated");

    subtitle.delayPlus(-250);
    const SubtitleDelayDic delays = subtitle.reOpenDelayDic();
    EXPECT_EQ(delays.size(), 3);
    EXPECT_EQ(delays.value(subtitle.fullKey(0)), -250);
    EXPECT_EQ(delays.value(subtitle.fullKey(1)), kUnsetSubtitleDelay);
    EXPECT_EQ(MySubtitle::cofDicFromReOpenDelayDic(delays).firstKey(),
              "#*QZR*COF*KEY*#" + delays.firstKey());
}

TEST(HumanReadableError, EachFailureCodeHasItsMessage) {
    struct Case {
        const char *code;
        const char *key;
    };
    for (const Case &c : {Case{"s", "WARNINGMTXACC"}, Case{"e", "WARNINGMTXTXE"},
                          Case{"f", "WARNINGMTXFMT"}, Case{"c", "WARNINGMTXCTS"}}) {
        const QString message = MySubtitle::humanReadableError(c.code);
        EXPECT_EQ(message, localizedString(c.key)) << c.code;
        EXPECT_FALSE(message.isEmpty() || message == c.key) << c.code << ": no English text";
    }
    for (const char *code : {"x", "", "q", "ss"}) {
        EXPECT_TRUE(MySubtitle::humanReadableError(code).isNull()) << code;
    }
}

}  // namespace
}  // namespace tolvane::subtitles
