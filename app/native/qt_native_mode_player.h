#pragma once

#include <QAudioOutput>
#include <QMediaPlayer>
#include <QTimer>
#include <QVideoSink>
#include <optional>

#include "app/native/media_probe.h"
#include "app/native_mode_player.h"

namespace tolvane {

// Native mode on QMediaPlayer with Qt's GStreamer back end. Pictures go to the
// video sink this player owns (videoSink()); the view draws them.
//
// Loading asks GStreamer's discovery first, on a probe thread: it tells what
// Qt leaves out (audio streams without a decoder, encryption, the pixel
// aspect) and answers alone for files that cannot play. The player then
// opens the file, and its media status and errors give the outcome. The
// count-down spans both, on the main thread; cancelLoading() stops listening
// at once and waits at most 5 s for the probe thread.
//
// The probe's share of the count-down is short (kLongestProbe), because on
// some files cut short the discoverer sits out its whole time. A probe that
// runs out only loses its extra knowledge, which does change the outcome
// reported: tests that judge outcomes give it more, so that load never decides.
//
// Volume: QAudioOutput plays at most at unity gain, so our 0..5 maps onto its
// 0..1 as itself up to the normal level 1, and levels above 1 play at 1.
//
// Thread-safety: main thread only.
class QtNativeModePlayer final : public NativeModePlayer {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds kLongestProbe{2000};

    explicit QtNativeModePlayer(QObject *parent = nullptr,
                                std::chrono::milliseconds longestProbe = kLongestProbe);
    ~QtNativeModePlayer() override;

    QVideoSink *videoSink() { return &sink; }

    void load(const QString &path, std::chrono::milliseconds countDown) override;
    void cancelLoading() override;
    void unload() override;
    bool hasMedia() const override;

    double rate() const override;
    void setRate(double rate) override;
    double currentTimeSec() const override;
    double durationSec() const override;
    void seekToTime(double timeSec) override;
    void setVolume(float volume) override;
    QSize naturalSize() const override;

private:
    void onMediaStatusChanged(QMediaPlayer::MediaStatus status);
    void onErrorOccurred(QMediaPlayer::Error error, const QString &errorString);
    void onProbeFinished(quint64 loadNumber, const MediaProbe &probe);
    void finishLoading(const LoadResult &result);
    LoadResult readyResult() const;

    // The backend is chosen when the first member below is made.
    bool isBackendChosen;
    QVideoSink sink;
    QAudioOutput audioOutput;
    QMediaPlayer player;
    QTimer countDownTimer;
    MediaProbeThread probeThread;
    const std::chrono::milliseconds longestProbe;

    quint64 loadNumber = 0;  // tells a finished probe of an earlier load apart
    bool isLoading = false;
    bool isReportPending = false;  // finished, the report not yet delivered
    QString loadingPath;
    std::optional<MediaProbe> probe;
    bool isMediaLoaded = false;
};

}  // namespace tolvane
