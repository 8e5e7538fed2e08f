#pragma once

#include <QList>
#include <QString>

namespace tolvane {

// The arithmetic of the transport controls: seek targets, the skip-forward
// steps, volume rounding and the playlist steps. Pure functions; times are
// seconds, volumes 0 (silent) to 5 with 1 the normal level.

inline constexpr double kSeekStepSec = 3.0;
inline constexpr double kSkipPastEndMarginSec = 5.0;
inline constexpr double kMaximumVolume = 5.0;
inline constexpr double kVolumeStep = 0.1;
inline constexpr double kUnmuteFallbackVolume = 2.0;
// Play pressed this close to the end starts again from the beginning.
inline constexpr double kRewindBeforePlayMarginSec = 0.3;

// The skip-forward step for a file of `durationSec` at `positionSec`.
double skipForwardStepSec(double durationSec, double positionSec);

double forwardTargetSec(double positionSec, double durationSec);
double backwardTargetSec(double positionSec);
// Past the end the skip lands 5 s before it.
double skipForwardTargetSec(double positionSec, double durationSec);

// The position the user sees: the clock less the stream's start, not below 0.
double shownPositionSec(double currentTimeSec, double startTimeSec);

// "%02d:%02d:%02d" of the truncated whole seconds; negative times show as 0.
QString representHMSfromSEC(double sec);

// A slider value rounded to one decimal.
double roundedVolume(double value);
double volumeUp(double sliderValue);
double volumeDown(double sliderValue);
// The volume as a percentage of the maximum, "%.0f".
QString volumePercentageMessage(double volume);
// Mute toggles between 0 and the stored level (2.0 when that is 0 too).
double mutedVolume(double sliderValue, double storedVolume);

bool isRewindBeforePlay(double positionSec, double durationSec, bool isEnd);

// One playlist entry as previous/next see it.
struct PlaylistStepItem {
    QString path;
    bool isSkipped = false;  // a Blu-ray stream file marked "!"
};
// The index previous (-1) or next (+1) lands on: one step when the item
// there exists; from a Blu-ray stream file ("/BDMV/STREAM", any case) on,
// further over items marked skipped. `indexPlay` itself when no item is
// found in that direction.
int steppedPlaylistIndex(const QList<PlaylistStepItem> &items, int indexPlay, int direction);

}  // namespace tolvane
