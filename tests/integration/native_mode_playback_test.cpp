#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "app/native/qt_native_mode_player.h"
#include "subtitles/my_subtitle.h"
#include "subtitles/text_encodings.h"
#include "support/test_media.h"
#include "views/caption_overlay.h"
#include "views/caption_timer.h"
#include "views/my_video_view.h"
#include "views/native_picture_source.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

constexpr const char *kCaption = "1\n00:00:00,300 --> 00:00:01,900\nWWWW WWWW\n";

bool spinUntil(const std::function<bool()> &condition, int timeoutMs = 20000) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > timeoutMs) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

int countPixels(const QImage &image, int firstRow, int endRow,
                const std::function<bool(int x, int y)> &counts) {
    int count = 0;
    for (int y = firstRow; y < endRow; ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += counts(x, y) ? 1 : 0;
        }
    }
    return count;
}

bool differs(QRgb a, QRgb b) {
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) +
               std::abs(qBlue(a) - qBlue(b)) >
           60;
}

// The road of a Native-mode file in the real window: the platform player
// decodes, its frames are drawn by the view's renderer, and the captions
// follow the player's clock in the overlay above them.
TEST(NativeModePlaybackTest, PlaysAnMp4ToItsEndWithCaptionsOverThePicture) {
    QTemporaryDir folder;
    const QString video = folder.filePath(QStringLiteral("clip.mp4"));
    ASSERT_TRUE(QFile::copy(test::mediaPath("h264_aac.mp4"), video));
    QFile srt(folder.filePath(QStringLiteral("clip.srt")));
    ASSERT_TRUE(srt.open(QIODevice::WriteOnly) && srt.write(kCaption) > 0);
    srt.close();

    subtitles::MySubtitle subtitle;
    subtitle.sizePF = 0.08f;
    subtitle.openSubtitleFileURL(video, encodingItemsToTry(kAutomaticEncodingItem), false,
                                 QString());
    ASSERT_EQ(subtitle.entryCount(), 1);
    subtitle.setOrders({});
    subtitle.resetSortedIdx();

    QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
    QtNativeModePlayer player;
    NativePictureSource source(player.videoSink());
    MyVideoView view;
    CaptionOverlay overlay(&view);
    overlay.setLayoutSettings({.viewSize = subtitle.viewSize,
                               .spacingPF = subtitle.spacingPF,
                               .marginPF = subtitle.marginPF});
    CaptionTimer captions(subtitle, overlay,
                          [&player] { return qint32(player.currentTimeSec() * 1000.0); });
    source.setWakeHandler([&view] { view.wakeRefresh(); });
    view.setPictureSource(&source);
    view.resize(480, 360);
    view.show();
    spinUntil([] { return false; }, 100);
    if (!view.context() || !view.context()->isValid()) {
        GTEST_SKIP() << "no OpenGL context for a widget here";
    }

    std::vector<NativeModePlayer::LoadResult> loads;
    int ends = 0;
    QObject::connect(
        &player, &NativeModePlayer::loadFinished,
        [&loads](const NativeModePlayer::LoadResult &result) { loads.push_back(result); });
    QObject::connect(&player, &NativeModePlayer::endReached, [&ends] { ++ends; });
    player.load(video, 5s);
    ASSERT_TRUE(spinUntil([&loads] { return !loads.empty(); }));
    ASSERT_EQ(loads.front().outcome, NativeModePlayer::LoadOutcome::loaded);
    captions.start();
    player.setRate(1.0);

    const auto framesDrawn = [&source] {
        return source.planeDrawCount() + source.convertedDrawCount();
    };
    ASSERT_TRUE(spinUntil([&] { return !overlay.shownGroups().empty() && framesDrawn() > 5; }))
        << "frames drawn: " << framesDrawn();
    // The composed window first (it may draw a pending frame), then the
    // picture alone: the same frame, so what differs is the captions.
    const QImage shown = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage picture = view.grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(shown.size(), picture.size());
    const int height = picture.height();
    const int coloured = countPixels(picture, height / 4, 3 * height / 4,
                                     [&](int x, int y) { return qGray(picture.pixel(x, y)) > 40; });
    EXPECT_GT(coloured, picture.width() * height / 4) << "the decoded picture fills the view";
    const auto captionPixels = [&](int firstRow, int endRow) {
        return countPixels(shown, firstRow, endRow, [&](int x, int y) {
            return differs(shown.pixel(x, y), picture.pixel(x, y));
        });
    };
    EXPECT_GT(captionPixels(2 * height / 3, height), 100) << "the caption over the picture";
    EXPECT_EQ(captionPixels(0, height / 2), 0) << "nothing else over the picture";
    EXPECT_GT(source.planeDrawCount(), 0) << "YUV frames go up as planes";

    ASSERT_TRUE(spinUntil([&ends] { return ends > 0; })) << "endReached never came";
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(loads.size(), 1u);
    EXPECT_GT(player.currentTimeSec(), 1.5);
    captions.stop();
    view.setPictureSource(nullptr);
}

}  // namespace
}  // namespace tolvane
