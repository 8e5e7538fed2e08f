#pragma once

namespace tolvane {

class NamedRecursiveMutex;
class TransportPlayer;

// A run of seek presses (forward, backward and skip keys, the time slider,
// MPRIS Seek): the first press pauses the player and remembers its rate,
// every press seeks showing one picture at once, and the delayed end of the
// last press brings the rate back. Holding a key thus moves picture by
// picture without restarting playback between presses.
//
// Thread-safety: main thread. countPlay and prevRate are guarded by
// seekingMutex, which is never held while the player is called (the player
// takes movieMutex itself).
class SeekPressRun {
public:
    explicit SeekPressRun(NamedRecursiveMutex &seekingMutex) : seekingMutex(seekingMutex) {}

    // One press: pauses on the first of a run, seeks to `targetSec`, and
    // counts a pending end that the caller schedules as restorePlayRate().
    void pressTo(TransportPlayer &player, double targetSec);
    // The delayed end of one press. Returns true when it was the last of its
    // run and `player` was resumed at the remembered rate (the engine's
    // threads restart even when that rate is 0: playback stays paused).
    bool restorePlayRate(TransportPlayer &player);
    // Drops a run whose player went away (a new file is loading): its pending
    // ends then do nothing.
    void forgetRun();

    unsigned countPlay() const;
    float prevRate() const;

private:
    NamedRecursiveMutex &seekingMutex;
    unsigned countPlayValue = 0;  // guarded by seekingMutex
    float prevRateValue = 0.0f;   // guarded by seekingMutex
};

}  // namespace tolvane
