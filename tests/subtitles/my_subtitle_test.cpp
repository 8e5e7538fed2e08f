#include "subtitles/my_subtitle.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "subtitle_test_folder.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using test::TemporaryTree;

const QString kTwoClassSami = QStringLiteral(
    "<SAMI><BODY>\n"
    "<SYNC Start=1000><P Class=KRCC>안녕하세요\n"
    "<SYNC Start=1000><P Class=ENCC>Hello\n"
    "<SYNC Start=2000><P Class=KRCC>&nbsp;\n"
    "<SYNC Start=2000><P Class=ENCC>&nbsp;\n"
    "</BODY></SAMI>\n");
const QString kSrt = QStringLiteral(
    "1\n00:00:01,000 --> 00:00:02,500\nHello\n\n2\n00:00:03,000 --> 00:00:04,000\nWorld\n");

class MySubtitleLoadTest : public ::testing::Test {
protected:
    MySubtitle load(const QString &video, const FileByteReader &reader = readFileBytes,
                    int encodingItem = kAutomaticEncodingItem) {
        MySubtitle subtitle;
        subtitle.openSubtitleFileURL(folder.path(video), encodingItemsToTry(encodingItem), false,
                                     {}, QLocale(QLocale::English), reader);
        return subtitle;
    }
    TemporaryTree folder;
};

// "<file name> <type> <path type> <code> <order> <lang>" per entry.
QStringList summary(const MySubtitle &subtitle) {
    QStringList lines;
    for (const SubtitleEntry &entry : subtitle.entries()) {
        lines << QStringList{QFileInfo(entry.url).fileName(),
                             entry.fileType,
                             entry.pathType,
                             entry.error,
                             entry.order,
                             entry.lang}
                     .join(' ');
    }
    return lines;
}

// Which files are found, and where, is the discovery's own test.
TEST_F(MySubtitleLoadTest, EntriesAndTheirCodesComeFromTheTexts) {
    struct Case {
        const char *what;
        std::vector<std::pair<const char *, QByteArray>> files;  // beside "v.mkv"
        QStringList expected;
    };
    const QByteArray twoClasses = kTwoClassSami.toUtf8();
    const QByteArray srt = kSrt.toUtf8();
    const QByteArray korean = "<SAMI><BODY><SYNC Start=1000><P Class=KRCC>하나</BODY></SAMI>";
    const Case cases[] = {
        {"SAMI classes by name, the asterisk copy, then SubRip",
         {{"v.smi", twoClasses}, {"v*.smi", korean}, {"v.srt", srt}},
         {"v.smi smi v x x ENCC", "v.smi smi v x x KRCC", "v*.smi smi v* x x KRCC",
          "v.srt srt v x x 2"}},
        {"the format comes from the text, not the extension",
         {{"v.smi", srt}, {"v.srt", korean}},
         {"v.smi srt v x x 2", "v.srt smi v x x KRCC"}},
        {"neither format keeps the extension as type; SubRip markers on no one line fail too",
         {{"v.smi", "Just some notes."}, {"v.srt", "a --> b\nc: d\ne, f\n"}},
         {"v.smi smi v f x x", "v.srt srt v f x x"}},
        {"a SAMI text without a usable sync adds no entry at all",
         {{"v.smi", "<SAMI><HEAD>start</HEAD><BODY><P Class=KRCC>hi<SYNC ></BODY>"},
          {"v.srt", srt}},
         {"v.srt srt v x x 2"}},
        {"no caption files", {}, {}},
    };
    for (const Case &c : cases) {
        const QString dir = QString::number(&c - cases) + '/';
        folder.write(dir + "v.mkv");
        for (const auto &[name, bytes] : c.files) {
            folder.write(dir + QString::fromUtf8(name), bytes);
        }
        const MySubtitle subtitle = load(dir + "v.mkv");
        EXPECT_EQ(summary(subtitle), c.expected) << c.what;
    }
}

TEST_F(MySubtitleLoadTest, ReadFailuresBecomeEntriesWithTheirCodes) {
    folder.write("r.mkv");
    const QString refused = folder.write("r.smi", kTwoClassSami.toUtf8());
    folder.write("r*.smi", kTwoClassSami.toUtf8());
    const QString huge = folder.write("r.srt");
    ASSERT_TRUE(QFile::resize(huge, kMaxTextFileBytes + 1));  // sparse: costs no disk
    // Not UTF-8, not the chosen Shift_JIS, and of odd length for UTF-16.
    folder.write("r*.srt", QByteArray("\x82\xb1\xff\xff\xfe", 5));
    constexpr int kShiftJisItem = 6;

    int refusedReads = 0;
    const auto reader = [&](const QString &path) {
        if (path == refused) {
            ++refusedReads;
            return FileBytes{std::nullopt, true};
        }
        return readFileBytes(path);
    };
    const MySubtitle subtitle = load("r.mkv", reader, kShiftJisItem);
    EXPECT_EQ(summary(subtitle),
              (QStringList{"r.smi smi v s x x", "r*.smi smi v* x x ENCC", "r*.smi smi v* x x KRCC",
                           "r.srt srt v c x x", "r*.srt srt v* e x x"}));
    EXPECT_EQ(refusedReads, 1);
    EXPECT_EQ(subtitle.subtitleSorteds()[0], QStringList{});
    EXPECT_EQ(subtitle.subtitleTCDics()[0].size(), 0);
    EXPECT_EQ(subtitle.successSubtitleFileURLs(),
              (QStringList{folder.path("r*.smi"), folder.path("r*.smi")}));
}

TEST_F(MySubtitleLoadTest, AFailureHalfWayKeepsWhatWasLoaded) {
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
    const MySubtitle subtitle = load("m.mkv", reader);
    EXPECT_EQ(summary(subtitle), (QStringList{"m.smi smi v x x ENCC", "m.smi smi v x x KRCC"}))
        << "the load ends at the failure";
}

TEST_F(MySubtitleLoadTest, FullKeysAndTheRememberedChoice) {
    folder.write("v.mkv");
    folder.write("v.smi", kTwoClassSami.toUtf8());
    folder.write("v*.srt", kSrt.toUtf8());
    MySubtitle subtitle = load("v.mkv");
    ASSERT_EQ(subtitle.entryCount(), 3);
    const QString separator = QString::fromLatin1(kFullKeySeparator);
    EXPECT_EQ(subtitle.fullKey(2), QStringList({"v*", "srt", "srt", "v*", "2"}).join(separator));
    EXPECT_EQ(subtitle.fullKey(-1), "");
    EXPECT_EQ(subtitle.fullKey(3), "");
    EXPECT_EQ(subtitle.reOpenSubtitleIdxs(), QStringList{});
    for (const qint64 row : {2, 0, 3}) {
        subtitle.toggleRow(row);
    }
    EXPECT_EQ(subtitle.reOpenSubtitleIdxs(),
              (QStringList{subtitle.fullKey(2), subtitle.fullKey(0), "integrated"}));
}

}  // namespace
}  // namespace tolvane::subtitles
