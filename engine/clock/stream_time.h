#pragma once

#include <cstdint>

extern "C" {
#include <libavutil/rational.h>
}

namespace tolvane {

// The one conversion between a stream's time stamps and seconds. A time base
// with a zero denominator (no demuxer that opened gives one) counts as 0 s a
// unit rather than infinity, so that no conversion overflows.
inline double secondsPerStreamUnit(AVRational timeBase) {
    return timeBase.den != 0 ? double(timeBase.num) / double(timeBase.den) : 0.0;
}

inline double secondsOfStreamTimestamp(std::int64_t timestamp, AVRational timeBase) {
    return double(timestamp) * secondsPerStreamUnit(timeBase);
}

// Truncated toward zero, as the seek has always given its time stamps.
inline std::int64_t streamTimestampOfSeconds(double seconds, AVRational timeBase) {
    const double unitSec = secondsPerStreamUnit(timeBase);
    return unitSec > 0.0 ? std::int64_t(seconds / unitSec) : 0;
}

}  // namespace tolvane
