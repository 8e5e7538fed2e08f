// The seek: stop the threads, reposition the demuxer near the target, empty
// every queue, re-base the clock and optionally show the picture there.

#include "base/log.h"
#include "base/operation_boundary.h"
#include "engine/clock/seek_rules.h"
#include "engine/clock/stream_time.h"
#include "engine/demux/media_end.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

namespace {

constexpr int kSeekTries = 5;
constexpr int kFruitlessPreviewDecodesAllowed = 4;
constexpr double kLastSecondsNotSeekedInto = 2.0;
constexpr double kFirstSecondsSeekingToStart = 2.0;
constexpr int kFirstUsableEntryOfUglyIndex = 2;
constexpr int kMinIndexEntriesForRules = 4;

}  // namespace

void MyCAOpenGLLayer::primeDeferredSeekIndex(AVStream *videoStream, double targetSec) {
    // The Matroska demuxer reads its cues, the seek index, only on the first
    // seek; without them the rules at both ends of the index could not apply.
    // One seek ahead of the real one loads them.
    const bool defersIndex =
        QLatin1String(pFormatCtx->iformat->name).startsWith(QLatin1String("matroska"));
    if (!defersIndex || avformat_index_get_entries_count(videoStream) >= kMinIndexEntriesForRules) {
        return;
    }
    av_seek_frame(pFormatCtx.get(), videoStreamIdx,
                  streamTimestampOfSeconds(std::max(targetSec, 0.0), videoStream->time_base),
                  kSeekFlagsBackward);
}

SeekAttempt seekAttemptFor(const SeekRuleInputs &inputs) {
    SeekAttempt attempt;
    attempt.targetSec = inputs.targetSec;
    attempt.timestamp = streamTimestampOfSeconds(inputs.targetSec, inputs.timeBase);
    const auto &index = inputs.indexTimestamps;
    if (index.size() >= std::size_t(kMinIndexEntriesForRules) &&
        isKnownDurationSec(inputs.fileDurationSec)) {
        const std::int64_t endTimestamp = index[index.size() - 3];
        if (attempt.targetSec <= kFirstSecondsSeekingToStart) {
            attempt.targetSec = 0.0;
            attempt.timestamp = index[inputs.isUglyKeyframe ? kFirstUsableEntryOfUglyIndex : 0];
        }
        const double lastSeekableSec =
            inputs.fileDurationSec + inputs.startTimeSec - kLastSecondsNotSeekedInto;
        if (attempt.targetSec >= lastSeekableSec) {
            attempt.targetSec = lastSeekableSec;
            attempt.timestamp = endTimestamp;
        }
    }
    const bool isPastLastKeyFrame =
        inputs.lastKeyFrameTimestamp && attempt.timestamp > *inputs.lastKeyFrameTimestamp;
    attempt.flags = attempt.targetSec > inputs.currentTimeSec && !isPastLastKeyFrame
                        ? kSeekFlagsForward
                        : kSeekFlagsBackward;
    return attempt;
}

void MyCAOpenGLLayer::setCurrentTimeSec(double currentTimeSecToSeek, bool isOneFrame) {
    runAtOperationBoundary("scts:iof", [&] {
        NamedLockGuard seekLock(seekMutex);
        const float rememberedVolume = output.volume();
        setVolume(0.0f);
        stopSampleThread();
        stopPixelThread();
        stopPacketThread();
        destroyOutputUnit();
        emptyQueues(QueueEmptying::EverythingButClock);
        if (!pFormatCtx || videoStreamIdx < 0) {
            setDefaultOutputAUWithVolume(rememberedVolume);
            return;
        }

        AVStream *videoStream = pFormatCtx->streams[videoStreamIdx];
        primeDeferredSeekIndex(videoStream, startTimeSec() + currentTimeSecToSeek);
        std::vector<std::int64_t> indexTimestamps;
        const int entries = avformat_index_get_entries_count(videoStream);
        indexTimestamps.reserve(std::size_t(std::max(entries, 0)));
        std::optional<std::int64_t> lastKeyFrameTimestamp;
        for (int i = 0; i < entries; ++i) {
            const AVIndexEntry *entry = avformat_index_get_entry(videoStream, i);
            indexTimestamps.push_back(entry->timestamp);
            if ((entry->flags & AVINDEX_KEYFRAME) != 0) {
                lastKeyFrameTimestamp = entry->timestamp;
            }
        }
        SeekRuleInputs inputs;
        inputs.targetSec = startTimeSec() + currentTimeSecToSeek;
        inputs.timeBase = videoStream->time_base;
        inputs.indexTimestamps = indexTimestamps;
        inputs.isUglyKeyframe = isUglyKeyframeValue;
        inputs.fileDurationSec = fileDurationSecValue;
        inputs.startTimeSec = startTimeSec();
        inputs.lastKeyFrameTimestamp = lastKeyFrameTimestamp;
        double target = inputs.targetSec;
        for (int attempt = 0; attempt < kSeekTries; ++attempt) {
            inputs.targetSec = target;
            inputs.currentTimeSec = currentTimeSec();
            const SeekAttempt seek = seekAttemptFor(inputs);
            target = seek.targetSec;
            lastSeekFlagsValue = seek.flags;
            lastSeekTimestampValue = seek.timestamp;
            if (av_seek_frame(pFormatCtx.get(), videoStreamIdx, seek.timestamp, seek.flags) >= 0) {
                break;
            }
            // No key frame after the target (an index that does not reach that
            // far): the one before it serves.
            if (seek.flags == kSeekFlagsForward &&
                av_seek_frame(pFormatCtx.get(), videoStreamIdx, seek.timestamp,
                              kSeekFlagsBackward) >= 0) {
                lastSeekFlagsValue = kSeekFlagsBackward;
                break;
            }
            // After the last failure the engine goes on with the last target.
            if (attempt + 1 < kSeekTries) {
                target = targetAfterFailedSeek(target);
            }
        }

        hasReadToTheEnd = false;
        if (videoDecoder) {
            videoDecoder->flush();
        }
        if (aCodecCtx) {
            avcodec_flush_buffers(aCodecCtx.get());
        }
        pictures.resetSeekPreview(true);
        isSeekingAudio = true;

        rebaseClockOnTimeSec(target);
        gNextVideoFramePtsSec = target;
        seekingMovieTimeSec = target;

        if (isOneFrame) {
            displayJustOneVideoFrame(target);
        } else {
            pictures.endSeekPreview();
        }
        setDefaultOutputAUWithVolume(rememberedVolume);
    });
}

void MyCAOpenGLLayer::restartTimers() {
    NamedLockGuard seekLock(seekMutex);
    startPacketThread();
    startPixelThread();
    startSampleThread();
}

void MyCAOpenGLLayer::displayJustOneVideoFrame(double targetSec) {
    if (!pFormatCtx || videoStreamIdx < 0) {
        return;
    }
    const AVStream *videoStream = pFormatCtx->streams[videoStreamIdx];
    const AVRational videoTimeBase = videoStream->time_base;
    const AVRational audioTimeBase =
        audioStreamIdx >= 0 ? pFormatCtx->streams[audioStreamIdx]->time_base : AVRational{0, 1};
    const double fps = videoFrameRate();
    bool hasSeenKeyFrame = false;
    int fruitlessDecodes = 0;
    for (;;) {
        PacketPtr packet = makePacket();
        if (av_read_frame(pFormatCtx.get(), packet.get()) < 0) {
            setAsynchronous(true);
            return;
        }
        if (packet->stream_index == audioStreamIdx) {
            // Audio before the target is dropped, so that the clock re-bases
            // on the first packet at or after it.
            if (secondsOfStreamTimestamp(packet->dts, audioTimeBase) >= targetSec) {
                addAudioPacket(packet.get());
            }
            continue;
        }
        if (packet->stream_index != videoStreamIdx) {
            continue;
        }
        hasSeenKeyFrame = hasSeenKeyFrame || (packet->flags & AV_PKT_FLAG_KEY) != 0;
        const std::int64_t dts = packet->dts;
        const bool hasPicture =
            hasSeenKeyFrame && decodingJustOneVideoFrameForNormal(packet.get(), fps);
        addVideoPacket(packet.get());
        if (!hasSeenKeyFrame) {
            continue;
        }
        if (hasPicture) {
            if (dts != AV_NOPTS_VALUE) {
                seekingMovieTimeSec = secondsOfStreamTimestamp(dts, videoTimeBase);
            }
            removeVideoPacket();
            setAsynchronous(true);
            return;
        }
        if (++fruitlessDecodes >= kFruitlessPreviewDecodesAllowed) {
            pictures.endSeekPreview();
            return;
        }
    }
}

}  // namespace tolvane
