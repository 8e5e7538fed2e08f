#include "app/app_controller.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>

#include "app/bookmarks.h"
#include "app/open_result_message.h"
#include "app/played_state_records.h"
#include "app/user_defaults.h"
#include "app/window_frame_strings.h"
#include "launched_controller.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

using ControllerTest = test::LaunchedController;
constexpr QRect kScreen = ControllerTest::kScreen;

TEST_F(ControllerTest, ARestartReopensTheRecentFolderWhereItStoppedAndOffersNewEpisodes) {
    copyMedia("h264_aac_8s.mkv", "show/Show 01.mkv");
    copyMedia("h264_aac_8s.mkv", "show/Show 02.mkv");
    AppController &first = launch();
    first.openPanelOK({tree.url("show")});
    first.doubleClickedAtTableView(1);
    first.engine().setCurrentTimeSec(6.0, true);
    quit();

    copyMedia("h264_aac_8s.mkv", "show/Show 03.mkv");
    AppController &again = launch();
    EXPECT_EQ(again.recentItemTitle(), "show");
    ui.answers = {0};  // ADD
    again.reOpenFile();
    EXPECT_EQ(ui.titles(), QStringList({"New videos were found in this folder"}));
    EXPECT_EQ(again.playlist().playList.size(), 3);
    EXPECT_EQ(again.playlist().indexPlay, 1);
    EXPECT_EQ(again.playlist().reOpen.reOpenCTimeSec, 3.0) << "3 s before where it stopped";
    EXPECT_NEAR(enginePositionSec(), 3.0, 0.1);
}

TEST_F(ControllerTest, StoredStateIsRestoredAndAFrameOffEveryScreenIsPulledBack) {
    setSetting("AspectRatio", "2.35:1");
    setSetting("Awesome", 1);
    setSetting("MainWindowFrameMono2", "5000 5000 800 450");
    setSetting("InspectorWindowFrameMono2", "100 120 300 200");
    setSetting("WhereURLData", whereURLDataFromFolderURL(tree.makeFolder("subs")));
    QDir(tree.path("subs")).removeRecursively();

    AppController &c = launch();
    EXPECT_EQ(c.menuState().aspectRatioName, "2.35:1");
    EXPECT_TRUE(c.menuState().isAwesome);
    ASSERT_GE(requestedFrames.size(), 2);
    EXPECT_EQ(requestedFrames[0].second.size(), QSize(960, 540));
    EXPECT_TRUE(kScreen.contains(requestedFrames[0].second.topLeft()));
    EXPECT_EQ(requestedFrames[1], std::make_pair(WindowKind::inspector, QRect(100, 120, 300, 200)));
    EXPECT_EQ(ui.titles(), QStringList({"The subtitle folder cannot be found."}));
}

// No settings file yet, or one that is damaged, holds values of the wrong
// kind or comes from a newer version: what cannot be read starts from its
// default, and what the player stores from then on is kept.
TEST_F(ControllerTest, MissingOrUnreadableSettingsStartFromTheDefaults) {
    const QString fileName = openTolvaneSettings()->fileName();
    QDir().mkpath(QFileInfo(fileName).path());
    const struct {
        const char *name;
        QByteArray contents;  // null: no file at all
    } cases[] = {
        {"first launch", QByteArray()},
        {"binary garbage", QByteArray("\x00\xff\x13[General\x00=\xfe", 12)},
        {"wrong kinds",
         "[General]\nVolume=loud\nDecodingPopUpItem=@Variant(garbage)\nAutoPlay=yes\n"
         "FontSize2=12\nMainWindowFrameMono2=@Rect(1 2 3)\n"},
        {"newer version",
         "[General]\nSettingsVersion=99\nVolume=@Variant(\\0\\0\\0\\x99\\0\\x1\\x2)\n"
         "QZRTotalFdFlsData=@ByteArray(\\xd9\\xd9\\xf7\\xbf)\nAspectRatio=21:9\n"},
    };
    for (const auto &c : cases) {
        QFile::remove(fileName);
        if (!c.contents.isNull()) {
            QFile file(fileName);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << c.name;
            file.write(c.contents);
        }
        AppController &app = launch();
        EXPECT_EQ(app.transportState().volume, 1.0) << c.name;
        EXPECT_EQ(app.currentDecodingMode(), 1) << c.name;
        EXPECT_EQ(app.menuState().aspectRatioName, "SAR") << c.name;
        EXPECT_EQ(app.valueForCPFSetting("FontSize2"), QVariant(0.03)) << c.name;
        const QRect centred(480, 270, 960, 540);
        EXPECT_EQ(requestedFrames.value(0), std::make_pair(WindowKind::show, centred)) << c.name;
        EXPECT_TRUE(ui.shown.isEmpty()) << c.name;
        quit();
        const QString stored = openTolvaneSettings()->value("MainWindowFrameMono2").toString();
        EXPECT_EQ(windowFrameFromString(stored), centred) << c.name;
        test::clearTolvaneSettings();
    }
}

TEST(OpenResultMessage, MapsListedCodesAndShowsTheRestAsTheyCame) {
    const struct {
        const char *result;
        const char *message;
    } cases[] = {
        {"-2005: no decoder for aac.", "The audio codec of this file is not supported."},
        {"-2002: (null)", "The file has no video track."},
        {"-2001: (null)", "-2001"},
        {"-2006: Invalid data found when processing input.",
         "Invalid data found when processing input."},
        {"-3000", "-3000"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(messageForOpenResult(QString::fromUtf8(c.result)), QString::fromUtf8(c.message))
            << c.result;
    }
}

TEST_F(ControllerTest, AFileThatCannotBeOpenedLeavesTheRestOfThePlaylistPlayable) {
    tree.touch("show/Show 01.mkv", "not a video at all");
    copyMedia("h264_aac.mkv", "show/Show 02.mkv");
    AppController &c = launch();
    QList<std::pair<WindowKind, bool>> shownWindows;
    QObject::connect(&c, &AppController::windowVisibilityRequested,
                     [&](WindowKind kind, bool isVisible) {
                         shownWindows.append({kind, isVisible});
                     });

    c.openFile(tree.path("show/Show 01.mkv"));
    ASSERT_EQ(ui.titles(), QStringList({"The file could not be opened."}));
    EXPECT_EQ(c.playlist().playList.size(), 2);
    EXPECT_EQ(shownWindows, (QList<std::pair<WindowKind, bool>>{{WindowKind::list, true}}));
    EXPECT_EQ(c.pictureMode(), PictureMode::none);

    c.doubleClickedAtTableView(1);
    EXPECT_EQ(c.pictureMode(), PictureMode::ffmpeg);
    EXPECT_TRUE(c.engine().isAlsoHaveMovie());
    EXPECT_EQ(ui.shown.size(), 1);
}

// A folder that refuses writing stands for a read-only disk; removing the
// file afterwards stands for taking the disk out.
TEST_F(ControllerTest, ARecentVideoOnAReadOnlyDiskIsNamedWhenItIsGoneAtReopen) {
    const struct {
        bool isReadOnly;
        bool isGoneAtReopen;
        bool isAlerted;
    } cases[] = {{true, false, false}, {true, true, true}, {false, true, false}};
    for (const auto &c : cases) {
        const QString folder =
            tree.path(QStringLiteral("disc%1%2").arg(c.isReadOnly).arg(c.isGoneAtReopen));
        const QString film = copyMedia("h264_aac.mkv", QFileInfo(folder).fileName() + "/film.mkv");
        const auto setFolderWritable = [&](bool isWritable) {
            QFile::setPermissions(folder,
                                  QFile::ReadOwner | QFile::ExeOwner |
                                      (isWritable ? QFile::WriteOwner : QFile::Permissions()));
        };
        setFolderWritable(!c.isReadOnly);
        if (c.isReadOnly && access(QFile::encodeName(folder).constData(), W_OK) == 0) {
            GTEST_SKIP() << "a folder without write permission stays writable for this user";
        }
        launch().openFile(film);
        quit();
        if (c.isGoneAtReopen) {
            setFolderWritable(true);
            ASSERT_TRUE(QFile::remove(film));
            setFolderWritable(!c.isReadOnly);
        }

        ui.shown.clear();
        launch().reOpenFile();
        const std::string what = (c.isReadOnly ? "read-only, " : "writable, ") +
                                 std::string(c.isGoneAtReopen ? "gone" : "present");
        if (c.isAlerted) {
            ASSERT_EQ(ui.titles(), QStringList({"The recent file cannot be found."})) << what;
            EXPECT_TRUE(ui.shown.first().informativeText.startsWith(film + "\n")) << what;
        } else {
            EXPECT_TRUE(ui.shown.isEmpty()) << what;
        }
        EXPECT_EQ(controller->playlist().playList.size(), c.isGoneAtReopen ? 0 : 1) << what;
        quit();
        setFolderWritable(true);
    }
}

// The rows come at once; a file's duration, read on a worker, follows.
TEST_F(ControllerTest, PlaylistRowsNeverWaitForTheDurationsOfTheirFiles) {
    copyMedia("h264_aac_8s.mkv", "show/Show 01.mkv");
    copyMedia("h264_aac_8s.mkv", "show/Show 02.mkv");
    AppController &c = launch();
    int rowChanges = 0;
    QObject counting;  // the controller outlives this body: counting ends with it
    QObject::connect(&c, &AppController::playlistRowsChanged, &counting, [&] { ++rowChanges; });
    c.openFile(tree.path("show/Show 01.mkv"));
    c.engine().setCurrentTimeSec(4.0, true);
    c.clickNextFileButton();
    ASSERT_EQ(c.playlist().indexPlay, 1);

    EXPECT_EQ(c.playlistRows()[0].playedFraction, 0.0) << "not known yet";
    ASSERT_TRUE(test::processEventsUntil([&] { return rowChanges > 0; }));
    EXPECT_NEAR(c.playlistRows()[0].playedFraction, 0.5, 0.02);
    // Just opened: at most the first picture's time, depending on when the
    // durations came.
    EXPECT_NEAR(c.playlistRows()[1].playedFraction, 0.0, 0.01);
}

// Episode 1 and 2 of one series, each with three audio tracks and a Korean
// SAMI and a SubRip caption file.
class CarryOverTest : public ControllerTest {
protected:
    void SetUp() override {
        ControllerTest::SetUp();
        for (const char *episode : {"Show 01", "Show 02"}) {
            const QString base = QStringLiteral("show/") + QLatin1String(episode);
            copyMedia("three_audio.mkv", base + ".mkv");
            tree.touch(base + ".smi",
                       "<SAMI><HEAD><STYLE TYPE=\"text/css\"><!--\n.KRCC {Name:Korean; "
                       "lang:ko-KR;}\n--></STYLE></HEAD><BODY>\n<SYNC Start=0><P "
                       "Class=KRCC>안녕</SYNC>\n</BODY></SAMI>\n");
            tree.touch(base + ".srt", "1\n00:00:00,000 --> 00:00:01,000\nHello\n");
        }
    }
    QStringList chosenCaptionTypes() {
        QStringList types;
        const auto &entries = controller->subtitle().entries();
        for (const qint64 index :
             {controller->subtitle().fstOrderIdx(), controller->subtitle().sndOrderIdx()}) {
            types.append(index >= 0 && index < qint64(entries.size()) ? entries[index].fileType
                                                                      : QString("-"));
        }
        return types;
    }
};

// The rule, backward moves and other series included, is the bookkeeping's
// (item_move_bookkeeping_test); here the choices reach the engine and captions.
TEST_F(CarryOverTest, ChoicesFollowToTheNextEpisode) {
    AppController &c = launch();
    c.openFile(tree.path("show/Show 01.mkv"));
    ASSERT_EQ(c.playlist().playList.size(), 2);
    ASSERT_EQ(chosenCaptionTypes(), QStringList({"smi", "-"}));
    c.changeAudioTrack(1);
    c.toggleCaptionTrack(1);
    ASSERT_EQ(c.engine().audioStreamIndex(), 2);

    c.doubleClickedAtTableView(1);
    EXPECT_EQ(c.playlist().indexPlay, 1);
    EXPECT_EQ(c.engine().audioStreamIndex(), 2);
    EXPECT_EQ(chosenCaptionTypes(), QStringList({"smi", "srt"}));
}

TEST_F(CarryOverTest, SubtitlesOpenedAloneAreReadAgainWithoutReloadingTheVideo) {
    QFile::remove(tree.path("show/Show 01.srt"));
    AppController &c = launch();
    c.openFile(tree.path("show/Show 01.mkv"));
    ASSERT_EQ(c.subtitle().entryCount(), 1);
    c.changeAudioTrack(2);
    int pictureModeChanges = 0;
    QObject counting;  // the fixture's quit after this body changes the mode too
    QObject::connect(&c, &AppController::pictureModeChanged, &counting,
                     [&] { ++pictureModeChanges; });

    const QUrl subtitle = tree.touch("show/Show 01.srt", "1\n00:00:00,000 --> 00:00:01,000\nHi\n");
    // Dropped on the window: the view posts the paths.
    NotificationCenter::defaultCenter().post(
        kDraggedFilePathsNotification, nullptr,
        {{kDraggedFilePathsKey, QStringList{subtitle.toLocalFile()}}});
    QCoreApplication::processEvents();
    EXPECT_EQ(c.subtitle().entryCount(), 2);
    EXPECT_EQ(pictureModeChanges, 0);
    EXPECT_EQ(c.engine().audioStreamIndex(), 3) << "the video went on with its track";
    EXPECT_EQ(PlayedStateRecords::readRecentFdFlsData().rcsubtitle.lurls.size(), 1);
}

TEST_F(ControllerTest, AWatchedEpisodeMovesOnCanBeResetAndGoesToTheTrash) {
    // The trash on the same disk as the episodes.
    qputenv("XDG_DATA_HOME", QFile::encodeName(tree.makeFolder("data").toLocalFile()));
    setSetting("AutoPlay", 1);
    copyMedia("h264_aac.mkv", "show/Show 01.mkv");
    copyMedia("h264_aac.mkv", "show/Show 02.mkv");
    AppController &c = launch();
    c.openFile(tree.path("show/Show 01.mkv"));
    ASSERT_EQ(c.playlist().playList.size(), 2);
    EXPECT_FALSE(c.menuState().isMoveToTrashEnabled);

    // The movie timer runs with the event loop: the end of episode 1 starts episode 2.
    ASSERT_TRUE(test::processEventsUntil([&] { return c.playlist().indexPlay == 1; }));
    EXPECT_EQ(c.playlistRows()[0].isDone, true);
    EXPECT_TRUE(c.menuState().isMoveToTrashEnabled);
    EXPECT_TRUE(
        PlayedStateRecords::readTotalFdFlsData().ttfile.value(tree.path("show/Show 01.mkv")).cdone);

    ui.answers = {1};  // CANCEL
    c.clickResetPlayedStateButton();
    EXPECT_TRUE(c.playlistRows()[0].isDone);
    ui.answers = {0};
    c.clickResetPlayedStateButton();
    EXPECT_FALSE(c.playlistRows()[0].isDone);
    EXPECT_FALSE(c.menuState().isMoveToTrashEnabled);
    EXPECT_FALSE(
        PlayedStateRecords::readTotalFdFlsData().ttfile.contains(tree.path("show/Show 01.mkv")));

    c.doubleClickedAtTableView(0);
    ASSERT_TRUE(test::processEventsUntil([&] { return c.playlist().indexPlay == 1; }));
    c.moveToTrash();
    EXPECT_FALSE(QFile::exists(tree.path("show/Show 01.mkv")));
    EXPECT_EQ(c.playlist().playList.size(), 1);
    EXPECT_EQ(c.playlist().indexPlay, 0);
    EXPECT_EQ(c.pictureMode(), PictureMode::ffmpeg) << "episode 2 plays on";
    qunsetenv("XDG_DATA_HOME");
}

TEST_F(ControllerTest, TheDisplayStaysAwakeWhilePlayingCheckedEveryFiftiethTick) {
    AppController &c = launch();
    c.openFile(copyMedia("h264_aac_8s.mkv", "film.mkv"));
    const auto tick = [&](int count) {
        for (int i = 0; i < count; ++i) {
            c.updateDataAboutMovieForFF();
        }
    };
    tick(49);
    c.engine().setRate(1.0);
    tick(1);
    EXPECT_EQ(sleep->created, 1);
    tick(50);
    EXPECT_EQ(sleep->created, 1);
    c.engine().setRate(0.0);
    tick(49);
    EXPECT_EQ(sleep->released, 0);
    tick(1);
    EXPECT_EQ(sleep->released, 1);
}

}  // namespace
}  // namespace tolvane
