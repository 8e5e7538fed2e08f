#include "app/first_player_window.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <set>

#include "support/qt_printers.h"
#include "support/test_media.h"

namespace tolvane {
namespace {

void spinEventsUntil(const std::function<bool()> &done, int timeoutMs) {
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < timeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}

// Distinct colours in a coarse grid: a test pattern has many, black has one.
int distinctColours(const QImage &image) {
    std::set<QRgb> colours;
    for (int y = 4; y < image.height(); y += image.height() / 12 + 1) {
        for (int x = 4; x < image.width(); x += image.width() / 16 + 1) {
            colours.insert(image.pixel(x, y) & 0xF0F0F0);
        }
    }
    return int(colours.size());
}

class FirstPlayerWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("SDL_AUDIODRIVER", "dummy");
        QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
        window.show();
        spinEventsUntil([] { return false; }, 100);
        if (!window.videoView().context() || !window.videoView().context()->isValid()) {
            GTEST_SKIP() << "no OpenGL context for a widget here";
        }
    }
    FirstPlayerWindow window;
};

TEST_F(FirstPlayerWindowTest, PlaysInStepWithTheClockAndSeeksWhilePausedWithAPreview) {
    // Long enough that a seek lands neither in the first nor in the last two seconds.
    ASSERT_EQ(window.openAndPlay(test::mediaPath("h264_aac_8s.mkv")),
              QLatin1String(kOpenSucceeded));
    EXPECT_EQ(window.size(), QSize(320, 240)) << "sized to the picture";
    spinEventsUntil([&] { return window.engine().currentTimeSec() > 1.0; }, 15000);
    EXPECT_GT(window.engine().currentTimeSec(), 1.0);
    EXPECT_GT(window.videoView().drawCount(), 5);
    EXPECT_GT(distinctColours(window.videoView().grabFramebuffer()), 8)
        << "a moving test pattern, not a black view";

    window.togglePlayPause();
    EXPECT_EQ(window.engine().rate(), 0.0);
    const double paused = window.engine().currentTimeSec();
    spinEventsUntil([] { return false; }, 300);
    EXPECT_EQ(window.engine().currentTimeSec(), paused);
    const int drawsBefore = window.videoView().drawCount();
    window.seekBy(3.0);
    EXPECT_EQ(window.engine().rate(), 0.0) << "a seek keeps the pause";
    spinEventsUntil([&] { return window.videoView().drawCount() > drawsBefore; }, 5000);
    EXPECT_GT(window.videoView().drawCount(), drawsBefore) << "the preview is drawn while paused";
    EXPECT_NEAR(window.engine().currentTimeSec(), paused + 3.0, 0.5);
}

// Two classes, the Korean one chosen first by default.
constexpr const char *kEpisodeSami = R"(<SAMI><HEAD><STYLE TYPE="text/css"><!--
.KRCC { Name:Korean; lang:ko-KR; SAMIType:CC; }
.ENCC { Name:English; lang:en-US; SAMIType:CC; }
--></STYLE></HEAD><BODY>
<SYNC Start=0><P Class=KRCC>First track line
<SYNC Start=0><P Class=ENCC><font color="#ff0000">Second</font> track line
</BODY></SAMI>
)";

TEST_F(FirstPlayerWindowTest, ShowsTheCaptionsFoundBesideTheFileAndASecondTrackOnRequest) {
    // scripts/take-screenshot plays a video of its own (with its captions
    // beside it) through TOLVANE_SCREENSHOT_VIDEO and saves the window.
    QString video = qEnvironmentVariable("TOLVANE_SCREENSHOT_VIDEO");
    QTemporaryDir folder;
    if (video.isEmpty()) {
        video = folder.filePath(QStringLiteral("episode.mkv"));
        ASSERT_TRUE(QFile::copy(test::mediaPath("h264_aac_8s.mkv"), video));
        QFile sami(folder.filePath(QStringLiteral("episode.smi")));
        ASSERT_TRUE(sami.open(QIODevice::WriteOnly));
        sami.write(kEpisodeSami);
    }
    ASSERT_EQ(window.openAndPlay(video), QLatin1String(kOpenSucceeded));
    ASSERT_EQ(window.subtitle().entryCount(), 2);
    const auto groupShown = [&](const char *name) {
        return window.overlay().shownGroups().count(QString::fromLatin1(name)) == 1;
    };
    spinEventsUntil([&] { return groupShown("fst.bottom"); }, 5000);
    EXPECT_TRUE(groupShown("fst.bottom"));
    EXPECT_FALSE(groupShown("snd.top")) << "one track by default";

    window.toggleSecondCaptionTrack();
    EXPECT_NE(window.subtitle().sndOrderIdx(), subtitles::kNoTrackOrderIdx);
    spinEventsUntil([&] { return groupShown("snd.top") || window.engine().currentTimeSec() > 3.0; },
                    5000);
    EXPECT_TRUE(groupShown("fst.bottom"));
    EXPECT_TRUE(groupShown("snd.top"));
    EXPECT_EQ(window.overlay().size(), window.videoView().size());
    const QString screenshot = qEnvironmentVariable("TOLVANE_SCREENSHOT");
    if (!screenshot.isEmpty()) {
        const double atSec = qEnvironmentVariable("TOLVANE_SCREENSHOT_AT_SEC").toDouble();
        spinEventsUntil([&] { return window.engine().currentTimeSec() >= atSec; }, 10000);
        spinEventsUntil([] { return false; }, 200);  // the picture and captions of that time
        window.grab().save(screenshot);
    }

    window.toggleSecondCaptionTrack();
    EXPECT_EQ(window.subtitle().sndOrderIdx(), subtitles::kNoTrackOrderIdx);
    EXPECT_FALSE(groupShown("snd.top")) << "hiding the second track clears it at once";
}

TEST_F(FirstPlayerWindowTest, AFileThatCannotPlayReportsItsCode) {
    EXPECT_EQ(window.openAndPlay(test::mediaPath("audio_only.mka")), QStringLiteral("-2002"));
    EXPECT_FALSE(window.engine().isAsynchronous());
}

}  // namespace
}  // namespace tolvane
