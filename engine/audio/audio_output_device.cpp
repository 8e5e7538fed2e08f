// The output devices behind the engine's pull-model audio: SDL's, and a
// silent one paced by the monotonic clock.

#include "engine/audio/audio_output_device.h"

#include <SDL.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "base/log.h"

namespace tolvane {

namespace {

// --- SDL

// Guards SDL's audio subsystem set-up and the choice of opener.
std::mutex audioSubsystemMutex;

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

QString userChosenAudioDriver() {
    const char *driver = std::getenv("SDL_AUDIODRIVER");
    return driver != nullptr ? QString::fromUtf8(driver).trimmed() : QString();
}

class SdlOutputDevice final : public AudioOutputDevice {
public:
    SdlOutputDevice(SDL_AudioDeviceID id, int channels, int framesPerCallback)
        : AudioOutputDevice(id, channels, framesPerCallback) {}
    ~SdlOutputDevice() override {
        SDL_CloseAudioDevice(id());
        std::lock_guard lock(audioSubsystemMutex);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
    QString driverName() const override {
        const char *name = SDL_GetCurrentAudioDriver();
        return name != nullptr ? QString::fromUtf8(name) : QString();
    }
};

// Expects audioSubsystemMutex held. Leaves the subsystem initialised only
// when a device opened.
std::unique_ptr<AudioOutputDevice> openSdlDevice(const AudioDeviceRequest &request,
                                                 AudioOutputDevice::Callback callback,
                                                 void *context, QString *errorText) {
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0) {
        *errorText = QString::fromUtf8(SDL_GetError());
        return nullptr;
    }
    SDL_AudioSpec desired{};
    desired.freq = request.sampleRate;
    desired.format = sdlFormatFor(request.type);
    desired.channels = Uint8(request.channels);
    desired.samples = Uint16(request.framesPerCallback);
    desired.callback = callback;
    desired.userdata = context;
    SDL_AudioSpec obtained{};
    // The channels asked for are kept (SDL converts for hardware that has
    // others): the engine has mixed them for stereo, or gives mono that the
    // sound server plays on both speakers. A driver that cannot keep the
    // period asked for gets its own, so that its callbacks stay evenly spaced
    // rather than bunched by SDL's re-buffering.
    const SDL_AudioDeviceID id =
        SDL_OpenAudioDevice(nullptr, 0, &desired, &obtained, SDL_AUDIO_ALLOW_SAMPLES_CHANGE);
    if (id == 0) {
        *errorText = QString::fromUtf8(SDL_GetError());
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        return nullptr;
    }
    return std::make_unique<SdlOutputDevice>(id, obtained.channels, obtained.samples);
}

// --- Silence

// Ids of silent devices have the top bit set, SDL's never do.
constexpr std::uint32_t kSilentIdBit = 0x8000'0000u;

// The thread that asks for frames as a sound card would, and throws them away.
class SilentPacer {
public:
    SilentPacer(const AudioDeviceRequest &request, AudioOutputDevice::Callback callback,
                void *context)
        : sampleRate_(request.sampleRate),
          framesPerCallback_(request.framesPerCallback),
          callback_(callback),
          context_(context),
          stream_(std::size_t(request.framesPerCallback) * std::size_t(request.channels) *
                  std::size_t(bytesOfSampleType(request.type))) {
        thread_ = std::thread([this] { run(); });
    }
    ~SilentPacer() { stop(); }
    SilentPacer(const SilentPacer &) = delete;
    SilentPacer &operator=(const SilentPacer &) = delete;

    // Waits for a callback in progress.
    void stop() {
        {
            std::lock_guard lock(mutex_);
            isStopping_ = true;
        }
        wake_.notify_all();
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    void applyPause(bool (*shouldPause)(void *), void *context) {
        {
            std::lock_guard lock(mutex_);
            isPaused_ = shouldPause(context);
        }
        wake_.notify_all();
    }

private:
    using Clock = std::chrono::steady_clock;

    void run() {
        // Deadlines count whole frames from an anchor, so the pace does not
        // drift with rounding however long playback runs.
        const auto period = std::chrono::duration_cast<Clock::duration>(
            std::chrono::duration<double>(double(framesPerCallback_) / double(sampleRate_)));
        Clock::time_point anchor = Clock::now();
        std::int64_t framesSinceAnchor = 0;
        std::unique_lock lock(mutex_);
        while (!isStopping_) {
            if (isPaused_) {
                wake_.wait(lock, [this] { return !isPaused_ || isStopping_; });
                if (isStopping_) {
                    break;
                }
                anchor = Clock::now();
                framesSinceAnchor = 0;
            }
            // Unlocked, so that the callback may pause this device itself.
            lock.unlock();
            callback_(context_, stream_.data(), int(stream_.size()));
            lock.lock();

            framesSinceAnchor += framesPerCallback_;
            const auto due =
                anchor + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(
                             double(framesSinceAnchor) / double(sampleRate_)));
            if (Clock::now() > due + period) {
                // More than a period behind (the machine was busy): a sound
                // card would have played silence in between rather than ask
                // for the missed periods at once, so start counting afresh.
                anchor = Clock::now();
                framesSinceAnchor = 0;
                continue;
            }
            wake_.wait_until(lock, due, [this] { return isStopping_.load(); });
        }
    }

    const int sampleRate_;
    const int framesPerCallback_;
    const AudioOutputDevice::Callback callback_;
    void *const context_;
    std::vector<std::uint8_t> stream_;  // used by the thread only
    std::mutex mutex_;
    // A plain flag rather than std::jthread's stop token: libstdc++ 12's
    // stop_callback reads the requesting thread's id unlocked, which
    // ThreadSanitizer reports at every stop.
    std::condition_variable wake_;
    // Written under mutex_ and then woken. Atomic as well: ThreadSanitizer
    // reported the pacer's reads after a wait as racing with those writes.
    std::atomic<bool> isPaused_{true};
    std::atomic<bool> isStopping_{false};
    std::thread thread_;  // last, so that it starts after everything it uses
};

// Silent devices by id, for the pause calls, which may race with closing.
std::mutex silentRegistryMutex;
std::map<std::uint32_t, std::shared_ptr<SilentPacer>> silentPacers;  // guarded by the above
std::uint32_t lastSilentSerial = 0;                                  // guarded by the above

class SilentOutputDevice final : public AudioOutputDevice {
public:
    SilentOutputDevice(std::uint32_t id, const AudioDeviceRequest &request,
                       std::shared_ptr<SilentPacer> pacer)
        : AudioOutputDevice(id, request.channels, request.framesPerCallback),
          pacer_(std::move(pacer)) {}
    ~SilentOutputDevice() override {
        {
            std::lock_guard lock(silentRegistryMutex);
            silentPacers.erase(id());
        }
        pacer_->stop();
    }
    QString driverName() const override { return QStringLiteral("silent"); }

private:
    std::shared_ptr<SilentPacer> pacer_;
};

AudioOutputDevice::RealDeviceOpener realDeviceOpener =
    &openSdlDevice;  // guarded by audioSubsystemMutex

std::unique_ptr<AudioOutputDevice> openSilentDevice(const AudioDeviceRequest &request,
                                                    AudioOutputDevice::Callback callback,
                                                    void *context) {
    auto pacer = std::make_shared<SilentPacer>(request, callback, context);
    std::uint32_t id = 0;
    {
        std::lock_guard lock(silentRegistryMutex);
        lastSilentSerial = (lastSilentSerial + 1) & ~kSilentIdBit;
        id = kSilentIdBit | lastSilentSerial;
        silentPacers[id] = pacer;
    }
    return std::make_unique<SilentOutputDevice>(id, request, std::move(pacer));
}

}  // namespace

std::unique_ptr<AudioOutputDevice> AudioOutputDevice::open(const AudioDeviceRequest &request,
                                                           Callback callback, void *context,
                                                           QString *errorText) {
    if (request.sampleRate <= 0 || request.channels <= 0 || request.framesPerCallback <= 0) {
        *errorText = QStringLiteral("unusable audio format");
        return nullptr;
    }
    const QString chosenDriver = userChosenAudioDriver();
    if (chosenDriver == QLatin1String("dummy")) {
        return openSilentDevice(request, callback, context);
    }
    std::lock_guard lock(audioSubsystemMutex);
    // Tried at every open: a device that was busy or unplugged for one file
    // may be back for the next.
    std::unique_ptr<AudioOutputDevice> device =
        realDeviceOpener(request, callback, context, errorText);
    if (!device && chosenDriver.isEmpty()) {
        logWarning(
            QStringLiteral("no audio device could be opened (%1); playing this file without sound")
                .arg(*errorText));
        device = openSilentDevice(request, callback, context);
    }
    return device;
}

AudioOutputDevice::RealDeviceOpener AudioOutputDevice::replaceRealDeviceOpenerForTesting(
    RealDeviceOpener opener) {
    std::lock_guard lock(audioSubsystemMutex);
    return std::exchange(realDeviceOpener, opener != nullptr ? opener : &openSdlDevice);
}

std::unique_ptr<AudioOutputDevice> AudioOutputDevice::openSilent(const AudioDeviceRequest &request,
                                                                 Callback callback, void *context) {
    return openSilentDevice(request, callback, context);
}

void AudioOutputDevice::applyPauseById(std::uint32_t id, bool (*shouldPause)(void *),
                                       void *context) {
    if (id == 0) {
        return;
    }
    if ((id & kSilentIdBit) != 0) {
        std::shared_ptr<SilentPacer> pacer;
        {
            std::lock_guard lock(silentRegistryMutex);
            const auto found = silentPacers.find(id);
            if (found == silentPacers.end()) {
                return;
            }
            pacer = found->second;
        }
        pacer->applyPause(shouldPause, context);
        return;
    }
    SDL_LockAudioDevice(id);
    SDL_PauseAudioDevice(id, shouldPause(context) ? 1 : 0);
    SDL_UnlockAudioDevice(id);
}

}  // namespace tolvane
