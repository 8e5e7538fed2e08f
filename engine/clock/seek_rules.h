#pragma once

#include <cstdint>
#include <optional>
#include <span>

extern "C" {
#include <libavutil/rational.h>
}

namespace tolvane {

// av_seek_frame flags of the engine's seeks: by frame, and backward when the
// target is not after the current time. The time stamp is given in stream
// time-base units all the same; the pairing is kept deliberately.
inline constexpr int kSeekFlagsForward = 8;
inline constexpr int kSeekFlagsBackward = 9;

struct SeekRuleInputs {
    double targetSec = 0.0;                         // start time plus the wanted position
    AVRational timeBase{0, 1};                      // of the video stream
    std::span<const std::int64_t> indexTimestamps;  // of the video stream's seek index
    bool isUglyKeyframe = false;
    double fileDurationSec = 0.0;
    double startTimeSec = 0.0;
    double currentTimeSec = 0.0;
    // The last key frame the index knows of, when it marks key frames.
    std::optional<std::int64_t> lastKeyFrameTimestamp;
};

struct SeekAttempt {
    double targetSec = 0.0;
    std::int64_t timestamp = 0;
    int flags = kSeekFlagsBackward;
};

// One try of the seek. With an index of at least four entries, a target of
// 2.0 s or less starts at the first entry (the third for files whose first
// entries are unusable) with target 0, and a target within the last two
// seconds lands two seconds before the end, at the third entry from the end.
// A forward seek past the last key frame would find none: it goes backward.
SeekAttempt seekAttemptFor(const SeekRuleInputs &inputs);

// The target of the next try after a failed one: one second earlier, not below 0.
inline double targetAfterFailedSeek(double targetSec) {
    return targetSec - 1.0 > 0.0 ? targetSec - 1.0 : 0.0;
}

}  // namespace tolvane
