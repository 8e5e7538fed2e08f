#pragma once

#include <QVideoSink>
#include <memory>
#include <optional>

#include "app/native/qt_native_mode_player.h"

namespace tolvane {

// Native mode's player, made at its first load. Qt Multimedia's GStreamer
// back end takes a few hundred milliseconds to start (plug-in registry,
// audio sink probing), which a launch in FFmpeg mode, the default, must not
// wait for. Until then it answers as a player without media, keeps the
// volume it is given, and has no pictures; playerMade() hands the new
// player's video sink over before the load starts.
// Thread-safety: main thread only.
class LazyNativeModePlayer final : public NativeModePlayer {
    Q_OBJECT
public:
    using NativeModePlayer::NativeModePlayer;
    ~LazyNativeModePlayer() override;

    // Null until the first load.
    QtNativeModePlayer *madePlayer() const { return made.get(); }

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

Q_SIGNALS:
    void playerMade(QVideoSink *sink);

private:
    std::unique_ptr<QtNativeModePlayer> made;
    std::optional<float> volume;
};

}  // namespace tolvane
