#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "engine/audio/sample_conversion.h"

namespace tolvane {

// What the engine asks of the output device.
struct AudioDeviceRequest {
    int sampleRate = 48000;
    int channels = 2;
    SampleType type = SampleType::Int16;
    int framesPerCallback = 1920;
};

// The output device that pulls the engine's samples: an SDL audio device, or
// a silent one when there is no sound to be had. Either way it is paused at
// first, and its callback asks for `framesPerCallback()` frames at a time at
// the pace a sound card would.
//
// The silent device is used for one file when no real device opens for it
// (with a warning; the next open tries the real device again) and when the
// user asks for no sound with SDL_AUDIODRIVER=dummy. It is our own
// rather than SDL's "dummy" driver: that driver rounds the period up to a
// power of two and sleeps whole milliseconds, so its clock runs 5% fast at
// 512 frames and 25% slow at 768. The silent device keeps the period asked
// for, on deadlines taken from the monotonic clock. A driver the user chose
// through SDL_AUDIODRIVER is kept and its failure reported.
//
// Callbacks run on the device's own thread, SDL's with the device's lock
// held, so a call that takes that lock (pause, close) must not be made while
// holding a lock the callback waits for.
//
// Thread-safety: open and destroy on one thread; applyPauseById from any.
class AudioOutputDevice {
public:
    using Callback = void (*)(void *context, std::uint8_t *stream, int bytes);

    // Null, with the reason in `errorText`, when no device opens. The device
    // plays exactly the channels, type and rate asked for; the sound server
    // converts them for the speakers.
    static std::unique_ptr<AudioOutputDevice> open(const AudioDeviceRequest &request,
                                                   Callback callback, void *context,
                                                   QString *errorText);

    // How the real device is opened: SDL's unless a test put another in its
    // place. Returns the opener it replaces; null puts SDL's back.
    using RealDeviceOpener = std::unique_ptr<AudioOutputDevice> (*)(
        const AudioDeviceRequest &request, Callback callback, void *context, QString *errorText);
    static RealDeviceOpener replaceRealDeviceOpenerForTesting(RealDeviceOpener opener);
    // The silent device whatever sound card there is: the clock of a video
    // without sound, and the opener of tests.
    static std::unique_ptr<AudioOutputDevice> openSilent(const AudioDeviceRequest &request,
                                                         Callback callback, void *context);
    // Closing waits for a callback in progress to return.
    virtual ~AudioOutputDevice() = default;
    AudioOutputDevice(const AudioOutputDevice &) = delete;
    AudioOutputDevice &operator=(const AudioOutputDevice &) = delete;

    std::uint32_t id() const { return id_; }
    int channels() const { return channels_; }
    int framesPerCallback() const { return framesPerCallback_; }
    // SDL's driver ("pulseaudio", "alsa", ...) or "silent".
    virtual QString driverName() const = 0;

    // Pauses or resumes the device with the given id; an id no longer open
    // is ignored. `shouldPause` is asked under the device's pause lock, so
    // that concurrent callers leave the device in the state the last answer
    // gives.
    static void applyPauseById(std::uint32_t id, bool (*shouldPause)(void *), void *context);

protected:
    AudioOutputDevice(std::uint32_t id, int channels, int framesPerCallback)
        : id_(id), channels_(channels), framesPerCallback_(framesPerCallback) {}

private:
    std::uint32_t id_;
    int channels_;
    int framesPerCallback_;
};

}  // namespace tolvane
