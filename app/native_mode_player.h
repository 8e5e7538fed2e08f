#pragma once

#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>
#include <chrono>

namespace tolvane {

// The platform media player of Native mode, as the controller sees it. The
// concrete player (GStreamer through Qt Multimedia) lives in app/native/ and
// hands its pictures to the video view itself; tests use a scripted one.
//
// Loading is asynchronous: load() returns at once and loadFinished() reports
// one outcome, on the main thread, unless cancelLoading() came first.
// Thread-safety: main thread only.
class NativeModePlayer : public QObject {
    Q_OBJECT
public:
    enum class LoadOutcome {
        loaded,                     // ready: playable, with an audible track
        loadedWithoutAudibleTrack,  // ready but silent where sound was expected
        failed,                     // the player reported an error
        notPlayable,                // opened, but nothing it can play
        protectedContent,           // encrypted or otherwise protected
        cancelled,                  // the wait for the player ran out
    };
    Q_ENUM(LoadOutcome)

    struct LoadResult {
        LoadOutcome outcome = LoadOutcome::failed;
        // The player's own description of a failure ("" otherwise).
        QString errorDescription;
        // Audio codecs of the file that the platform cannot decode.
        QStringList unsupportedAudioCodecs;
        // What the file holds, in the platform's track kinds: "soun", "vide", "sbtl".
        QStringList trackKinds;
    };

    using QObject::QObject;
    ~NativeModePlayer() override = default;

    // Starts loading `path`; at most `countDown` later it reports `cancelled`
    // if the player has not answered.
    virtual void load(const QString &path, std::chrono::milliseconds countDown) = 0;
    // Stops a load in progress without a report; waits at most 5 s for the
    // player's own thread and then abandons it.
    virtual void cancelLoading() = 0;
    // Stops playback and forgets the file.
    virtual void unload() = 0;
    virtual bool hasMedia() const = 0;

    virtual double rate() const = 0;  // 0 paused, 1 playing
    virtual void setRate(double rate) = 0;
    virtual double currentTimeSec() const = 0;
    virtual double durationSec() const = 0;
    virtual void seekToTime(double timeSec) = 0;
    // 0 silent, 1 the normal level, up to 5 amplified.
    virtual void setVolume(float volume) = 0;
    // The picture's size as it should be shown (pixel aspect applied).
    virtual QSize naturalSize() const = 0;

Q_SIGNALS:
    void loadFinished(const tolvane::NativeModePlayer::LoadResult &result);
    // Playback reached the end of the file.
    void endReached();
};

}  // namespace tolvane
