#include "engine/audio/audio_output_unit.h"

#include <algorithm>
#include <cmath>

namespace tolvane {

void AudioOutputUnit::install(std::unique_ptr<AudioOutputDevice> device, int framesPerCallback,
                              int frameBytes) {
    outputFramesPerCallbackValue = framesPerCallback;
    outputFrameBytes = frameBytes;
    theOutputUnit = std::move(device);
    outputDeviceId = theOutputUnit->id();
}

void AudioOutputUnit::destroy() {
    {
        NamedLockGuard lock(startStopMutex);
        isRunningOutputUnitValue = false;
    }
    outputDeviceId = 0;
    // Closing waits for a callback in progress; no lock the callback takes is held here.
    theOutputUnit.reset();
    outputFramesPerCallbackValue = 0;
}

void AudioOutputUnit::start() {
    {
        NamedLockGuard lock(startStopMutex);
        if (isRunningOutputUnitValue || outputDeviceId.load() == 0) {
            return;
        }
        isRunningOutputUnitValue = true;
    }
    syncDevicePauseWithRunningFlag();
}

void AudioOutputUnit::stop() {
    {
        NamedLockGuard lock(startStopMutex);
        if (!isRunningOutputUnitValue) {
            return;
        }
        isRunningOutputUnitValue = false;
    }
    syncDevicePauseWithRunningFlag();
}

void AudioOutputUnit::syncDevicePauseWithRunningFlag() {
    // Outside startStopMutex: pausing waits for the device's lock, which its
    // callback holds while it may wait for startStopMutex. The callback checks
    // the flag itself, so a device left running a moment too long plays silence.
    AudioOutputDevice::applyPauseById(
        outputDeviceId.load(),
        [](void *unit) {
            return !static_cast<AudioOutputUnit *>(unit)->isRunningOutputUnitValue.load();
        },
        this);
}

void AudioOutputUnit::setVolume(float volume) {
    if (!theOutputUnit || !std::isfinite(volume)) {
        return;
    }
    outputVolume = std::max(volume, 0.0f);
}

}  // namespace tolvane
