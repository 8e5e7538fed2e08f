// The time-stamp test: its state table, and its answer on generated files.

#include "engine/video/hardware/pts_check.h"

#include <gtest/gtest.h>

#include <QFile>
#include <vector>

#include "support/test_media.h"

namespace tolvane {
namespace {

constexpr std::optional<std::int64_t> kUnset = std::nullopt;

struct Packet {
    char letter;
    std::optional<std::int64_t> pts;
    std::optional<std::int64_t> dts;
};

TEST(PTSCheck, EachBranchOfTheStateTable) {
    struct Case {
        const char *name;
        std::vector<Packet> packets;
        std::vector<int> flags;  // after each packet
    };
    const Case cases[] = {
        {"usable I stamp", {{'I', 3, 1}}, {0}},
        {"I stamp unset, then P with its own", {{'I', kUnset, 0}, {'P', 5, 1}}, {-200, 0}},
        {"I stamp repeats DTS, then P too", {{'I', 0, 0}, {'P', 1, 1}}, {-200, 1}},
        {"no stamps at all", {{'I', kUnset, kUnset}, {'P', kUnset, kUnset}}, {-200, 1}},
        {"B while looking for P decides usable", {{'I', 0, 0}, {'B', 2, 2}}, {-200, 0}},
        {"P first, stamp repeating DTS", {{'P', 4, 4}}, {1}},
        {"P first, stamp of its own", {{'P', 6, 4}}, {0}},
        {"B first, then P unset", {{'B', 1, 0}, {'P', kUnset, 1}}, {-200, 1}},
        {"Y first, then I: the I is not looked at", {{'Y', 0, 0}, {'I', 9, 1}}, {-200, 0}},
        {"decided flags stay", {{'I', 3, 1}, {'P', 2, 2}, {'I', kUnset, kUnset}}, {0, 0, 0}},
        {"unusable stays", {{'I', 0, 0}, {'P', 1, 1}, {'I', 5, 2}}, {-200, 1, 1}},
    };
    for (const Case &c : cases) {
        PTSCheck check;
        EXPECT_EQ(check.flagMessPTS(), -100);
        for (std::size_t i = 0; i < c.packets.size(); ++i) {
            const Packet &p = c.packets[i];
            EXPECT_EQ(check.feedPacket(p.letter, p.pts, p.dts), c.flags[i])
                << c.name << ", packet " << i;
        }
        EXPECT_EQ(check.isDecided(), c.flags.back() == 0 || c.flags.back() == 1) << c.name;
    }
}

TEST(PTSCheck, FilesAreJudgedByTheirFirstIAndPPictures) {
    struct Case {
        const char *file;
        int expected;
    };
    const Case cases[] = {
        {"h264_aac.mp4", 0},        // B pictures: the I's PTS lies after its DTS
        {"h264_aac.mkv", 0},        // PTS without DTS
        {"i_pts_is_dts.mp4", 0},    // I PTS repeats its DTS; the first P has a PTS of its own
        {"starts_late.ts", 1},      // PTS equal to DTS throughout
        {"no_timestamps.h264", 1},  // a raw stream: no PTS at all
        {"audio_only.mka", -100},   // nothing to judge
        {"no-such-file.mkv", -100},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(checkPTS(QFile::encodeName(test::mediaPath(c.file)).constData()), c.expected)
            << c.file;
    }
}

}  // namespace
}  // namespace tolvane
