#include "app/seek_press_run.h"

#include "app/transport_player.h"
#include "base/named_mutex.h"

namespace tolvane {

void SeekPressRun::pressTo(TransportPlayer &player, double targetSec) {
    bool isFirstPress = false;
    {
        NamedLockGuard lock(seekingMutex);
        isFirstPress = countPlayValue == 0;
    }
    if (isFirstPress) {
        const float rate = float(player.rate());
        player.setRate(0.0);
        NamedLockGuard lock(seekingMutex);
        prevRateValue = rate;
    }
    player.seekShowingOneFrame(targetSec);
    NamedLockGuard lock(seekingMutex);
    ++countPlayValue;
}

bool SeekPressRun::restorePlayRate(TransportPlayer &player) {
    float rate = 0.0f;
    {
        NamedLockGuard lock(seekingMutex);
        if (countPlayValue == 0 || --countPlayValue != 0) {
            return false;
        }
        rate = prevRateValue;
    }
    player.resumeAfterSeeking(rate);
    return true;
}

void SeekPressRun::forgetRun() {
    NamedLockGuard lock(seekingMutex);
    countPlayValue = 0;
    prevRateValue = 0.0f;
}

unsigned SeekPressRun::countPlay() const {
    NamedLockGuard lock(seekingMutex);
    return countPlayValue;
}

float SeekPressRun::prevRate() const {
    NamedLockGuard lock(seekingMutex);
    return prevRateValue;
}

}  // namespace tolvane
