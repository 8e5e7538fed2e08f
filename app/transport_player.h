#pragma once

namespace tolvane {

class MyCAOpenGLLayer;
class NamedRecursiveMutex;
class NativeModePlayer;

// The player that a transport action drives, whichever decoding mode is in
// force: the engine of FFmpeg mode or the Native-mode player. Times are the
// positions the time label shows (seconds from the start of the file).
// Thread-safety: main thread only; the two adapters take movieMutex for every
// call on their player.
class TransportPlayer {
public:
    virtual ~TransportPlayer() = default;

    virtual double rate() const = 0;  // 0 paused, 1 playing
    virtual void setRate(double rate) = 0;
    virtual double positionSec() const = 0;
    virtual double durationSec() const = 0;
    // Seeks and shows the picture at `targetSec` at once. The engine's
    // threads stay stopped until resumeAfterSeeking().
    virtual void seekShowingOneFrame(double targetSec) = 0;
    // The end of a run of seeks: the engine's threads come back; playback
    // resumes at `rate` unless that is 0.
    virtual void resumeAfterSeeking(double rate) = 0;
    // Back to the beginning before play is pressed at the end.
    virtual void rewind() = 0;
    // 0 silent, 1 the normal level, up to 5 amplified.
    virtual void setVolume(float volume) = 0;
};

class EngineTransportPlayer final : public TransportPlayer {
public:
    EngineTransportPlayer(MyCAOpenGLLayer &engine, NamedRecursiveMutex &movieMutex)
        : engine(engine), movieMutex(movieMutex) {}

    double rate() const override;
    void setRate(double rate) override;
    double positionSec() const override;
    double durationSec() const override;
    void seekShowingOneFrame(double targetSec) override;
    void resumeAfterSeeking(double rate) override;
    void rewind() override;
    void setVolume(float volume) override;

private:
    MyCAOpenGLLayer &engine;
    NamedRecursiveMutex &movieMutex;
};

class NativeTransportPlayer final : public TransportPlayer {
public:
    NativeTransportPlayer(NativeModePlayer &player, NamedRecursiveMutex &movieMutex)
        : player(player), movieMutex(movieMutex) {}

    double rate() const override;
    void setRate(double rate) override;
    double positionSec() const override;
    double durationSec() const override;
    void seekShowingOneFrame(double targetSec) override;
    void resumeAfterSeeking(double rate) override;
    void rewind() override;
    void setVolume(float volume) override;

private:
    NativeModePlayer &player;
    NamedRecursiveMutex &movieMutex;
};

}  // namespace tolvane
