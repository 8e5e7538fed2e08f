#include "subtitles/text_encodings.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>

#include "subtitle_test_folder.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using test::encodeAs;
using test::TemporaryTree;

const QString kKorean = QStringLiteral(
    "<SAMI><BODY><SYNC Start=1000><P Class=KRCC>안녕하세요. 오늘은 날씨가 참 좋네요.\n"
    "<SYNC Start=3000><P Class=KRCC>우리 같이 산책하러 갈까요? 공원에 꽃이 피었어요.\n"
    "<SYNC Start=5000><P Class=KRCC>그래요, 점심을 먹고 나서 천천히 걸어가요.\n");
const QString kJapanese = QStringLiteral(
    "1\n00:00:01,000 --> 00:00:02,000\nこんにちは、世界。字幕のテストです。\n\n"
    "2\n00:00:03,000 --> 00:00:04,000\n今日はとても良い天気ですね。散歩に行きましょう。\n\n"
    "3\n00:00:05,000 --> 00:00:06,000\n昼ご飯を食べてから、ゆっくり歩いて行きましょう。\n");

// Which item is which is the file-reading table's: it reads through them.
TEST(TextEncodingItems, EveryConverterOpens) {
    const auto items = textEncodingItems();
    ASSERT_GT(items.size(), 30u);
    for (const TextEncodingItem &item : items) {
        if (item.kind != TextEncodingItem::Kind::Encoding) {
            continue;
        }
        UErrorCode status = U_ZERO_ERROR;
        UConverter *converter = ucnv_open(item.icuName, &status);
        EXPECT_TRUE(U_SUCCESS(status)) << item.icuName;
        ucnv_close(converter);
    }
}

// Detection itself is the file-reading tables'; with nothing to judge, the locale decides.
TEST(DetectTextEncoding, FallsBackToTheLocaleWithoutText) {
    const QByteArray none;
    EXPECT_EQ(detectTextEncoding(none, QLocale(QLocale::Korean)), "windows-949-2000");
    EXPECT_EQ(detectTextEncoding(none, QLocale(QLocale::Japanese)), "Shift_JIS");
    EXPECT_EQ(detectTextEncoding(none, QLocale(QLocale::English)), "windows-1252");
}

TEST(ReadTextFile, TriesUtf8ThenTheUsersItemThenUtf16) {
    TemporaryTree folder;
    const QString ascii = QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\nPlain\n");
    constexpr int kAutomatic = kAutomaticEncodingItem;
    constexpr int kKoreanItem = 5;
    constexpr int kShiftJisItem = 6;
    ASSERT_STREQ(textEncodingItems()[kKoreanItem].icuName, "windows-949-2000");
    ASSERT_STREQ(textEncodingItems()[kShiftJisItem].icuName, "Shift_JIS");
    constexpr QLocale::Language kEn = QLocale::English;
    const QByteArray korean949 = encodeAs(kKorean, "windows-949-2000");
    // A damaged byte costs one character in Automatic mode; a chosen encoding stays strict.
    QByteArray damaged = korean949;
    damaged.insert(damaged.indexOf("\n") + 1, "\xb0");  // a lead byte before "<"
    QString repaired = kKorean;
    repaired.insert(kKorean.indexOf(u'\n') + 1, QChar(0xFFFD));
    struct Case {
        const char *what;
        QByteArray bytes;
        int item;
        QLocale::Language language;
        std::optional<QString> text;
        const char *encoding;
    };
    // clang-format off
    const Case cases[] = {
        {"windows-949, detected", korean949, kAutomatic, kEn, kKorean, "windows-949-2000"},
        {"Shift_JIS, detected under a Korean locale", encodeAs(kJapanese, "Shift_JIS"), kAutomatic,
         QLocale::Korean, kJapanese, "SHIFT_JIS"},
        {"UTF-16 with BOM after the chosen windows-949", "\xFF\xFE" + encodeAs(kJapanese, "UTF-16LE"),
         kKoreanItem, kEn, kJapanese, "UTF-16"},
        // Zero bytes are legal UTF-8 and legal 8-bit text: only rejecting U+0000
        // lets these reach the UTF-16 try.
        {"UTF-16 LE without BOM", encodeAs(kKorean, "UTF-16LE"), kAutomatic, QLocale::Korean, kKorean,
         "UTF-16"},
        {"ASCII in UTF-16 BE without BOM", encodeAs(ascii, "UTF-16BE"), kShiftJisItem, kEn, ascii,
         "UTF-16"},
        {"UTF-8 with BOM", "\xEF\xBB\xBF" + kJapanese.toUtf8(), kAutomatic, kEn, kJapanese, "UTF-8"},
        {"UTF-16 BE with BOM", "\xFE\xFF" + encodeAs(kKorean, "UTF-16BE"), kAutomatic, kEn, kKorean,
         "UTF-16"},
        // U+B620 exists in windows-949 only, not in plain EUC-KR.
        {"the windows-949 extension", QByteArray("\xbe\xc8\xb3\xe7 \x8c\x63"), kKoreanItem, kEn,
         QStringLiteral("안녕 똠"), "windows-949-2000"},
        {"UTF-8 cut inside a character", QByteArray("ok \xec\x9e"), kKoreanItem, kEn, std::nullopt, ""},
        {"windows-949 read as the chosen Shift_JIS", korean949, kShiftJisItem, kEn, std::nullopt, ""},
        {"damaged, automatic", damaged, kAutomatic, kEn, repaired, "windows-949-2000"},
        {"damaged, chosen", damaged, kKoreanItem, kEn, std::nullopt, ""},
        {"empty", QByteArray(), kAutomatic, kEn, QString(), "UTF-8"},
    };
    // clang-format on
    for (const Case &c : cases) {
        const TextReadResult result = readTextFile(folder.write("t.txt", c.bytes),
                                                   encodingItemsToTry(c.item), QLocale(c.language));
        EXPECT_EQ(result.text, c.text) << c.what;
        EXPECT_EQ(result.encoding, c.encoding) << c.what;
        EXPECT_EQ(result.failure, c.text ? TextReadFailure::None : TextReadFailure::Undecodable)
            << c.what;
    }
    // Even length, no zero bytes: still not UTF-16.
    EXPECT_EQ(decodeTextStrictly(QByteArray("\xbe\xc8\xb3\xe7"), "UTF-16"), std::nullopt);
    const auto tries = encodingItemsToTry(kAutomaticEncodingItem);
    for (const QString &path : {folder.path("missing.srt"), folder.path(".")}) {
        EXPECT_EQ(readTextFile(path, tries).failure, TextReadFailure::Other) << path.toStdString();
    }
}

// uchardet alone misjudges texts this short; each file holds one cue.
TEST(ReadTextFile, AutomaticReadsOneCueFilesInEachLegacyEncoding) {
    TemporaryTree folder;
    const auto sami = [](const QString &cue) {
        return QStringLiteral("<SAMI><BODY><SYNC Start=1000><P Class=KRCC>%1\n").arg(cue);
    };
    const auto subRip = [](const QString &cue) {
        return QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\n%1\n").arg(cue);
    };
    struct Case {
        QString text;
        const char *icuName;
    };
    const Case cases[] = {
        {sami(QStringLiteral("네")), "windows-949-2000"},
        {sami(QStringLiteral("뭐야?")), "windows-949-2000"},
        {sami(QStringLiteral("고마워요")), "windows-949-2000"},
        {subRip(QStringLiteral("はい。")), "Shift_JIS"},
        {subRip(QStringLiteral("ありがとう")), "Shift_JIS"},
        {subRip(QStringLiteral("はい。")), "EUC-JP"},
        {subRip(QStringLiteral("本当に?")), "EUC-JP"},
        {subRip(QStringLiteral("谢谢你。")), "GB18030"},
        {subRip(QStringLiteral("謝謝你。")), "Big5"},
        {subRip(QStringLiteral("Ça va? Très bien.")), "windows-1252"},
        {subRip(QStringLiteral("“Déjà vu” — encore…")), "windows-1252"},
        {sami(QStringLiteral("네")), "UTF-8"},
    };
    for (const Case &c : cases) {
        for (const QLocale::Language language : {QLocale::English, QLocale::Korean}) {
            const TextReadResult result =
                readTextFile(folder.write("one.txt", encodeAs(c.text, c.icuName)),
                             encodingItemsToTry(kAutomaticEncodingItem), QLocale(language));
            EXPECT_EQ(result.text, c.text) << c.icuName << " under " << int(language);
        }
    }
}

// Root reads every file, so as root this test runs itself again as "nobody".
TEST(ReadTextFile, UnreadableFileIsRefusedForAnOrdinaryUser) {
    TemporaryTree folder;
    const QByteArray given = qgetenv("TOLVANE_LOCKED_FILE");
    if (!given.isEmpty()) {
        EXPECT_TRUE(readFileBytes(QString::fromLocal8Bit(given)).permissionDenied);
        EXPECT_EQ(readFileBytes(folder.path("absent")).permissionDenied, false);
        return;
    }
    const QString locked = folder.write("locked.smi", "text");
    QFile::setPermissions(locked, QFileDevice::Permissions());
    if (geteuid() != 0) {
        EXPECT_TRUE(readFileBytes(locked).permissionDenied);
        return;
    }
    QFile::setPermissions(folder.path("."), QFileDevice::Permissions(0x7755));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TOLVANE_LOCKED_FILE", locked);
    child.setProcessEnvironment(environment);
    child.start("setpriv",
                {"--reuid=65534", "--regid=65534", "--clear-groups",
                 QCoreApplication::applicationFilePath(),
                 "--gtest_filter=ReadTextFile.UnreadableFileIsRefusedForAnOrdinaryUser"});
    if (!child.waitForFinished(30000) || child.exitStatus() != QProcess::NormalExit) {
        GTEST_SKIP() << "cannot run as an unprivileged user here";
    }
    EXPECT_EQ(child.exitCode(), 0) << child.readAllStandardOutput().toStdString();
}

}  // namespace
}  // namespace tolvane
