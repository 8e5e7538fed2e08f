#include <gtest/gtest.h>

#include <QFile>

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

constexpr const char *kCaption = "1\n00:00:00,300 --> 00:00:01,900\nWWWW WWWW\n";

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
