// Opening: every road ends in finallyOpenFilesFolders; loading one file, and
// moving from one playlist item to another.

#include <QFileInfo>
#include <algorithm>
#include <cmath>

#include "app/app_controller.h"
#include "app/files_folders_opening.h"
#include "app/item_move_bookkeeping.h"
#include "app/media_file_kinds.h"
#include "app/open_result_message.h"
#include "app/played_state_records.h"
#include "app/playlist_builder.h"
#include "app/series.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "base/operation_boundary.h"
#include "engine/my_ca_opengl_layer.h"
#include "subtitles/text_encodings.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

// Caption layout space: this wide, as tall as the picture's aspect makes it.
constexpr double kCaptionSpaceWidth = 960.0;
constexpr auto kNotTypeForNativeMessageShownFor = 5000ms;

QString soundTrackTitle(const AudioTrack &track) {
    QStringList parts = {QStringLiteral("#%1").arg(track.idx), track.codecname, track.channel};
    if (!track.language.isEmpty()) {
        parts.append(track.language);
    }
    parts.removeAll(QString());
    return parts.join(QLatin1Char(' '));
}

}  // namespace

void AppController::openFile(const QString &path) {
    finallyOpenFilesFolders({QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath())});
}

void AppController::openPanelOK(const QList<QUrl> &urls) { finallyOpenFilesFolders(urls); }

void AppController::openViewDragFile(const QStringList &paths) {
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    }
    finallyOpenFilesFolders(urls);
}

void AppController::openDesktopDragFile(const QUrl &url) { finallyOpenFilesFolders({url}); }

void AppController::finallyOpenFilesFolders(const QList<QUrl> &urls) {
    if (willTerminateNotified) {
        return;
    }
    runAtOperationBoundary("foff", [this, &urls] {
        stopHandleAVStatusThread();
        Q_EMIT countDownChanged({});
        Q_EMIT loadingCircleChanged(true);
        const bool wasFilePlaying = isAutoPlayed;
        const std::optional<double> position =
            playlistState.isEmpty() ? std::nullopt : playingPositionSec();
        const OpeningOutcome outcome = filesFoldersOpening->finallyOpenFilesFolders(urls, position);
        switch (outcome) {
            case OpeningOutcome::nothingToOpen:
                break;
            case OpeningOutcome::subtitlesAdded:
                // The video goes on playing; only its captions are read again.
                reloadSubtitle(playlistState.reOpen.reOpenURL);
                Q_EMIT playlistChanged();
                break;
            case OpeningOutcome::emptyPlaylist:
                finishOpeningWithEmptyPlaylist(wasFilePlaying);
                break;
            case OpeningOutcome::playlistBuilt:
                playlistState.reOpen.reOpenCTimeSec =
                    resumePositionFromStoredPosition(playlistState.reOpen.reOpenCTimeSec);
                cleanBeforeLoading();
                isAutomaticStartPlay = defaults->value(QStringLiteral("AutoPlay")).toInt() == 1;
                loadMovieFile(playlistState.reOpen.reOpenURL);
                break;
        }
        Q_EMIT loadingCircleChanged(false);
    });
}

void AppController::finishOpeningWithEmptyPlaylist(bool wasFilePlaying) {
    if (wasFilePlaying) {
        inspector.fileName = realFileNameStringWhetherBDMV(playlistState.reOpen.reOpenURL);
        Q_EMIT inspectorChanged();
    }
    menu.isMoveToTrashEnabled = false;
    Q_EMIT menuStateChanged();
    Q_EMIT playlistChanged();
    Q_EMIT transportChanged();
}

void AppController::cleanBeforeLoading() {
    runAtOperationBoundary("cbl", [this] {
        movieTimer.stop();
        stopHandleAVStatusThread();
        Q_EMIT countDownChanged({});
        Q_EMIT loadingCircleChanged(false);
        {
            NamedLockGuard lock(movieMutex);
            if (NativeModePlayer *native = services.nativePlayer.get();
                native && native->hasMedia()) {
                native->setRate(0.0);
                native->unload();
            }
            myGLLayer->setRate(0.0);
            myGLLayer->cleanBeforeOpenFile();
        }
        shownPictureMode = PictureMode::none;
        Q_EMIT pictureModeChanged(shownPictureMode);
        isAutoPlayed = false;
        isEndForFF = false;
        countFinalForFF = 0;
        cTimeSecForFF = 0.0;
        lastTickPositionSec = -1.0;
        currentPlayPercentage = -100.0;

        iSubtitle = subtitles::MySubtitle{};
        Q_EMIT subtitleReloaded();
        Q_EMIT captionsNeedRedraw();
        Q_EMIT fileNameChanged({}, false);
        inspector.frameRate = inspector.bitRate = inspector.pictureSize = inspector.videoFormat =
            QStringLiteral("---");
        inspector.accelerationLabel = QStringLiteral(" ");
        inspector.soundTracks.clear();
        inspector.selectedSoundTrack = -1;
        soundTrackStreamIndexes.clear();
        inspector.captionTracks.clear();
        inspector.selectedCaptionTracks.clear();
        Q_EMIT inspectorChanged();
        Q_EMIT transportChanged();
    });
}

void AppController::loadMovieFile(const QUrl &url) {
    runAtOperationBoundary("lmf", [this, &url] {
        Q_EMIT loadingCircleChanged(false);
        const bool isNativeMode = currentDecodingMode() == 0 && services.nativePlayer;
        // In Native mode the engine only examines the file.
        myGLLayer->setIsUseH264Acc(isNativeMode ||
                                   defaults->value(QStringLiteral("IsGPUAccForFF")).toInt() == 1);
        myGLLayer->setIs10bitMode(defaults->value(QStringLiteral("Is10bitModeForFF")).toInt() == 1);
        QString result;
        try {
            NamedLockGuard lock(movieMutex);
            result = myGLLayer->openMovieFile(url.toLocalFile());
        } catch (...) {
            result = QLatin1String(kOpenRaisedException);
        }
        if (!result.startsWith(QLatin1String(kOpenSucceeded))) {
            loadFailed(result);
            return;
        }
        showLoadedFileState(url);
        if (!isNativeMode) {
            loadMovieFileForFF(url);
        } else if (isNativeModeFileExtension(QFileInfo(url.toLocalFile()).suffix())) {
            loadMovieFileForNT(url);
        } else {
            const QString extension = QFileInfo(url.toLocalFile()).suffix().toUpper();
            const int answer = services.userInteraction->askChoice(
                localizedString("NOTYPEFORQT").arg(extension), localizedString("NOTYPEFORQTCONT"),
                {QStringLiteral("FFmpeg"), localizedString("CANCEL")});
            if (answer == 0) {
                clickChangeDecoding();
                return;
            }
            leaveFullScreen();
            showMessage(localizedString("NOTYPEFORQTCONT"), kNotTypeForNativeMessageShownFor);
        }
        refreshMoveToTrashEnabled();
        Q_EMIT playlistChanged();
        Q_EMIT transportChanged();
    });
}

void AppController::loadFailed(const QString &result) {
    inspector.fileName = realFileNameStringWhetherBDMV(playlistState.reOpen.reOpenURL);
    Q_EMIT inspectorChanged();
    Q_EMIT playlistChanged();
    if (playlistState.playList.size() >= 2 && !menu.isPlaylistShown) {
        menu.isPlaylistShown = true;
        defaults->setValue(QStringLiteral("IsShowPlaylist"), true);
        Q_EMIT windowVisibilityRequested(WindowKind::list, true);
        Q_EMIT menuStateChanged();
    }
    Q_EMIT fileNameChanged(QStringLiteral("Tolvane"), true);
    Q_EMIT transportChanged();
    services.userInteraction->showAlert(localizedString("ERROPEN"), messageForOpenResult(result));
}

void AppController::showLoadedFileState(const QUrl &url) {
    const bool isFFmpegMode = currentDecodingMode() != 0;
    const QString displayName = realFileNameStringWhetherBDMV(url);
    if (myGLLayer->isUseH264Acc() && myGLLayer->isMacSupportH264Acc()) {
        inspector.accelerationLabel = QStringLiteral("H.264");
    } else if (isFFmpegMode && myGLLayer->pixelFormatMode() % 100 >= 20 &&
               myGLLayer->is10bitMode()) {
        inspector.accelerationLabel = QStringLiteral("10-bit");
    } else {
        inspector.accelerationLabel = QStringLiteral(" ");
    }
    inspector.fileName = displayName;
    inspector.decodingLabel = isFFmpegMode ? QStringLiteral("FF") : QStringLiteral("NT");
    const Tracks &tracks = myGLLayer->tracks();
    if (tracks.videotrack) {
        const VideoTrack &video = *tracks.videotrack;
        inspector.frameRate = QString::number(video.fps, 'f', 3);
        inspector.pictureSize = QStringLiteral("%1 x %2").arg(video.width).arg(video.height);
        inspector.videoFormat = QStringLiteral("%1, %2").arg(video.codecname, video.pixelformat);
        if (video.width > 0 && video.height > 0) {
            naturalPictureSize = QSizeF(video.width, video.height);
        }
    }
    const qint64 fileSize = QFileInfo(url.toLocalFile()).size();
    const double duration = myGLLayer->fileDurationSec();
    inspector.bitRate =
        duration > 0.0
            ? QStringLiteral("%1 kb/s").arg(std::llround(fileSize * 8.0 / duration / 1000.0))
            : QStringLiteral("---");
    Q_EMIT fileNameChanged(displayName, true);
    Q_EMIT inspectorChanged();
}

void AppController::loadMovieFileForFF(const QUrl &url) {
    const ReOpenFields &reOpen = playlistState.reOpen;
    const Tracks &tracks = myGLLayer->tracks();
    {
        NamedLockGuard lock(movieMutex);
        if (reOpen.reOpenAudioIdx != kNoAudioTrackChosen &&
            tracks.audiotrack.count(reOpen.reOpenAudioIdx) != 0) {
            myGLLayer->changeAudioTrack(reOpen.reOpenAudioIdx);
        }
    }
    inspector.soundTracks.clear();
    soundTrackStreamIndexes.clear();
    for (const auto &[streamIndex, track] : tracks.audiotrack) {
        if (streamIndex == myGLLayer->audioStreamIndex()) {
            inspector.selectedSoundTrack = int(soundTrackStreamIndexes.size());
        }
        soundTrackStreamIndexes.append(streamIndex);
        inspector.soundTracks.append(soundTrackTitle(track));
    }
    reloadSubtitle(url);
    {
        NamedLockGuard lock(movieMutex);
        if (reOpen.reOpenCTimeSec > 0.0) {
            myGLLayer->setCurrentTimeSec(reOpen.reOpenCTimeSec, true);
        }
        myGLLayer->setDefaultOutputAndTimersBeforeStartWithVolume(float(volumeSliderValue));
        if (isAutomaticStartPlay) {
            myGLLayer->setRate(1.0);
        }
    }
    // Told once the engine's threads run: the view that shows the pictures
    // brings up its OpenGL window (at launch, loading the driver) meanwhile
    // rather than before them.
    shownPictureMode = PictureMode::ffmpeg;
    Q_EMIT pictureModeChanged(shownPictureMode);
    isAutoPlayed = true;
    movieTimer.start();
    Q_EMIT inspectorChanged();
    resizeWindowToLoadedFile();
}

void AppController::reloadSubtitle(const QUrl &videoURL) {
    NamedLockGuard lock(encodingMutex);
    iSubtitle = subtitles::MySubtitle{};
    if (videoURL.isEmpty()) {
        Q_EMIT subtitleReloaded();
        return;
    }
    iSubtitle.fnamePF = defaults->value(QStringLiteral("FontName")).toString();
    iSubtitle.boldPF = defaults->valueForCPFSetting(QStringLiteral("IsFontBold2")).toBool();
    iSubtitle.sizePF = defaults->valueForCPFSetting(QStringLiteral("FontSize2")).toFloat();
    iSubtitle.spacingPF = defaults->valueForCPFSetting(QStringLiteral("CaptionSpacing2")).toFloat();
    iSubtitle.marginPF = defaults->valueForCPFSetting(QStringLiteral("CaptionMargin2")).toFloat();
    iSubtitle.isDefaultColor = defaults->value(QStringLiteral("AnotherDefaultColor")).toInt() != 1;
    if (naturalPictureSize.width() > 0.0) {
        iSubtitle.viewSize =
            QSizeF(kCaptionSpaceWidth, std::round(kCaptionSpaceWidth * naturalPictureSize.height() /
                                                  naturalPictureSize.width()));
    }
    const QString videoPath = videoURL.toLocalFile();
    const std::vector<int> encodingItems =
        encodingItemsToTry(defaults->value(QStringLiteral("TextEncodingPopUpItem2")).toInt());
    const bool isBluray = videoPath.contains(QLatin1String("/BDMV/STREAM"), Qt::CaseInsensitive);
    iSubtitle.openSubtitleFileURL(videoPath, encodingItems, isBluray,
                                  openedItems.whereURL.toLocalFile());
    iSubtitle.setOrders(playlistState.reOpen.reOpenSubtitleIdxs);
    iSubtitle.setDelays(playlistState.reOpen.reOpenDelayDic);
    iSubtitle.resetSortedIdx();

    inspector.captionTracks.clear();
    for (const subtitles::SubtitleEntry &entry : iSubtitle.entries()) {
        const QString name = QFileInfo(entry.url).fileName();
        const QString failure = subtitles::MySubtitle::humanReadableError(entry.error);
        inspector.captionTracks.append(failure.isEmpty()
                                           ? QStringLiteral("%1 (%2)").arg(name, entry.lang)
                                           : QStringLiteral("%1: %2").arg(name, failure));
    }
    inspector.selectedCaptionTracks.clear();
    for (const qint64 row : iSubtitle.matrixSelecteds(true)) {
        inspector.selectedCaptionTracks.append(row);
    }
    inspector.fstDelayMsec = iSubtitle.fstDelay();
    inspector.sndDelayMsec = iSubtitle.sndDelay();
    Q_EMIT subtitleReloaded();
    Q_EMIT captionsNeedRedraw();
    Q_EMIT inspectorChanged();
}

void AppController::continueOpenFile() {
    if (willTerminateNotified) {
        return;
    }
    runAtOperationBoundary("cof", [this] {
        stopHandleAVStatusThread();
        Q_EMIT countDownChanged({});
        Q_EMIT loadingCircleChanged(true);
        const std::optional<double> position = playingPositionSec();
        {
            NamedLockGuard lock(continueOpenMutex);
            const QList<PlaylistItem> &items = playlistState.playList;
            int indexOfItemLeft = -1;
            for (int i = 0; i < items.size(); ++i) {
                if (items[i].url == playlistState.reOpen.reOpenURL) {
                    indexOfItemLeft = i;
                    break;
                }
            }
            itemMoveBookkeeping->continueOpenFile(indexOfItemLeft, position);
        }
        cleanBeforeLoading();
        isAutomaticStartPlay = true;
        loadMovieFile(playlistState.reOpen.reOpenURL);
    });
}

void AppController::doubleClickedAtTableView(int row) {
    if (row < 0 || row >= playlistState.playList.size() ||
        (row == playlistState.indexPlay && isAutoPlayed)) {
        return;
    }
    isDoubleClickedPlayList = true;
    playlistState.indexPlay = row;
    continueOpenFile();
}

void AppController::chooseOpenedList(int indexList) {
    runAtOperationBoundary("col", [this, indexList] {
        const int videoTitles = openedItems.openedVideoFileURLs.isEmpty() ? 0 : 1;
        const int folderIndex = indexList - videoTitles;
        if (indexList < 0 || indexList >= openedItems.openedListTitles.size() ||
            indexList == openedItems.indexList) {
            return;
        }
        const std::optional<double> position = playingPositionSec();
        if (position && playlistState.reOpen.reOpenCTimeSec != kStartFromBeginningTimeSec) {
            playlistState.reOpen.reOpenCTimeSec = *position;
        }
        records->saveTotalFdFlsData(QStringLiteral("auto"));
        openedItems.indexList = indexList;
        if (folderIndex < 0) {
            playlistBuilder->makePListWithFileWhenReOpen(openedItems.openedVideoFileURLs);
        } else {
            playlistBuilder->makePListWithFolderWhenReOpen(
                openedItems.openedFolderURLs[folderIndex]);
        }
        records->saveRecentFdFlsData(QStringLiteral("index"));
        Q_EMIT playlistChanged();
        if (playlistState.isEmpty()) {
            finishOpeningWithEmptyPlaylist(isAutoPlayed);
            return;
        }
        playlistState.reOpen.reOpenCTimeSec =
            resumePositionFromStoredPosition(playlistState.reOpen.reOpenCTimeSec);
        cleanBeforeLoading();
        isAutomaticStartPlay = true;
        loadMovieFile(playlistState.reOpen.reOpenURL);
    });
}

void AppController::reOpenFile() {
    if (willTerminateNotified) {
        return;
    }
    runAtOperationBoundary("rof", [this] {
        if (playlistState.hasCurrentItem()) {
            cleanBeforeLoading();
            loadMovieFile(playlistState.reOpen.reOpenURL);
            return;
        }
        Q_EMIT loadingCircleChanged(true);
        const QList<QUrl> notWritableVideos =
            PlayedStateRecords::getSavedRecentIsFolder()
                ? QList<QUrl>()
                : PlayedStateRecords::getSavedRecentVideosOnNotWritableDisk(
                      PlayedStateRecords::readRecentFdFlsData());
        const OpeningOutcome outcome = filesFoldersOpening->reOpenFromRecentRecord();
        Q_EMIT playlistChanged();
        alertWhenRecentOpenFileFromNotWritableDisk(notWritableVideos);
        if (outcome != OpeningOutcome::playlistBuilt) {
            Q_EMIT loadingCircleChanged(false);
            return;
        }
        playlistState.reOpen.reOpenCTimeSec =
            resumePositionFromStoredPosition(playlistState.reOpen.reOpenCTimeSec);
        cleanBeforeLoading();
        isAutomaticStartPlay = defaults->value(QStringLiteral("AutoPlay")).toInt() == 1;
        loadMovieFile(playlistState.reOpen.reOpenURL);
    });
}

// On Linux a recent video on a read-only disk reopens from its path like any
// other; only one whose disk is gone now is worth a word.
void AppController::alertWhenRecentOpenFileFromNotWritableDisk(const QList<QUrl> &urls) {
    QStringList missingPaths;
    for (const QUrl &url : urls) {
        if (!QFileInfo::exists(url.toLocalFile())) {
            missingPaths.append(url.toLocalFile());
        }
    }
    if (missingPaths.isEmpty()) {
        return;
    }
    services.userInteraction->showAlert(localizedString("NOTWRITABLE"),
                                        missingPaths.join(QLatin1Char('\n')) + QLatin1Char('\n') +
                                            localizedString("NOTWRITABLECONT"));
}

std::optional<double> AppController::playingPositionSec() {
    if (!isAutoPlayed) {
        return std::nullopt;
    }
    NamedLockGuard lock(movieMutex);
    if (shownPictureMode == PictureMode::ffmpeg && myGLLayer->isAlsoHaveMovie()) {
        return finalCurrentTimeSecForFF();
    }
    if (shownPictureMode == PictureMode::native && services.nativePlayer &&
        services.nativePlayer->hasMedia()) {
        return services.nativePlayer->currentTimeSec();
    }
    return std::nullopt;
}

void AppController::changeTextEncoding(int textEncodingItem) {
    runAtOperationBoundary("cate", [this, textEncodingItem] {
        defaults->setValue(QStringLiteral("TextEncodingPopUpItem2"), textEncodingItem);
        inspector.textEncodingItem = textEncodingItem;
        if (playlistState.hasCurrentItem() && shownPictureMode != PictureMode::none) {
            reloadSubtitle(playlistState.reOpen.reOpenURL);
        } else {
            Q_EMIT inspectorChanged();
        }
    });
}

void AppController::changeAudioTrack(int audioTrackIndex) {
    runAtOperationBoundary("cat", [this, audioTrackIndex] {
        if (shownPictureMode != PictureMode::ffmpeg || audioTrackIndex < 0 ||
            audioTrackIndex >= soundTrackStreamIndexes.size()) {
            return;
        }
        {
            NamedLockGuard lock(movieMutex);
            myGLLayer->changeAudioTrack(soundTrackStreamIndexes[audioTrackIndex]);
        }
        const int streamIndex = myGLLayer->audioStreamIndex();
        playlistState.reOpen.reOpenAudioIdx = streamIndex;
        inspector.selectedSoundTrack = int(soundTrackStreamIndexes.indexOf(streamIndex));
        Q_EMIT inspectorChanged();
    });
}

void AppController::toggleCaptionTrack(qint64 row) {
    runAtOperationBoundary("tct", [this, row] {
        {
            NamedLockGuard lock(encodingMutex);
            iSubtitle.toggleRow(row);
            iSubtitle.resetSortedIdx();
        }
        subtitleChoicesChanged();
    });
}

void AppController::subtitleChoicesChanged() {
    playlistState.reOpen.reOpenSubtitleIdxs = iSubtitle.reOpenSubtitleIdxs();
    playlistState.reOpen.reOpenDelayDic = iSubtitle.reOpenDelayDic();
    inspector.selectedCaptionTracks.clear();
    for (const qint64 selected : iSubtitle.matrixSelecteds(true)) {
        inspector.selectedCaptionTracks.append(selected);
    }
    inspector.fstDelayMsec = iSubtitle.fstDelay();
    inspector.sndDelayMsec = iSubtitle.sndDelay();
    Q_EMIT inspectorChanged();
    Q_EMIT captionsNeedRedraw();
}

void AppController::refreshMoveToTrashEnabled() {
    const bool isEnabled =
        std::any_of(playlistState.playList.cbegin(), playlistState.playList.cend(),
                    [](const PlaylistItem &item) { return item.playDone; }) ||
        playlistState.reOpen.reOpenDone;
    if (menu.isMoveToTrashEnabled != isEnabled) {
        menu.isMoveToTrashEnabled = isEnabled;
        Q_EMIT menuStateChanged();
    }
}

}  // namespace tolvane
