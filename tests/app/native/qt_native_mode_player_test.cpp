#include "app/native/qt_native_mode_player.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <optional>
#include <set>

#include "support/test_media.h"

namespace tolvane {
namespace {

using LoadOutcome = NativeModePlayer::LoadOutcome;
using namespace std::chrono_literals;

class NativeModePlayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        QObject::connect(
            &player, &NativeModePlayer::loadFinished,
            [this](const NativeModePlayer::LoadResult &result) { results.push_back(result); });
    }

    std::optional<NativeModePlayer::LoadResult> loadAndWait(const QString &path) {
        results.clear();
        player.load(path, kCountDown);
        if (!test::processEventsUntil([this] { return !results.empty(); })) {
            return std::nullopt;
        }
        return results.front();
    }

    // The outcomes depend on the probe's findings: it gets time enough that a
    // loaded machine never decides them. The count-down still ends a load
    // that the player leaves unanswered.
    static constexpr std::chrono::milliseconds kProbeTime = 10s;
    static constexpr std::chrono::milliseconds kCountDown = 30s;

    QtNativeModePlayer player{nullptr, kProbeTime};
    std::vector<NativeModePlayer::LoadResult> results;
};

TEST_F(NativeModePlayerTest, OutcomesFollowWhatThePlatformCanPlay) {
    struct Case {
        const char *file;
        std::set<LoadOutcome> outcomes;
        QStringList trackKinds;
        qsizetype unsupportedAudioCodecs;
    };
    const QStringList videoAndSound = {QStringLiteral("vide"), QStringLiteral("soun")};
    const QStringList videoOnly = {QStringLiteral("vide")};
    const Case cases[] = {
        {"h264_aac.mp4", {LoadOutcome::loaded}, videoAndSound, 0},
        {"video_only.mkv", {LoadOutcome::loaded}, videoOnly, 0},
        // One of two audio tracks has no decoder: playable, the other named.
        {"undecodable_audio.mkv", {LoadOutcome::loaded}, videoAndSound, 1},
        {"undecodable_only_audio.mkv", {LoadOutcome::loadedWithoutAudibleTrack}, videoOnly, 1},
        // Now and then the discoverer sits out its whole time on a file cut
        // short, and the player alone may then stay silent until the count-down.
        {"truncated.mp4",
         {LoadOutcome::failed, LoadOutcome::notPlayable, LoadOutcome::cancelled},
         {},
         0},
        {"random.mkv", {LoadOutcome::failed, LoadOutcome::notPlayable}, {}, 0},
        {"no_such_file.mp4", {LoadOutcome::failed, LoadOutcome::notPlayable}, {}, 0},
        {"encrypted.mp4", {LoadOutcome::protectedContent}, {}, 0},
    };
    // Every file under a name as series are named: Korean, blanks and
    // characters that mean something in a URI. The probe and the player both
    // take the file by URI; a probe that misread it would call it unreadable.
    QTemporaryDir folder;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.file);
        const QString path =
            folder.filePath(QStringLiteral("[그룹] 드라마 #1 100% (1080p) ") + c.file);
        QFile::copy(test::mediaPath(c.file), path);  // no_such_file stays missing
        const auto result = loadAndWait(path);
        ASSERT_TRUE(result) << "the player never answered";
        EXPECT_TRUE(c.outcomes.count(result->outcome)) << int(result->outcome);
        EXPECT_EQ(result->trackKinds, c.trackKinds);
        EXPECT_EQ(result->unsupportedAudioCodecs.size(), c.unsupportedAudioCodecs)
            << result->unsupportedAudioCodecs.join(u',').toStdString();
        const bool isLoaded = result->outcome == LoadOutcome::loaded ||
                              result->outcome == LoadOutcome::loadedWithoutAudibleTrack;
        EXPECT_EQ(player.hasMedia(), isLoaded);
        if (isLoaded) {
            EXPECT_EQ(player.naturalSize(), QSize(320, 240));
            EXPECT_NEAR(player.durationSec(), 2.0, 0.1);
        } else if (result->outcome != LoadOutcome::protectedContent &&
                   result->outcome != LoadOutcome::cancelled) {
            EXPECT_FALSE(result->errorDescription.isEmpty()) << "the user sees why";
        }
        test::processEventsFor(100);
        EXPECT_EQ(results.size(), 1u) << "exactly one report per load";
    }
}

TEST_F(NativeModePlayerTest, TheCountDownCancelsAndACancelReportsNothing) {
    player.load(test::mediaPath("h264_aac.mp4"), 0ms);
    ASSERT_TRUE(test::processEventsUntil([this] { return !results.empty(); }));
    EXPECT_EQ(results.front().outcome, LoadOutcome::cancelled);
    EXPECT_FALSE(player.hasMedia());

    results.clear();
    player.load(test::mediaPath("h264_aac.mp4"), kCountDown);
    player.cancelLoading();
    test::processEventsFor(1500);
    EXPECT_TRUE(results.empty());
    EXPECT_FALSE(player.hasMedia());

    // The player stays usable after both.
    const auto result = loadAndWait(test::mediaPath("h264_aac.mp4"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->outcome, LoadOutcome::loaded);
}

TEST_F(NativeModePlayerTest, PlaysToTheEndFromASeek) {
    const auto result = loadAndWait(test::mediaPath("h264_aac.mp4"));
    ASSERT_TRUE(result && result->outcome == LoadOutcome::loaded);
    int ends = 0;
    QObject::connect(&player, &NativeModePlayer::endReached, [&ends] { ++ends; });
    player.seekToTime(1.0);
    player.setRate(1.0);
    EXPECT_EQ(player.rate(), 1.0);
    ASSERT_TRUE(test::processEventsUntil([&ends] { return ends > 0; })) << "endReached never came";
    EXPECT_EQ(ends, 1);
    EXPECT_GT(player.currentTimeSec(), 1.5);
    player.unload();
    EXPECT_FALSE(player.hasMedia());
}

}  // namespace
}  // namespace tolvane
