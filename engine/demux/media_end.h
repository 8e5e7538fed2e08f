#pragma once

namespace tolvane {

// `fileDurationSec` of a file whose container gives no duration (a recording
// still being written, a damaged header). Such a file plays until its packets
// end; the rules that count frames or samples up to the end leave it unbounded.
inline constexpr double kNoDurationSec = -100.0;

inline bool isKnownDurationSec(double fileDurationSec) { return fileDurationSec >= 0.0; }

}  // namespace tolvane
