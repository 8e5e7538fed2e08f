#include "app/item_move_bookkeeping.h"

#include <gtest/gtest.h>

#include "app/opened_items.h"
#include "app/played_state_records.h"
#include "app/playlist.h"
#include "app_test_support.h"
#include "subtitles/carry_over_forms.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

const QString kSubtitleKey = QStringLiteral("Show 01#*QZR*SPC*KEY*#smi#*QZR*SPC*KEY*#KRCC");
const QString kCarriedSubtitleKey = QStringLiteral("#*QZR*COF*KEY*#") + kSubtitleKey;

class MovingBetweenItems : public ::testing::Test {
protected:
    void SetUp() override {
        test::clearTolvaneSettings();
        playlist = Playlist{};
        for (const char *name : {"Show 01.mkv", "Show 02.mkv", "Show 03.mkv", "Other 04.mkv"}) {
            PlaylistItem item;
            item.url = tree.touch(name, "video");
            item.playSize = 5;
            playlist.playList.append(item);
        }
        playlist.loadReOpenFieldsFromItemAtIndex(0);
    }

    // Chooses tracks on the current item, as the interface does while it plays.
    void chooseOnCurrentItem() {
        playlist.reOpen.reOpenAudioIdx = 2;
        playlist.reOpen.reOpenSubtitleIdxs = {kSubtitleKey, QStringLiteral("integrated")};
        playlist.reOpen.reOpenDelayDic = {{kSubtitleKey, 1500}};
    }

    void moveTo(int newIndex, std::optional<double> playingPositionSec = 10.0) {
        const int left = playlist.indexPlay;
        playlist.indexPlay = newIndex;
        bookkeeping.continueOpenFile(left, playingPositionSec);
    }

    FileEntry storedEntryOf(int index) const {
        return PlayedStateRecords::getSavedEachFileDicFromURL(
                   playlist.playList[index].url, PlayedStateRecords::readTotalFdFlsData())
            .value_or(FileEntry{});
    }

    test::TemporaryTree tree;
    Playlist playlist;
    OpenedItems openedItems;
    PlayedStateRecords records{playlist, openedItems};
    ItemMoveBookkeeping bookkeeping{playlist, records};
};

TEST_F(MovingBetweenItems, CarriesChoicesForwardWithinASeriesOnly) {
    const struct {
        const char *what;
        QList<int> items;  // the first one current, then moved to in turn
        bool newItemDone;
        bool carried;
    } cases[] = {
        {"next episode", {0, 1}, false, true},
        {"skipping one episode", {0, 2}, false, true},
        {"on again, without a second prefix", {0, 1, 2}, false, true},
        {"backward", {2, 1}, false, false},
        {"into another series", {2, 3}, false, false},
        {"to a finished episode", {0, 1}, true, false},
    };
    for (const auto &c : cases) {
        SetUp();
        const int to = c.items.last();
        playlist.playList[to].playDone = c.newItemDone;
        playlist.loadReOpenFieldsFromItemAtIndex(c.items.first());
        chooseOnCurrentItem();
        for (const int index : c.items.mid(1)) {
            moveTo(index);
        }
        const ReOpenFields &next = playlist.reOpen;
        EXPECT_EQ(next.reOpenURL, playlist.playList[to].url) << c.what;
        if (c.carried) {
            EXPECT_EQ(next.reOpenAudioIdx, 2) << c.what;
            EXPECT_EQ(next.reOpenSubtitleIdxs,
                      QStringList({kCarriedSubtitleKey, "#*QZR*COF*KEY*#integrated"}))
                << c.what;
            EXPECT_EQ(next.reOpenDelayDic, SubtitleDelayDic({{kCarriedSubtitleKey, 1500}}))
                << c.what;
            EXPECT_EQ(storedEntryOf(to).caudio, 2) << c.what;
        } else {
            EXPECT_EQ(next.reOpenAudioIdx, kNoAudioTrackChosen) << c.what;
            EXPECT_TRUE(next.reOpenSubtitleIdxs.isEmpty()) << c.what;
            EXPECT_TRUE(next.reOpenDelayDic.isEmpty()) << c.what;
        }
    }
}

TEST_F(MovingBetweenItems, AnEpisodesOwnChoicesWinOverTheCarriedOnes) {
    playlist.playList[1].playAudio = 1;
    playlist.playList[1].playSubtitle = {QStringLiteral("own")};
    chooseOnCurrentItem();
    moveTo(1);
    EXPECT_EQ(playlist.reOpen.reOpenAudioIdx, 1);
    EXPECT_EQ(playlist.reOpen.reOpenSubtitleIdxs, QStringList({"own"}));
    EXPECT_EQ(playlist.reOpen.reOpenDelayDic, SubtitleDelayDic({{kCarriedSubtitleKey, 1500}}));
}

TEST_F(MovingBetweenItems, StoresTheItemLeftAndRewindsTheResumePosition) {
    const struct {
        const char *what;
        double reOpenCTimeSecBefore;
        std::optional<double> playingPositionSec;
        double storedTimeSec;
    } cases[] = {
        {"playing position", 0.0, 42.5, 42.5},
        {"played to the end", kStartFromBeginningTimeSec, 1800.0, 0.0},
        {"nothing was playing", 7.0, std::nullopt, 7.0},
    };
    for (const auto &c : cases) {
        SetUp();
        playlist.reOpen.reOpenDone = true;
        playlist.reOpen.reOpenCTimeSec = c.reOpenCTimeSecBefore;
        moveTo(1, c.playingPositionSec);
        EXPECT_EQ(playlist.playList[0].playTime, c.storedTimeSec) << c.what;
        EXPECT_TRUE(playlist.playList[0].playDone) << c.what;
        EXPECT_EQ(storedEntryOf(0).ctime, c.storedTimeSec) << c.what;
        EXPECT_TRUE(storedEntryOf(0).cdone) << c.what;
    }

    // Going back resumes 3 s before the stored position, when there is room.
    const struct {
        double storedTimeSec;
        double resumeTimeSec;
    } resumes[] = {{100.0, 97.0}, {3.5, 0.5}, {3.0, 3.0}, {2.5, 2.5}, {0.0, 0.0}};
    for (const auto &r : resumes) {
        SetUp();
        playlist.playList[0].playTime = r.storedTimeSec;
        playlist.loadReOpenFieldsFromItemAtIndex(1);
        moveTo(0);
        EXPECT_EQ(playlist.reOpen.reOpenCTimeSec, r.resumeTimeSec) << r.storedTimeSec;
        EXPECT_EQ(playlist.playList[0].playTime, r.storedTimeSec);
    }
}

}  // namespace
}  // namespace tolvane
