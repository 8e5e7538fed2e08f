// The SDL audio device behind the engine's pull-model output.

#include "engine/sdl_audio_device.h"

#include <SDL.h>

#include <cstdlib>
#include <mutex>

#include "base/log.h"

namespace tolvane {

namespace {

// Guards SDL's audio subsystem set-up and the one-way fall-back to "dummy".
std::mutex sdlAudioSubsystemMutex;
bool hasFallenBackToDummyDriver = false;  // guarded by sdlAudioSubsystemMutex

SDL_AudioFormat sdlFormatFor(SampleType type) {
    switch (type) {
        case SampleType::Int32:
            return AUDIO_S32SYS;
        case SampleType::Float32:
            return AUDIO_F32SYS;
        case SampleType::Int16:
            break;
    }
    return AUDIO_S16SYS;
}

bool hasUserChosenAudioDriver() {
    const char *driver = std::getenv("SDL_AUDIODRIVER");
    return driver != nullptr && *driver != '\0';
}

// Expects sdlAudioSubsystemMutex held. Leaves the subsystem initialised only
// when a device opened.
SDL_AudioDeviceID openWithCurrentDriver(const AudioDeviceRequest &request,
                                        SdlAudioDevice::Callback callback, void *context,
                                        SDL_AudioSpec *obtained, QString *errorText) {
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
        *errorText = QString::fromUtf8(SDL_GetError());
        return 0;
    }
    SDL_AudioSpec desired{};
    desired.freq = request.sampleRate;
    desired.format = sdlFormatFor(request.type);
    desired.channels = Uint8(request.channels);
    desired.samples = Uint16(request.framesPerCallback);
    desired.callback = callback;
    desired.userdata = context;
    // A device with fewer or more channels is taken as it is: the engine
    // then mixes down or copies channel by channel.
    const SDL_AudioDeviceID id =
        SDL_OpenAudioDevice(nullptr, 0, &desired, obtained, SDL_AUDIO_ALLOW_CHANNELS_CHANGE);
    if (id == 0) {
        *errorText = QString::fromUtf8(SDL_GetError());
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
    return id;
}

}  // namespace

std::unique_ptr<SdlAudioDevice> SdlAudioDevice::open(const AudioDeviceRequest &request,
                                                     Callback callback, void *context,
                                                     QString *errorText) {
    std::lock_guard lock(sdlAudioSubsystemMutex);
    SDL_AudioSpec obtained{};
    SDL_AudioDeviceID id = openWithCurrentDriver(request, callback, context, &obtained, errorText);
    if (id == 0 && !hasUserChosenAudioDriver() && !hasFallenBackToDummyDriver) {
        hasFallenBackToDummyDriver = true;
        logWarning(QStringLiteral("no audio device could be opened (%1); playing without sound "
                                  "through SDL's dummy driver")
                       .arg(*errorText));
        SDL_SetHint(SDL_HINT_AUDIODRIVER, "dummy");
        id = openWithCurrentDriver(request, callback, context, &obtained, errorText);
    }
    if (id == 0) {
        return nullptr;
    }
    return std::unique_ptr<SdlAudioDevice>(
        new SdlAudioDevice(id, obtained.channels, obtained.samples));
}

SdlAudioDevice::~SdlAudioDevice() {
    // Waits for a callback in progress to return.
    SDL_CloseAudioDevice(id_);
    std::lock_guard lock(sdlAudioSubsystemMutex);
    SDL_QuitSubSystem(SDL_INIT_AUDIO);
}

QString SdlAudioDevice::currentDriverName() {
    const char *name = SDL_GetCurrentAudioDriver();
    return name != nullptr ? QString::fromUtf8(name) : QString();
}

void SdlAudioDevice::applyPauseById(std::uint32_t id, bool (*shouldPause)(void *), void *context) {
    if (id == 0) {
        return;
    }
    SDL_LockAudioDevice(id);
    SDL_PauseAudioDevice(id, shouldPause(context) ? 1 : 0);
    SDL_UnlockAudioDevice(id);
}

}  // namespace tolvane
