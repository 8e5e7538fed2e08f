#include "app/transport_player.h"

#include "app/native_mode_player.h"
#include "app/transport_rules.h"
#include "base/named_mutex.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

double EngineTransportPlayer::rate() const {
    NamedLockGuard lock(movieMutex);
    return engine.rate();
}

void EngineTransportPlayer::setRate(double rate) {
    NamedLockGuard lock(movieMutex);
    engine.setRate(rate);
}

double EngineTransportPlayer::positionSec() const {
    NamedLockGuard lock(movieMutex);
    return shownPositionSec(engine.currentTimeSec(), engine.startTimeSec());
}

double EngineTransportPlayer::durationSec() const {
    NamedLockGuard lock(movieMutex);
    return engine.fileDurationSec();
}

void EngineTransportPlayer::seekShowingOneFrame(double targetSec) {
    NamedLockGuard lock(movieMutex);
    engine.setCurrentTimeSec(targetSec, true);
}

void EngineTransportPlayer::resumeAfterSeeking(double rate) {
    NamedLockGuard lock(movieMutex);
    engine.restartTimers();
    if (rate != 0.0) {
        engine.setRate(rate);
    }
}

void EngineTransportPlayer::rewind() {
    NamedLockGuard lock(movieMutex);
    engine.setCurrentTimeSec(0.0, false);
    engine.restartTimers();
}

void EngineTransportPlayer::setVolume(float volume) {
    NamedLockGuard lock(movieMutex);
    engine.setVolume(volume);
}

double NativeTransportPlayer::rate() const {
    NamedLockGuard lock(movieMutex);
    return player.rate();
}

void NativeTransportPlayer::setRate(double rate) {
    NamedLockGuard lock(movieMutex);
    player.setRate(rate);
}

double NativeTransportPlayer::positionSec() const {
    NamedLockGuard lock(movieMutex);
    return player.currentTimeSec();
}

double NativeTransportPlayer::durationSec() const {
    NamedLockGuard lock(movieMutex);
    return player.durationSec();
}

// The platform player shows the picture of a paused seek by itself.
void NativeTransportPlayer::seekShowingOneFrame(double targetSec) {
    NamedLockGuard lock(movieMutex);
    player.seekToTime(targetSec);
}

void NativeTransportPlayer::resumeAfterSeeking(double rate) {
    if (rate == 0.0) {
        return;
    }
    NamedLockGuard lock(movieMutex);
    player.setRate(rate);
}

void NativeTransportPlayer::rewind() {
    NamedLockGuard lock(movieMutex);
    player.seekToTime(0.0);
}

void NativeTransportPlayer::setVolume(float volume) {
    NamedLockGuard lock(movieMutex);
    player.setVolume(volume);
}

}  // namespace tolvane
