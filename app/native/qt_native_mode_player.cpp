#include "qt_native_mode_player.h"

#include <QMediaMetaData>
#include <QUrl>
#include <algorithm>

#include "base/log.h"

namespace tolvane {

namespace {

using LoadOutcome = NativeModePlayer::LoadOutcome;

// Qt 6.5 and later default to their FFmpeg back end; Native mode is the
// platform's GStreamer. A choice made in the environment is kept.
bool chooseGStreamerBackend() {
    if (qEnvironmentVariableIsEmpty("QT_MEDIA_BACKEND")) {
        qputenv("QT_MEDIA_BACKEND", "gstreamer");
    }
    return true;
}

// How the player's errors during a load read as outcomes: a format it does
// not support leaves nothing it can play; the others are failures whose
// description the user sees.
struct ErrorOutcome {
    QMediaPlayer::Error error;
    LoadOutcome outcome;
};
constexpr ErrorOutcome kErrorOutcomes[] = {
    {QMediaPlayer::FormatError, LoadOutcome::notPlayable},
    {QMediaPlayer::ResourceError, LoadOutcome::failed},
    {QMediaPlayer::NetworkError, LoadOutcome::failed},
    {QMediaPlayer::AccessDeniedError, LoadOutcome::failed},
};

LoadOutcome outcomeForError(QMediaPlayer::Error error) {
    for (const ErrorOutcome &entry : kErrorOutcomes) {
        if (entry.error == error) {
            return entry.outcome;
        }
    }
    return LoadOutcome::failed;
}

NativeModePlayer::LoadResult unloadedResult(LoadOutcome outcome, const QString &description = {}) {
    NativeModePlayer::LoadResult result;
    result.outcome = outcome;
    result.errorDescription = description;
    return result;
}

// Cancelling waits for a probe at most kStopBound before abandoning it.
static_assert(QtNativeModePlayer::kLongestProbe < MediaProbeThread::kStopBound);

// The probe's share of the count-down: at least a second, at most `longestProbe`.
std::chrono::milliseconds probeTimeoutFor(std::chrono::milliseconds countDown,
                                          std::chrono::milliseconds longestProbe) {
    constexpr std::chrono::milliseconds kShortestProbe{1000};
    return std::clamp(countDown, kShortestProbe, std::max(kShortestProbe, longestProbe));
}

// QAudioOutput's scale is linear and ends at unity gain (see the header).
float audioOutputVolumeFor(float volume) { return std::clamp(volume, 0.0f, 1.0f); }

}  // namespace

QtNativeModePlayer::QtNativeModePlayer(QObject *parent, std::chrono::milliseconds longestProbe)
    : NativeModePlayer(parent),
      isBackendChosen(chooseGStreamerBackend()),
      longestProbe(longestProbe) {
    player.setAudioOutput(&audioOutput);
    player.setVideoSink(&sink);
    countDownTimer.setSingleShot(true);
    connect(&countDownTimer, &QTimer::timeout, this,
            [this] { finishLoading(unloadedResult(LoadOutcome::cancelled)); });
    connect(&player, &QMediaPlayer::mediaStatusChanged, this,
            &QtNativeModePlayer::onMediaStatusChanged);
    connect(&player, &QMediaPlayer::errorOccurred, this, &QtNativeModePlayer::onErrorOccurred);
}

QtNativeModePlayer::~QtNativeModePlayer() {
    cancelLoading();
    player.stop();
}

void QtNativeModePlayer::load(const QString &path, std::chrono::milliseconds countDown) {
    cancelLoading();
    player.stop();
    player.setSource(QUrl());
    isMediaLoaded = false;
    probe.reset();
    loadingPath = path;
    isLoading = true;
    const quint64 number = ++loadNumber;
    countDownTimer.start(countDown);
    probeThread.start(path, probeTimeoutFor(countDown, longestProbe),
                      [this, number](const MediaProbe &found) {
                          QMetaObject::invokeMethod(
                              this, [this, number, found] { onProbeFinished(number, found); },
                              Qt::QueuedConnection);
                      });
}

void QtNativeModePlayer::cancelLoading() {
    if (!isLoading && !isReportPending) {
        return;
    }
    ++loadNumber;
    isReportPending = false;
    if (isLoading) {
        isLoading = false;
        countDownTimer.stop();
        if (!probeThread.stopAndWait(MediaProbeThread::kStopBound)) {
            logWarning(QStringLiteral("the media probe did not end in time and was abandoned"));
        }
    }
    isMediaLoaded = false;
    player.setSource(QUrl());
}

void QtNativeModePlayer::unload() {
    cancelLoading();
    player.stop();
    player.setSource(QUrl());
    isMediaLoaded = false;
    probe.reset();
}

bool QtNativeModePlayer::hasMedia() const { return isMediaLoaded; }

double QtNativeModePlayer::rate() const {
    return player.playbackState() == QMediaPlayer::PlayingState ? player.playbackRate() : 0.0;
}

void QtNativeModePlayer::setRate(double newRate) {
    if (newRate <= 0.0) {
        player.pause();
        return;
    }
    player.setPlaybackRate(newRate);
    player.play();
}

double QtNativeModePlayer::currentTimeSec() const { return double(player.position()) / 1000.0; }

double QtNativeModePlayer::durationSec() const {
    return double(std::max<qint64>(player.duration(), 0)) / 1000.0;
}

void QtNativeModePlayer::seekToTime(double timeSec) {
    player.setPosition(qint64(std::max(timeSec, 0.0) * 1000.0));
}

void QtNativeModePlayer::setVolume(float volume) {
    audioOutput.setVolume(audioOutputVolumeFor(volume));
}

QSize QtNativeModePlayer::naturalSize() const {
    if (probe && probe->naturalSize.isValid()) {
        return probe->naturalSize;
    }
    const QSize resolution = player.metaData().value(QMediaMetaData::Resolution).toSize();
    return resolution.isValid() ? resolution : sink.videoSize();
}

void QtNativeModePlayer::onMediaStatusChanged(QMediaPlayer::MediaStatus status) {
    if (status == QMediaPlayer::EndOfMedia && isMediaLoaded) {
        Q_EMIT endReached();
        return;
    }
    if (!isLoading || !probe) {
        return;
    }
    switch (status) {
        case QMediaPlayer::LoadedMedia:
        case QMediaPlayer::BufferingMedia:
        case QMediaPlayer::BufferedMedia:
            finishLoading(readyResult());
            break;
        case QMediaPlayer::InvalidMedia:
            finishLoading(unloadedResult(LoadOutcome::notPlayable, player.errorString()));
            break;
        default:
            break;
    }
}

void QtNativeModePlayer::onErrorOccurred(QMediaPlayer::Error error, const QString &errorString) {
    if (error == QMediaPlayer::NoError) {
        return;
    }
    if (!isLoading || !probe) {
        logWarning(QStringLiteral("Native-mode playback: %1").arg(errorString));
        return;
    }
    finishLoading(unloadedResult(outcomeForError(error), errorString));
}

// The probe speaks first, and alone where it is sure: an encrypted file only
// fails in the player as a missing plug-in, and the player does not always
// report a file cut short. Only then does the player open the file, so that
// the two pipelines never read it at once.
void QtNativeModePlayer::onProbeFinished(quint64 number, const MediaProbe &found) {
    if (number != loadNumber || !isLoading) {
        return;
    }
    probe = found;
    if (found.isProtected) {
        finishLoading(unloadedResult(LoadOutcome::protectedContent));
    } else if (found.verdict == MediaProbe::Verdict::unreadable) {
        finishLoading(unloadedResult(LoadOutcome::failed, found.errorDescription));
    } else if (found.verdict == MediaProbe::Verdict::unplayable) {
        finishLoading(unloadedResult(LoadOutcome::notPlayable, found.errorDescription));
    } else {
        player.setSource(QUrl::fromLocalFile(loadingPath));
    }
}

NativeModePlayer::LoadResult QtNativeModePlayer::readyResult() const {
    LoadResult result;
    if (player.hasVideo()) {
        result.trackKinds.append(QStringLiteral("vide"));
    }
    if (player.hasAudio()) {
        result.trackKinds.append(QStringLiteral("soun"));
    }
    if (!player.subtitleTracks().isEmpty()) {
        result.trackKinds.append(QStringLiteral("sbtl"));
    }
    result.unsupportedAudioCodecs = probe->undecodableAudioCodecs;
    if (!player.hasAudio() && probe->audioStreamCount > 0) {
        result.outcome = LoadOutcome::loadedWithoutAudibleTrack;
    } else {
        result.outcome = LoadOutcome::loaded;
    }
    return result;
}

void QtNativeModePlayer::finishLoading(const LoadResult &result) {
    isLoading = false;
    ++loadNumber;
    countDownTimer.stop();
    probeThread.stopAndWait(std::chrono::milliseconds(0));
    isMediaLoaded = result.outcome == LoadOutcome::loaded ||
                    result.outcome == LoadOutcome::loadedWithoutAudibleTrack;
    // Reported from the event loop, never from inside the player's own
    // signal: the controller may ask the user (a nested loop) and then stop
    // or reopen this player.
    isReportPending = true;
    const quint64 reported = loadNumber;
    QMetaObject::invokeMethod(
        this,
        [this, reported, result] {
            if (reported != loadNumber || !isReportPending) {
                return;
            }
            isReportPending = false;
            if (!isMediaLoaded) {
                player.setSource(QUrl());
            }
            Q_EMIT loadFinished(result);
        },
        Qt::QueuedConnection);
}

}  // namespace tolvane
