// The audio output: the output device, its render callback (which advances the
// played-sample count, the engine's clock), start, stop and volume.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/audio/audio_output_device.h"
#include "engine/clock/clock_start_rules.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

namespace {

// The clock advances one callback at a time, so a picture can be shown up to
// one step after it is due. The step is a little longer than a 60 Hz refresh:
// then no refresh sees two steps at once, and the error stays under one step,
// that is under one refresh. A step just shorter lets a refresh now and then
// see two steps, twice the error; a step much longer is a bigger error itself.
constexpr int kCallbacksPerSecond = 59;
constexpr int kMinFramesPerCallback = 128;
constexpr int kMaxFramesPerCallback = 4096;

int framesPerCallbackFor(int sampleRate) {
    return std::clamp(sampleRate / kCallbacksPerSecond, kMinFramesPerCallback,
                      kMaxFramesPerCallback);
}

// The sample lists as the pool sees them.
class SampleListsNodeSource final : public SampleNodeSource {
public:
    explicit SampleListsNodeSource(SampleLists &lists) : lists_(lists) {}
    void resetReadCursor(int channel) override { lists_.channel(channel).resetCursor(); }
    const std::vector<std::uint8_t> *readNode(int channel) override {
        const SampleNode *node = lists_.channel(channel).read();
        return node != nullptr ? &node->data : nullptr;
    }
    void removeReadNodes(int channel) override { lists_.channel(channel).removeThroughCursor(); }

private:
    SampleLists &lists_;
};

void audioDeviceCallback(void *context, std::uint8_t *stream, int bytes);

}  // namespace

bool MyCAOpenGLLayer::setDefaultOutputAUWithVolume(float volume) {
    return resultAtOperationBoundary(
        "sdoauwv",
        [&] {
            if (!aCodecCtx) {
                return videoStreamIdx >= 0 && setSilentOutputForVideoWithoutSound(volume);
            }
            destroyOutputUnit();
            const AVCodecContext &codec = *aCodecCtx;
            const int sourceChannels = codec.ch_layout.nb_channels;
            const bool isPlanar = isPlanarSampleFormat(codec.sample_fmt);
            const SampleType type = sampleTypeFor(codec.sample_fmt);

            AudioDeviceRequest request;
            request.sampleRate = codec.sample_rate;
            // Two or more channels are mixed for stereo through the mix table, so
            // that each reaches the speaker it belongs to whatever the sound
            // server would make of them; mono stays mono, for both speakers.
            request.channels = sourceChannels == 1 ? 1 : 2;
            request.type = type;
            request.framesPerCallback = framesPerCallbackFor(codec.sample_rate);
            QString errorText;
            std::unique_ptr<AudioOutputDevice> device =
                AudioOutputDevice::open(request, &audioDeviceCallback, this, &errorText);
            if (!device) {
                logWarning(QStringLiteral("cannot open the audio output: %1").arg(errorText));
                return false;
            }

            const int deviceChannels = device->channels() > 0 ? device->channels() : 2;
            const int frames = std::min(device->framesPerCallback(), kMaxFramesPerCallback);
            {
                NamedLockGuard lock(samplePoolMutex);
                audioOutputChannelsValue = deviceChannels;
                renderLayout =
                    SourceLayout{sourceChannels, isPlanar, type, isQuadValue, deviceChannels};
                outputDeviceChannels = deviceChannels;
                const int poolBuffers = isPlanar ? std::min(sourceChannels, kMaxSampleChannels) : 1;
                samplePool.allocate(poolBuffers);
                const int needPerBuffer =
                    audioBytesPerChannelValue * frames * (isPlanar ? 1 : sourceChannels);
                gatherScratch.assign(std::size_t(poolBuffers) * std::size_t(needPerBuffer), 0);
                renderScratch.assign(std::size_t(kMaxSampleChannels) * std::size_t(frames) *
                                         std::size_t(bytesOfSampleType(type)),
                                     0);
            }
            output.install(std::move(device), frames, deviceChannels * bytesOfSampleType(type));
            setVolume(volume);
            return true;
        },
        [](std::string_view) { return false; });
}

bool MyCAOpenGLLayer::setSilentOutputForVideoWithoutSound(float volume) {
    destroyOutputUnit();
    AudioDeviceRequest request;
    request.sampleRate = kSilentClockSampleRate;
    request.framesPerCallback = framesPerCallbackFor(kSilentClockSampleRate);
    // Its callback finds no samples, ever, and advances the clock by the idle
    // step over the pictures; nothing is mixed, so no pool is needed.
    std::unique_ptr<AudioOutputDevice> device =
        AudioOutputDevice::openSilent(request, &audioDeviceCallback, this);
    {
        NamedLockGuard lock(samplePoolMutex);
        samplePool.release();
        gatherScratch.clear();
        renderScratch.clear();
    }
    const int frames = device->framesPerCallback();
    const int frameBytes = device->channels() * bytesOfSampleType(request.type);
    output.install(std::move(device), frames, frameBytes);
    setVolume(volume);
    return true;
}

bool MyCAOpenGLLayer::setDefaultOutputAndTimersBeforeStartWithVolume(float volume) {
    if (!setDefaultOutputAUWithVolume(volume)) {
        return false;
    }
    startPacketThread();
    startPixelThread();
    startSampleThread();
    isAlsoHaveMovieValue = true;
    return true;
}

void MyCAOpenGLLayer::setVolume(float volume) { output.setVolume(volume); }

void MyCAOpenGLLayer::startOutputUnit() { output.start(); }

void MyCAOpenGLLayer::stopOutputUnit() { output.stop(); }

void MyCAOpenGLLayer::destroyOutputUnit() { output.destroy(); }

namespace {

void audioDeviceCallback(void *context, std::uint8_t *stream, int bytes) {
    auto *engine = static_cast<MyCAOpenGLLayer *>(context);
    engine->callbackUpdateAudioFrameInNumberFrames(0, stream, bytes);
}

}  // namespace

void MyCAOpenGLLayer::callbackUpdateAudioFrameInNumberFrames(std::uint32_t numberFrames,
                                                             std::uint8_t *stream,
                                                             int streamBytes) {
    // Silence unless samples are rendered: zero bytes are silence in every
    // sample type the device is opened with.
    std::memset(stream, 0, std::size_t(std::max(streamBytes, 0)));
    if (!output.isRunning()) {
        return;
    }
    const int frameBytes = output.frameBytes();
    const int capacity = output.framesPerCallback();
    if (frameBytes <= 0 || capacity <= 0) {
        return;
    }
    if (numberFrames == 0) {
        numberFrames = std::uint32_t(streamBytes / frameBytes);
    }
    numberFrames = std::min<std::uint32_t>(numberFrames, std::uint32_t(streamBytes / frameBytes));
    if (isClockHeldForFirstPicture(numberFrames)) {
        return;
    }

    // The pool serves at most `capacity` frames at once; devices ask for
    // exactly that, so this loops once unless a driver chose a longer period.
    for (std::uint32_t done = 0; done < numberFrames;) {
        const auto chunk = std::min<std::uint32_t>(numberFrames - done, std::uint32_t(capacity));
        if (!renderAudioFrames(chunk, stream + std::size_t(done) * std::size_t(frameBytes))) {
            return;
        }
        done += chunk;
    }
}

bool MyCAOpenGLLayer::renderAudioFrames(std::uint32_t numberFrames, std::uint8_t *interleavedOut) {
    {
        NamedLockGuard lock(enoughMutex);
        if (!isEnoughSampleValue) {
            idleStepOfAudioCallbackWithEnoughMutexHeld(numberFrames);
            return false;
        }
    }
    if (sampleLists.channel(0).count() == 0) {
        NamedLockGuard lock(enoughMutex);
        isEnoughSampleValue = false;
        idleStepOfAudioCallbackWithEnoughMutexHeld(numberFrames);
        return false;
    }

    NamedLockGuard poolLock(samplePoolMutex);
    const SourceLayout &layout = renderLayout;
    const int bufferCount = samplePool.bufferCount();
    const int need = bytesOfSampleType(layout.type) * int(numberFrames) *
                     (layout.isPlanar ? 1 : std::max(layout.channels, 1));
    const std::size_t scratchStride = gatherScratch.size() / std::size_t(std::max(bufferCount, 1));
    if (bufferCount == 0 || std::size_t(need) > scratchStride) {
        return false;
    }
    std::array<std::uint8_t *, kMaxSampleChannels> scratch{};
    for (int k = 0; k < bufferCount; ++k) {
        scratch[std::size_t(k)] = gatherScratch.data() + std::size_t(k) * scratchStride;
    }
    SampleListsNodeSource source(sampleLists);
    if (!samplePool.gather(need, std::span(scratch.data(), std::size_t(bufferCount)), source)) {
        NamedLockGuard lock(enoughMutex);
        isEnoughSampleValue = false;
        idleStepOfAudioCallbackWithEnoughMutexHeld(numberFrames);
        return false;
    }

    const int rendered = renderedChannelCount(layout);
    const std::size_t renderStride = renderScratch.size() / kMaxSampleChannels;
    std::array<std::uint8_t *, kMaxSampleChannels> channelBuffers{};
    for (int k = 0; k < rendered; ++k) {
        channelBuffers[std::size_t(k)] = renderScratch.data() + std::size_t(k) * renderStride;
    }
    const std::array<const std::uint8_t *, kMaxSampleChannels> inputs{
        scratch[0], scratch[1], scratch[2], scratch[3],
        scratch[4], scratch[5], scratch[6], scratch[7]};
    convertSamplesToChannelBuffers(layout, std::span(inputs.data(), std::size_t(bufferCount)),
                                   int(numberFrames),
                                   std::span(channelBuffers.data(), std::size_t(rendered)));
    const std::array<const std::uint8_t *, kMaxSampleChannels> renderedBuffers{
        channelBuffers[0], channelBuffers[1], channelBuffers[2], channelBuffers[3],
        channelBuffers[4], channelBuffers[5], channelBuffers[6], channelBuffers[7]};
    interleaveChannelBuffersWithGain(
        layout.type, std::span(renderedBuffers.data(), std::size_t(rendered)), int(numberFrames),
        output.volume(), outputDeviceChannels, interleavedOut);

    sampleClock.addOutputtedSamples(numberFrames);
    return true;
}

bool MyCAOpenGLLayer::isClockHeldForFirstPicture(std::uint32_t numberFrames) {
    if (isPictureOnScreen()) {
        return false;
    }
    ClockHoldInputs inputs;
    inputs.hasVideo = videoStreamIdx >= 0;
    inputs.hasPicturesLeftToShow = hasPicturesLeftToShow();
    inputs.framesHeld = framesHeldForFirstPicture.load();
    inputs.sampleRate = clockSampleRate();
    if (!shouldHoldClockForFirstPicture(inputs)) {
        return false;
    }
    framesHeldForFirstPicture += numberFrames;
    return true;
}

void MyCAOpenGLLayer::idleStepOfAudioCallbackWithEnoughMutexHeld(std::uint32_t numberFrames) {
    if (isPlaybackAtItsEnd()) {
        // Playback has reached its end.
        stopOutputUnit();
        return;
    }
    // The audio has ended but pictures remain: the clock runs on over them.
    // Audio that is merely late (packets still queued) holds the clock;
    // packets past the end of the audio, which are never decoded, do not.
    // Pictures still to come after the file's last audio (a damaged or cut
    // file may hold no picture that is already due) are waited for too.
    const bool isAudioOver = packets.audioCount() == 0 || isAudioDecodingAtEnd.load();
    const bool isPacketStreamOver = hasReadToTheEnd.load() && packets.audioCount() == 0;
    if (sampleLists.channel(0).count() == 0 && isAudioOver &&
        (isPictureOnScreen() || isPacketStreamOver)) {
        sampleClock.addOutputtedSamples(numberFrames);
    }
}

}  // namespace tolvane
