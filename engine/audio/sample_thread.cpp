// The sample thread: decodes the audio packets into the per-channel sample
// lists and counts the samples read, one half of the audio clock.

#include <algorithm>

#include "base/log.h"
#include "engine/audio/audio_decoding_rules.h"
#include "engine/clock/stream_time.h"
#include "engine/demux/media_end.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/decoder_feed.h"

namespace tolvane {

namespace {

constexpr std::int64_t kLargeFrameBytes = 383999;
constexpr int kQueuedFramesOfLargeFrames = 50;
constexpr int kQueuedFrames = 80;

}  // namespace

int sampleQueueLimitFor(const SampleQueueLimitInputs &inputs) {
    if (inputs.frameSize <= 0) {
        return 0;
    }
    const int cap = std::int64_t(inputs.frameSize) * inputs.channels * inputs.audioBytesPerChannel >
                            kLargeFrameBytes
                        ? kQueuedFramesOfLargeFrames
                        : kQueuedFrames;
    if (!isKnownDurationSec(inputs.fileDurationSec)) {
        return cap;
    }
    const auto endSample =
        std::int64_t((inputs.fileDurationSec + inputs.startTimeSec) * double(inputs.sampleRate));
    const std::int64_t framesLeft = (endSample - inputs.readedSampleCount) / inputs.frameSize;
    return int(std::clamp<std::int64_t>(framesLeft, 0, cap));
}

void MyCAOpenGLLayer::addSampleData(std::vector<std::uint8_t> data, double ptsSec, int channel) {
    sampleLists.channel(channel).add(SampleNode{std::move(data), ptsSec});
}

const SampleNode *MyCAOpenGLLayer::getSampleData(int channel) {
    return sampleLists.channel(channel).read();
}

int MyCAOpenGLLayer::sampleListCount() const {
    if (!aCodecCtx || !isPlanarSampleFormat(aCodecCtx->sample_fmt)) {
        return 1;
    }
    return std::clamp(aCodecCtx->ch_layout.nb_channels, 1, kMaxSampleChannels);
}

void MyCAOpenGLLayer::resetAudioDecodingStateForNewTrack() {
    NamedLockGuard lock(sampleDataThreadMutex);
    countAudioDecodingErrorValue = 0;
    isFrameSizeZero = false;
    audioFrameSize = 0;
    isAudioDecodingAtEnd = false;
}

void MyCAOpenGLLayer::startSampleThread() {
    sampleThread.start("tolvane-sample", *this, &MyCAOpenGLLayer::addSampleToQueueOnThreadOnlyOne);
}

bool MyCAOpenGLLayer::stopSampleThread() {
    if (sampleThread.stop(workerStopBound)) {
        return true;
    }
    // The abandoned thread keeps the decoder it may still be decoding with.
    // The track goes on with a fresh one, made once neither the other
    // workers nor the render callback read the track's decoder.
    stopPixelThread();
    stopPacketThread();
    stopOutputUnit();
    logWarning(QStringLiteral("the audio decoder did not stop in time: opening it again"));
    const int streamIndex = audioStreamIdx;
    aCodecCtx.reset();
    aCodec = nullptr;
    if (const std::optional<QString> failure = openAudioDecoderForStream(streamIndex)) {
        logWarning(QStringLiteral("the audio track %1 could not be opened again (%2)")
                       .arg(streamIndex)
                       .arg(*failure));
    }
    resetAudioDecodingStateForNewTrack();
    return false;
}

void MyCAOpenGLLayer::addSampleToQueueOnThreadOnlyOne(WorkerLink &link,
                                                      const std::function<bool()> &isCancelled) {
    // The engine is reached only through the link, and never during the
    // decode, which may stall for longer than the engine waits for this thread.
    while (!isCancelled()) {
        SampleTurnStart start;
        if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                NamedLockGuard threadLock(engine.sampleDataThreadMutex);
                start = engine.beginSampleTurn();
            })) {
            return;
        }
        SampleTurnAction action = start.action;
        if (start.turn) {
            DecodedAudio decoded = decodeAudioTurn(*start.turn);
            if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                    NamedLockGuard threadLock(engine.sampleDataThreadMutex);
                    action = engine.finishSampleTurn(*start.turn, std::move(decoded));
                })) {
                return;
            }
        }
        if (action == SampleTurnAction::Sleep) {
            sleepForIdleTurn();
        }
    }
}

SampleTurnAction MyCAOpenGLLayer::addSampleOneTurn() {
    NamedLockGuard threadLock(sampleDataThreadMutex);
    SampleTurnStart start = beginSampleTurn();
    if (!start.turn) {
        return start.action;
    }
    return finishSampleTurn(*start.turn, decodeAudioTurn(*start.turn));
}

MyCAOpenGLLayer::SampleTurnStart MyCAOpenGLLayer::beginSampleTurn() {
    if (rateValue.load() == 0.0 || !aCodecCtx || !pFormatCtx || audioStreamIdx < 0) {
        return {};
    }
    const AVCodecContext &codec = *aCodecCtx;
    if (audioFrameSize == 0) {
        audioFrameSize = codec.frame_size;
        if (audioFrameSize == 0) {
            audioFrameSize = defaultAudioFrameSizeFor(isPlanarSampleFormat(codec.sample_fmt));
            isFrameSizeZero = true;
        }
    }

    SampleQueueLimitInputs inputs;
    inputs.fileDurationSec = fileDurationSecValue;
    inputs.startTimeSec = startTimeSec();
    inputs.sampleRate = codec.sample_rate;
    inputs.readedSampleCount = sampleClock.readedSampleCount();
    inputs.frameSize = audioFrameSize;
    inputs.channels = codec.ch_layout.nb_channels;
    inputs.audioBytesPerChannel = audioBytesPerChannelValue;
    const int limit = sampleQueueLimitFor(inputs);
    isAudioDecodingAtEnd = limit < 1;
    // Only channel 0's list is compared, for planar sources too; the count is
    // read without the lock and may be a moment old.
    const int queued = sampleLists.channel(0).count();
    if (limit < 1) {
        // The end of the audio: whatever is still queued plays out. Without
        // this, frames queued after the output ran dry would never be
        // played, and the clock, which waits for them, would stop short.
        if (queued > 0 && !isEnoughSampleValue.load()) {
            markEnoughSamplesAndStartOutput();
        }
        return {};
    }
    if (queued >= limit) {
        markEnoughSamplesAndStartOutput();
        return {};
    }

    if (sampleLists.channel(0).count() == 0 && packets.audioCount() == 0 &&
        packets.videoCount() == 0) {
        return {};
    }
    const AVPacket *packet = getAudioPacket();
    if (packet == nullptr) {
        if (hasReadToTheEnd.load()) {
            // The file ended (or broke off) before the audio the queue limit
            // counts on: what was decoded plays out, and with none the output
            // still runs while pictures are left, the clock running over them.
            // Once the output has stopped at the end it is not started again.
            isAudioDecodingAtEnd = true;
            if (!isEnoughSampleValue.load() && (queued > 0 || !isPlaybackAtItsEnd())) {
                markEnoughSamplesAndStartOutput();
            }
        }
        // Audio may have ended before the video: wait a turn instead of
        // spinning on the empty list.
        return {};
    }
    AudioDecodingTurn turn;
    turn.codec = aCodecCtx;
    // Every frame of one packet carries the packet's decoding time.
    const std::int64_t stamp = packet->dts != AV_NOPTS_VALUE   ? packet->dts
                               : packet->pts != AV_NOPTS_VALUE ? packet->pts
                                                               : 0;
    turn.ptsSec = secondsOfStreamTimestamp(stamp, pFormatCtx->streams[audioStreamIdx]->time_base);
    // A reference of the turn's own: the list may be emptied while a decode
    // the engine gave up on still reads the packet.
    turn.packet = makePacket();
    if (!turn.packet || av_packet_ref(turn.packet.get(), packet) < 0) {
        return {};
    }
    return {SampleTurnAction::Continue, std::move(turn)};
}

MyCAOpenGLLayer::DecodedAudio MyCAOpenGLLayer::decodeAudioTurn(const AudioDecodingTurn &turn) {
    AVCodecContext *codec = turn.codec.get();
    DecodedAudio decoded;
    FramePtr receiving;
    auto receiveAllFrames = [&] {
        bool received = false;
        for (;;) {
            if (!receiving) {
                receiving = makeFrame();
            }
            const int result = avcodec_receive_frame(codec, receiving.get());
            if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
                return received;
            }
            if (result < 0) {
                ++decoded.failures;
                return received;
            }
            decoded.frames.push_back(std::move(receiving));
            received = true;
        }
    };
    const int sendResult = sendPacketTakingWaitingPictures(
        [&] { return avcodec_send_packet(codec, turn.packet.get()); }, receiveAllFrames);
    if (sendResult < 0) {
        // The packet's bytes are dropped; the thread goes on with the next.
        ++decoded.failures;
        return decoded;
    }
    receiveAllFrames();
    return decoded;
}

SampleTurnAction MyCAOpenGLLayer::finishSampleTurn(const AudioDecodingTurn &turn,
                                                   DecodedAudio decoded) {
    for (int failure = 0; failure < decoded.failures; ++failure) {
        countAudioDecodingFailure();
    }
    for (const FramePtr &frame : decoded.frames) {
        queueDecodedAudioFrame(*frame, turn.ptsSec);
    }
    removeAudioPacket();
    return SampleTurnAction::Continue;
}

void MyCAOpenGLLayer::markEnoughSamplesAndStartOutput() {
    {
        NamedLockGuard lock(enoughMutex);
        isEnoughSampleValue = true;
    }
    // Started outside enoughMutex: starting waits for the device, whose
    // callback may be waiting for enoughMutex. Under rateMutex, as setRate()
    // starts and stops the output: a pause between the look at the rate and
    // the start would otherwise be undone, and sound play while paused.
    NamedLockGuard rateLock(rateMutex);
    if (rateValue.load() != 0.0) {
        if (beforeSampleThreadStartsOutputForTesting) {
            beforeSampleThreadStartsOutputForTesting();
        }
        startOutputUnit();
    }
}

void MyCAOpenGLLayer::countAudioDecodingFailure() {
    countAudioDecodingErrorValue = nextAudioDecodingErrorCount(countAudioDecodingErrorValue.load());
}

void MyCAOpenGLLayer::queueDecodedAudioFrame(const AVFrame &frame, double ptsSec) {
    const AVCodecContext &codec = *aCodecCtx;
    const int channels = codec.ch_layout.nb_channels;
    if (frame.format != codec.sample_fmt || frame.ch_layout.nb_channels != channels ||
        frame.nb_samples <= 0) {
        // A frame whose layout differs from the track's cannot go into lists
        // and a pool set up for the track.
        countAudioDecodingFailure();
        return;
    }
    const bool isPlanar = isPlanarSampleFormat(codec.sample_fmt);
    int size = av_samples_get_buffer_size(nullptr, channels, frame.nb_samples, codec.sample_fmt, 1);
    if (size <= 0) {
        return;
    }
    if (isPlanar) {
        size /= channels;
    }

    if (isFrameSizeZero) {
        audioFrameSize = frame.nb_samples;
        isFrameSizeZero = false;
    }
    if (isSeekingAudio.exchange(false)) {
        // A damaged time stamp must not put the clock past the end.
        const double endSec = startTimeSec() + fileDurationSecValue;
        const double clockSec =
            isKnownDurationSec(fileDurationSecValue) ? std::min(ptsSec, endSec) : ptsSec;
        sampleClock.rebaseOnSampleCount(std::int64_t(double(codec.sample_rate) * clockSec));
    }

    {
        // One lock over every channel, so that the callback never sees a
        // frame on some channels and not yet on the others.
        NamedLockGuard lock(sampleDataQueueMutex);
        if (isPlanar) {
            const int lists = std::min(channels, kMaxSampleChannels);
            for (int k = 0; k < lists; ++k) {
                const std::uint8_t *plane = frame.extended_data[k];
                addSampleData(std::vector<std::uint8_t>(plane, plane + size), ptsSec, k);
            }
        } else {
            const std::uint8_t *data = frame.data[0];
            addSampleData(std::vector<std::uint8_t>(data, data + size), ptsSec, 0);
        }
    }
    const int divisor = audioBytesPerChannelValue * (isPlanar ? 1 : channels);
    sampleClock.addReadedSamples(size / divisor);
}

}  // namespace tolvane
