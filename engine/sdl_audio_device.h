#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "engine/sample_conversion.h"

namespace tolvane {

// What the engine asks of the output device.
struct AudioDeviceRequest {
    int sampleRate = 48000;
    int channels = 2;
    SampleType type = SampleType::Int16;
    int framesPerCallback = 1920;
};

// An open SDL audio output device, paused at first. Its callback runs on
// SDL's audio thread with the device's own lock held, so any call that takes
// that lock (pause, close) must not be made while holding a lock the callback
// waits for.
//
// When no real device opens, SDL's audio is re-initialised with its "dummy"
// driver, which paces the callback in real time without sound, and one
// warning is logged; a driver chosen by the user through SDL_AUDIODRIVER is
// kept and its failure reported.
//
// Thread-safety: open and destroy on one thread; setPausedById from any.
class SdlAudioDevice {
public:
    using Callback = void (*)(void *context, std::uint8_t *stream, int bytes);

    // Null, with the reason in `errorText`, when no device opens.
    static std::unique_ptr<SdlAudioDevice> open(const AudioDeviceRequest &request,
                                                Callback callback, void *context,
                                                QString *errorText);
    ~SdlAudioDevice();
    SdlAudioDevice(const SdlAudioDevice &) = delete;
    SdlAudioDevice &operator=(const SdlAudioDevice &) = delete;

    std::uint32_t id() const { return id_; }
    int channels() const { return channels_; }
    int framesPerCallback() const { return framesPerCallback_; }
    // The driver SDL's audio runs on ("pulseaudio", "alsa", "dummy", ...).
    static QString currentDriverName();

    // Pauses or resumes the device with the given id; an id no longer open
    // is ignored. `shouldPause` is asked under the device's lock, so that
    // concurrent callers leave the device in the state the last answer gives.
    static void applyPauseById(std::uint32_t id, bool (*shouldPause)(void *), void *context);

private:
    SdlAudioDevice(std::uint32_t id, int channels, int framesPerCallback)
        : id_(id), channels_(channels), framesPerCallback_(framesPerCallback) {}

    std::uint32_t id_;
    int channels_;
    int framesPerCallback_;
};

}  // namespace tolvane
