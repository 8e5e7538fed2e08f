#include <gtest/gtest.h>

#include "processed_line_text.h"
#include "subtitle_test_folder.h"
#include "subtitles/my_subtitle.h"
#include "support/qt_printers.h"

namespace tolvane::subtitles {
namespace {

using tolvane::test::TemporaryTree;

// Loads `video`'s captions; each element of `classes` becomes one SAMI class
// of "<base>.smi" whose syncs at 0, 1000 and 2000 show "<class> 0" etc.
MySubtitle loadClasses(TemporaryTree &folder, const QString &base, const QStringList &classes) {
    QString text = QStringLiteral("<SAMI><BODY>\n");
    for (const int start : {0, 1000, 2000}) {
        for (const QString &className : classes) {
            text += QStringLiteral("<SYNC Start=%1><P Class=%2>%2 %1\n").arg(start).arg(className);
        }
    }
    folder.write(base + ".mkv");
    folder.write(base + ".smi", text.toUtf8());
    MySubtitle subtitle;
    subtitle.openSubtitleFileURL(folder.path(base + ".mkv"),
                                 encodingItemsToTry(kAutomaticEncodingItem), false, {});
    EXPECT_EQ(subtitle.entryCount(), classes.size());
    return subtitle;
}

const QStringList kEightClasses = {"C0CC", "C1CC", "C2CC", "C3CC", "C4CC", "C5CC", "C6CC", "C7CC"};

std::vector<qint64> chosen(const MySubtitle &subtitle) { return subtitle.matrixSelecteds(true); }

TEST(ToggleRow, ClicksFormATwoSlotQueue) {
    TemporaryTree folder;
    constexpr qint64 kIntegratedRow = 8;
    struct Click {
        qint64 row;
        const char *answer;
        std::vector<qint64> chosenAfter;  // first, second, then the integrated row
    };
    struct Case {
        const char *what;
        std::vector<Click> clicks;
    };
    const Case cases[] = {
        // clang-format off
        {"a third row pushes out the oldest, which the list must deselect",
         {{2, "-100", {2}}, {5, "-100", {2, 5}}, {7, "unsel2", {5, 7}}}},
        {"clicking the first again promotes the second",
         {{2, "-100", {2}}, {5, "-100", {2, 5}}, {2, "-100", {5}}, {3, "-100", {5, 3}}}},
        {"clicking the second again drops it",
         {{2, "-100", {2}}, {5, "-100", {2, 5}}, {5, "-100", {2}}}},
        {"clicking the only track drops it", {{4, "-100", {4}}, {4, "-100", {}}}},
        {"the integrated row flips the mode and leaves the tracks",
         {{1, "-100", {1}}, {kIntegratedRow, "-100", {1, kIntegratedRow}},
          {6, "-100", {1, 6, kIntegratedRow}}, {kIntegratedRow, "-100", {1, 6}}}},
        {"rows outside the list change nothing",
         {{-1, "-100", {}}, {kIntegratedRow + 1, "-100", {}}, {0, "-100", {0}}}},
        // clang-format on
    };
    for (const Case &c : cases) {
        MySubtitle subtitle = loadClasses(folder, QString::number(&c - cases), kEightClasses);
        for (const Click &click : c.clicks) {
            EXPECT_EQ(subtitle.toggleRow(click.row), click.answer)
                << c.what << ", row " << click.row;
            EXPECT_EQ(chosen(subtitle), click.chosenAfter) << c.what << ", row " << click.row;
        }
        // The order column always agrees with the two indices.
        const QStringList orders = subtitle.subtitleOrders();
        for (qsizetype i = 0; i < orders.size(); ++i) {
            const char *expected = i == subtitle.fstOrderIdx()   ? "f"
                                   : i == subtitle.sndOrderIdx() ? "s"
                                                                 : "x";
            EXPECT_EQ(orders[i], expected) << c.what << ", entry " << i;
        }
    }
    MySubtitle empty;
    EXPECT_EQ(empty.toggleRow(0), "-100");
    EXPECT_EQ(chosen(empty), std::vector<qint64>{});
}

TEST(SetOrders, RestoresRememberedOrCarriedOverChoicesElseTheDefault) {
    TemporaryTree folder;
    const MySubtitle reference = loadClasses(folder, "ep1", kEightClasses);
    const QString key1 = reference.fullKey(1);
    const QString key3 = reference.fullKey(3);
    const QString key5 = reference.fullKey(5);
    const QString carried = QString::fromLatin1(kCarryOverKeyPrefix);
    struct Case {
        const char *what;
        QStringList classes;
        QStringList remembered;
        std::vector<qint64> expected;
    };
    const Case cases[] = {
        // clang-format off
        {"two tracks and integrated", kEightClasses, {key3, key1, "integrated"}, {3, 1, 8}},
        {"one track followed by integrated restores the track alone", kEightClasses,
         {key5, "integrated"}, {5}},
        {"carried over from another episode, matched without the base name", kEightClasses,
         MySubtitle::cofIdxsFromReOpenSubtitleIdxs({key5, key3, "integrated"}), {5, 3, 8}},
        {"a remembered key that matches no entry: the default", {"ENCC", "KRCC"}, {key3}, {1}},
        {"nothing remembered: a Korean track", {"ENCC", "JPCC", "KOCC"}, {}, {2}},
        {"nothing Korean: the first track that loaded", {"ENCC", "JPCC"}, {}, {0}},
        {"a carried-over key that matches nothing", {"ENCC", "KRCC"},
         {carried + "x#*QZR*SPC*KEY*#srt#*QZR*SPC*KEY*#srt#*QZR*SPC*KEY*#v#*QZR*SPC*KEY*#2"}, {1}},
        // clang-format on
    };
    int number = 0;
    for (const Case &c : cases) {
        // Another episode: the base name differs from ep1's.
        MySubtitle subtitle =
            loadClasses(folder, QStringLiteral("ep%1").arg(number++ == 2 ? 2 : 1), c.classes);
        subtitle.setOrders(c.remembered);
        EXPECT_EQ(chosen(subtitle), c.expected) << c.what;
    }
}

TEST(SetOrders, DefaultSkipsFailedEntriesAndFallsBackToEntryZero) {
    TemporaryTree folder;
    folder.write("a.mkv");
    folder.write("a.smi", "no captions here");
    folder.write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHi\n");
    MySubtitle subtitle;
    subtitle.openSubtitleFileURL(folder.path("a.mkv"), encodingItemsToTry(0), false, {});
    subtitle.setOrders({});
    EXPECT_EQ(chosen(subtitle), std::vector<qint64>{1});

    folder.write("b.mkv");
    folder.write("b.srt", "no captions either");
    MySubtitle failedOnly;
    failedOnly.openSubtitleFileURL(folder.path("b.mkv"), encodingItemsToTry(0), false, {});
    failedOnly.setOrders({});
    EXPECT_EQ(chosen(failedOnly), std::vector<qint64>{0});
}

TEST(Delays, RestoredByKeyMovedTogetherAndReportedWithTwoSentinels) {
    TemporaryTree folder;
    MySubtitle subtitle = loadClasses(folder, "ep1", {"ENCC", "JPCC", "KRCC"});
    EXPECT_EQ(subtitle.fstDelay(), kUnsetSubtitleDelay);
    EXPECT_EQ(subtitle.sndDelay(), kNoSecondTrackDelay);
    subtitle.delayPlus(300);  // no track: nothing moves
    EXPECT_EQ(subtitle.subtitleDelays(), (QList<qint32>(3, kUnsetSubtitleDelay)));

    subtitle.setDelays({{subtitle.fullKey(2), 1500}, {"unknown", 7}});
    subtitle.toggleRow(2);
    subtitle.toggleRow(0);
    EXPECT_EQ(subtitle.fstDelay(), 1500);
    EXPECT_EQ(subtitle.sndDelay(), kUnsetSubtitleDelay);
    subtitle.delayPlus(-500);
    EXPECT_EQ(subtitle.subtitleDelays(), (QList<qint32>{-500, kUnsetSubtitleDelay, 1000}))
        << "both tracks move, an unset delay counting as 0";

    MySubtitle nextEpisode = loadClasses(folder, "ep2", {"ENCC", "JPCC", "KRCC"});
    nextEpisode.setDelays(MySubtitle::cofDicFromReOpenDelayDic(subtitle.reOpenDelayDic()));
    EXPECT_EQ(nextEpisode.subtitleDelays(), (QList<qint32>{-500, kUnsetSubtitleDelay, 1000}));
    MySubtitle uncarried = loadClasses(folder, "ep3", {"ENCC", "JPCC", "KRCC"});
    uncarried.setDelays(subtitle.reOpenDelayDic());
    EXPECT_EQ(uncarried.subtitleDelays(), (QList<qint32>(3, kUnsetSubtitleDelay)))
        << "full keys of another episode match nothing";
}

// The key that `sortedIdx` points at in entry 0, or "none".
QString keyAt(const MySubtitle &subtitle, qint32 sortedIdx) {
    return sortedIdx == kNoSortedIdx ? QStringLiteral("none")
                                     : subtitle.subtitleSorteds()[0].at(sortedIdx);
}

TEST(IsUpdatedSortedIdx, FindsTheLineDueForwardBackwardAndWithADelay) {
    TemporaryTree folder;
    // Keys -900000000, 0, 1000, 2000.
    const MySubtitle reference = loadClasses(folder, "t", {"KRCC"});
    struct Case {
        const char *what;
        qint32 fromIdx;
        qint32 showtime;
        qint32 delay;
        const char *expectedKey;
        bool expectedChanged;
    };
    const Case cases[] = {
        {"first tick finds the line at its exact time", -1, 1000, 0, "1000", true},
        {"between keys: the last one not after the time", -1, 1500, 0, "1000", true},
        {"a positive delay shows lines earlier", -1, 600, 500, "1000", true},
        {"a negative delay shows them later", 2, 1200, -500, "0", true},
        {"seek backwards", 3, 1500, 0, "1000", true},
        {"still within the same line", 2, 1999, 0, "1000", false},
        {"exactly at the current line", 2, 1000, 0, "1000", false},
        {"past the end: the last line", 1, 99999, 0, "2000", true},
        {"before the first real key: the blank line", 3, -5, 0, "-900000000", true},
        {"before every key always reports a change", -1, 0, -1000000000, "none", true},
        {"an index left from a longer track counts as none", 40, 1000, 0, "1000", true},
    };
    for (const Case &c : cases) {
        MySubtitle subtitle = reference;
        subtitle.setDelays({{subtitle.fullKey(0), c.delay}});
        qint32 sortedIdx = c.fromIdx;
        EXPECT_EQ(subtitle.isUpdatedSortedIdx(sortedIdx, 0, c.showtime), c.expectedChanged)
            << c.what;
        EXPECT_EQ(keyAt(subtitle, sortedIdx), c.expectedKey) << c.what;
    }
    qint32 sortedIdx = kNoSortedIdx;
    EXPECT_FALSE(reference.isUpdatedSortedIdx(sortedIdx, kNoTrackOrderIdx, 1000));
    EXPECT_EQ(sortedIdx, kNoSortedIdx);
}

TEST(IsUpdatedSortedIdx, KeysOfEqualValueForwardToTheFirstBackToTheLast) {
    TemporaryTree folder;
    folder.write("d.mkv");
    // SAMI keeps start values as written: both keys mean 1000 ms.
    folder.write("d.smi",
                 "<SAMI><BODY><SYNC Start=500><P Class=KRCC>a\n"
                 "<SYNC Start=1000><P Class=KRCC>b\n"
                 "<SYNC Start=1000 End=1500><P Class=KRCC>c\n"
                 "<SYNC Start=2000><P Class=KRCC>d\n</BODY>");
    MySubtitle subtitle;
    subtitle.openSubtitleFileURL(folder.path("d.mkv"), encodingItemsToTry(0), false, {});
    ASSERT_EQ(subtitle.subtitleSorteds().value(0),
              (QStringList{"-900000000", "500", "1000", "1000 End=1500", "2000"}));
    struct Case {
        qint32 fromIdx;
        qint32 showtime;
        const char *expectedKey;
    };
    for (const Case &c : {Case{1, 1000, "1000"}, Case{1, 1200, "1000 End=1500"},
                          Case{4, 1000, "1000 End=1500"}, Case{4, 1200, "1000 End=1500"}}) {
        qint32 sortedIdx = c.fromIdx;
        subtitle.isUpdatedSortedIdx(sortedIdx, 0, c.showtime);
        EXPECT_EQ(keyAt(subtitle, sortedIdx), c.expectedKey)
            << "from " << c.fromIdx << " to " << c.showtime;
    }
}

// "group: row|row" for each group of a tick, with the rows' fill texts.
QStringList groupsOf(const TextLayerDic &groups) {
    QStringList lines;
    for (const auto &[name, line] : groups) {
        lines << name + ": " + test::rowTexts(line).join('|');
    }
    return lines;
}

TEST(TextLayerDic, IntegratedModeJoinsTheTracksLeavingOutABlankLine) {
    TemporaryTree folder;
    constexpr qint64 kIntegratedRow = 2;
    struct Case {
        const char *what;
        std::vector<qint64> clicks;
        qint32 koreanDelay;  // -1000: the Korean track is still blank at 500
        qint32 at;
        QStringList groups;
    };
    const Case cases[] = {
        // clang-format off
        {"nothing chosen", {}, 0, 1000, {}},
        {"both lines, the first track's above", {0, 1, kIntegratedRow}, 0, 1000,
         {"fst.snd.bottom: ENCC 1000|KRCC 1000"}},
        {"the second track blank", {0, 1, kIntegratedRow}, -1000, 500, {"fst.snd.bottom: ENCC 0"}},
        {"the first track blank", {1, 0, kIntegratedRow}, -1000, 500, {"fst.snd.bottom: ENCC 0"}},
        {"one track drawn alone", {1, kIntegratedRow}, 0, 2000, {"fst.bottom: KRCC 2000"}},
        // clang-format on
    };
    for (const Case &c : cases) {
        MySubtitle subtitle =
            loadClasses(folder, QStringLiteral("tl%1").arg(&c - cases), {"ENCC", "KRCC"});
        subtitle.setDelays({{subtitle.fullKey(1), c.koreanDelay}});
        for (const qint64 row : c.clicks) {
            subtitle.toggleRow(row);
        }
        EXPECT_EQ(groupsOf(subtitle.textLayerDic(c.at)), c.groups) << c.what;
        EXPECT_EQ(groupsOf(subtitle.textLayerDic(c.at + 1)), QStringList{})
            << c.what << ": unchanged a moment later";
    }
}

}  // namespace
}  // namespace tolvane::subtitles
