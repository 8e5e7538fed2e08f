#include <gtest/gtest.h>

#include <QFile>
#include <QImage>

#include "app/app_controller.h"
#include "app/app_test_support.h"
#include "app/native/qt_native_mode_player.h"
#include "app/scripted_services.h"
#include "app/user_defaults.h"
#include "subtitles/my_subtitle.h"
#include "support/test_media.h"
#include "views/caption_overlay.h"
#include "views/caption_timer.h"
#include "views/my_video_view.h"
#include "views/native_picture_source.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

constexpr const char *kCaption = "1\n00:00:00,300 --> 00:00:01,900\nWWWW WWWW\n";

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

// The road of a Native-mode file as a user opens it: the controller loads it
// in the platform player, whose frames the view's renderer draws, and the
// captions follow the controller's clock in the overlay above them.
TEST(NativeModePlaybackTest, PlaysAnMp4ToItsEndWithCaptionsOverThePicture) {
#if defined(__SANITIZE_THREAD__)
    // The caption is up for 1.6 s of real-time playback; slowed down by the
    // instrumentation, the platform player drops every late picture and the
    // overlay misses the caption. The player itself is covered by
    // native_player_tests there.
    GTEST_SKIP() << "real-time playback under ThreadSanitizer";
#endif
    test::clearTolvaneSettings();
    test::TemporaryTree folder;
    const QString video = folder.path("clip.mp4");
    ASSERT_TRUE(QFile::copy(test::mediaPath("h264_aac.mp4"), video));
    folder.write("clip.srt", kCaption);

    // Every question is answered CANCEL: no switch to FFmpeg mode can hide a failure.
    test::ScriptedUserInteraction interaction;
    auto nativePlayer = std::make_unique<QtNativeModePlayer>();
    QtNativeModePlayer &player = *nativePlayer;
    AppController::Services services;
    services.userInteraction = &interaction;
    services.nativePlayer = std::move(nativePlayer);
    AppController controller(std::move(services));
    controller.awakeFromNib();
    controller.userDefaults().setValue(QStringLiteral("DecodingPopUpItem"), 0);

    QSurfaceFormat::setDefaultFormat(MyVideoView::preferredSurfaceFormat());
    NativePictureSource source(player.videoSink());
    MyVideoView view;
    CaptionOverlay overlay(&view);
    view.addOverlay(&overlay);
    CaptionTimer captions(controller.subtitle(), overlay,
                          [&controller] { return controller.playbackTimeMsec(); });
    source.setWakeHandler([&view] { view.wakeRefresh(); });
    view.setPictureSource(&source);
    view.resize(480, 360);
    view.show();
    test::processEventsUntil([] { return false; }, 100);
    if (!view.context() || !view.context()->isValid()) {
        GTEST_SKIP() << "no OpenGL context for a widget here";
    }

    controller.finallyOpenFilesFolders({QUrl::fromLocalFile(video)});
    ASSERT_TRUE(test::processEventsUntil([&] {
        return controller.pictureMode() == PictureMode::native;
    })) << "asked: "
        << interaction.titles().join(u'|').toStdString();
    ASSERT_EQ(controller.subtitle().entryCount(), 1) << "the caption file beside the video";
    const subtitles::MySubtitle &subtitle = controller.subtitle();
    overlay.setLayoutSettings({.viewSize = subtitle.viewSize,
                               .spacingPF = subtitle.spacingPF,
                               .marginPF = subtitle.marginPF});
    captions.start();

    const auto framesDrawn = [&source] {
        return source.planeDrawCount() + source.convertedDrawCount();
    };
    ASSERT_TRUE(test::processEventsUntil([&] {
        return !overlay.shownGroups().empty() && framesDrawn() > 5;
    })) << "frames drawn: "
        << framesDrawn();
    // The overlay's first paint, which hands it to the picture's window, is
    // queued behind the caption change.
    test::processEventsUntil([] { return false; }, 200);
    // The picture with its overlays, then with the captions hidden: the
    // same frame (no event is handled in between), so what differs is the
    // captions.
    const QImage shown = view.grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    overlay.hide();
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

    // At the end the controller marks the item watched.
    ASSERT_TRUE(test::processEventsUntil([&] {
        return controller.playlist().playList.value(0).playDone;
    })) << "the end was never reached";
    EXPECT_EQ(player.rate(), 0.0);
    EXPECT_TRUE(interaction.shown.isEmpty()) << interaction.titles().join(u'|').toStdString();
    captions.stop();
    view.setPictureSource(nullptr);
    controller.applicationWillTerminate();
}

}  // namespace
}  // namespace tolvane
