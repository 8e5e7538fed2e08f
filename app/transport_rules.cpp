#include "app/transport_rules.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tolvane {
namespace {

// The step grows with the running time of what is typical at that length
// (an episode, a film); the 25 s band from 2400 s on and the bound at 1411 s
// are kept exactly as users of the original know them.
struct SkipForwardRow {
    double durationBelowSec;
    double stepUpTo900Sec;
    double stepAfter900Sec;
};
constexpr SkipForwardRow kSkipForwardTable[] = {
    {600.0, 25.0, 25.0},  {1411.0, 65.0, 60.0}, {2400.0, 85.0, 80.0},
    {2700.0, 25.0, 25.0}, {3600.0, 85.0, 80.0},
};
constexpr SkipForwardRow kSkipForwardLongest{0.0, 30.0, 30.0};
constexpr double kSkipForwardStepChangeSec = 900.0;

}  // namespace

double skipForwardStepSec(double durationSec, double positionSec) {
    const auto row = std::find_if(
        std::begin(kSkipForwardTable), std::end(kSkipForwardTable),
        [durationSec](const SkipForwardRow &r) { return durationSec < r.durationBelowSec; });
    const SkipForwardRow &chosen = row == std::end(kSkipForwardTable) ? kSkipForwardLongest : *row;
    return positionSec <= kSkipForwardStepChangeSec ? chosen.stepUpTo900Sec
                                                    : chosen.stepAfter900Sec;
}

double forwardTargetSec(double positionSec, double durationSec) {
    return std::min(durationSec, positionSec + kSeekStepSec);
}

double backwardTargetSec(double positionSec) { return std::max(0.0, positionSec - kSeekStepSec); }

double skipForwardTargetSec(double positionSec, double durationSec) {
    const double target = positionSec + skipForwardStepSec(durationSec, positionSec);
    return target > durationSec ? std::max(0.0, durationSec - kSkipPastEndMarginSec) : target;
}

double shownPositionSec(double currentTimeSec, double startTimeSec) {
    return std::max(0.0, currentTimeSec - startTimeSec);
}

QString representHMSfromSEC(double sec) {
    const long long whole = std::isfinite(sec) && sec > 0.0 ? (long long)std::trunc(sec) : 0;
    return QString::asprintf("%02lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

double roundedVolume(double value) { return std::trunc(value * 10.0 + 0.5) / 10.0; }

// The sum is rounded again so that the stored level reads 1.2, not 1.2000000000000002.
double volumeUp(double sliderValue) {
    return std::min(kMaximumVolume, roundedVolume(roundedVolume(sliderValue) + kVolumeStep));
}

double volumeDown(double sliderValue) {
    return std::max(0.0, roundedVolume(roundedVolume(sliderValue) - kVolumeStep));
}

QString volumePercentageMessage(double volume) {
    return QString::asprintf("%.0f", volume / kMaximumVolume * 100.0);
}

double mutedVolume(double sliderValue, double storedVolume) {
    if (sliderValue != 0.0) {
        return 0.0;
    }
    return storedVolume != 0.0 ? storedVolume : kUnmuteFallbackVolume;
}

bool isRewindBeforePlay(double positionSec, double durationSec, bool isEnd) {
    return isEnd || durationSec - positionSec < kRewindBeforePlayMarginSec;
}

int steppedPlaylistIndex(const QList<PlaylistStepItem> &items, int indexPlay, int direction) {
    const auto isInside = [&items](int index) { return index >= 0 && index < items.size(); };
    int index = indexPlay + direction;
    if (!isInside(index)) {
        return indexPlay;
    }
    if (!items[index].path.contains(QLatin1String("/BDMV/STREAM"), Qt::CaseInsensitive)) {
        return index;
    }
    while (isInside(index) && items[index].isSkipped) {
        index += direction;
    }
    return isInside(index) ? index : indexPlay;
}

}  // namespace tolvane
