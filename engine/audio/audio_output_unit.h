#pragma once

#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>

#include "base/named_mutex.h"
#include "engine/audio/audio_output_device.h"

namespace tolvane {

// The open output device with what its render callback needs of it: the
// running flag, the volume, the frames of one request and the bytes of one
// frame of the device's stream.
//
// Thread-safety: install() and destroy() run on the main thread, never
// while holding a lock the callback takes (closing waits for a callback in
// progress). start() and stop() may run on any thread, the callback's
// included; startStopMutex guards the running flag's changes, and pausing
// the device happens outside it. Every getter is an atomic read.
class AudioOutputUnit {
public:
    AudioOutputUnit() = default;
    AudioOutputUnit(const AudioOutputUnit &) = delete;
    AudioOutputUnit &operator=(const AudioOutputUnit &) = delete;
    ~AudioOutputUnit() { destroy(); }

    // Takes `device` over, paused, replacing none (destroy() first).
    void install(std::unique_ptr<AudioOutputDevice> device, int framesPerCallback, int frameBytes);
    void destroy();
    // Idempotent.
    void start();
    void stop();

    bool isRunning() const { return isRunningOutputUnitValue.load(); }
    bool hasDevice() const { return outputDeviceId.load() != 0; }
    // Main thread.
    QString driverName() const { return theOutputUnit ? theOutputUnit->driverName() : QString(); }
    int framesPerCallback() const { return outputFramesPerCallbackValue.load(); }
    int frameBytes() const { return outputFrameBytes.load(); }

    // Linear gain (1.0 unchanged); ignored while no device is installed.
    void setVolume(float volume);
    float volume() const { return outputVolume.load(); }

private:
    void syncDevicePauseWithRunningFlag();

    mutable NamedRecursiveMutex startStopMutex{"startStopMutex"};
    std::unique_ptr<AudioOutputDevice> theOutputUnit;  // main thread only
    // The open device's id for the pause calls made from any thread; 0 when none.
    std::atomic<std::uint32_t> outputDeviceId{0};
    std::atomic<int> outputFramesPerCallbackValue{0};
    std::atomic<int> outputFrameBytes{0};  // of one interleaved frame in the device's stream
    std::atomic<bool> isRunningOutputUnitValue{false};  // written under startStopMutex
    std::atomic<float> outputVolume{1.0f};
};

}  // namespace tolvane
