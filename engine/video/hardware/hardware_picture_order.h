#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace tolvane {

// The time-stamp rule of hardware-decoded pictures. The decoder returns
// pictures in display order; each is held until more than the decoder's
// reorder depth are held, then the first leaves stamped with the smallest
// decoding time stamp received so far. The decoding stamps are evenly spaced
// even where the presentation stamps are not, so the pictures leave with
// regular times.
//
// With usable presentation stamps (flagMessPTS 0) the held pictures are
// ordered by them, equal ones in arrival order. With unusable ones (1) the
// arrival order is kept: ordering by stamps that repeat the decoding ones
// would put the pictures back into decoding order.
//
// A picture with neither stamp leaves with `nextVideoFramePtsSec`, and the
// next expected time then advances by one frame.
//
// Thread-safety: none; the engine keeps it under hardwarePictureOrderMutex.
template <typename Picture>
class HardwarePictureOrder {
public:
    struct Released {
        Picture picture;
        double ptsSec = 0.0;
        // The time of the next picture expected (gNextVideoFramePtsSec).
        double nextVideoFramePtsSec = 0.0;
    };

    // For a new file: its video time base in seconds per unit, its frame
    // rate (0 when unknown) and its time-stamp judgement.
    void reset(double timeBaseSec, double frameRate, int flagMessPTS) {
        removeAll();
        secondsPerUnit = timeBaseSec;
        framesPerSecond = frameRate;
        isOrderedByPTS = flagMessPTS == 0;
    }

    // Forgets every held picture and stamp (a seek, a new file).
    void removeAll() {
        held.clear();
        holdingDTS.clear();
    }

    // Takes a picture the decoder returned with its own stamps, in time-base
    // units, and releases at most one: the one whose turn has come.
    std::optional<Released> properImageBufferAndPTS(Picture picture,
                                                    std::optional<std::int64_t> pts,
                                                    std::optional<std::int64_t> dts,
                                                    int reorderDepth, double nextVideoFramePtsSec) {
        // Containers that store no decoding stamps (Matroska) have the
        // presentation stamp stand in for it.
        if (!dts) {
            dts = pts;
        }
        if (dts) {
            holdingDTS.insert(std::lower_bound(holdingDTS.begin(), holdingDTS.end(), *dts), *dts);
        }
        auto at = held.end();
        if (isOrderedByPTS && pts) {
            at = std::find_if(held.begin(), held.end(), [&](const HeldPicture &entry) {
                return entry.pts && *entry.pts > *pts;
            });
        }
        held.insert(at, HeldPicture{std::move(picture), pts});
        if (held.size() < 2 || int(held.size()) <= reorderDepth) {
            return std::nullopt;
        }
        return releaseFirst(nextVideoFramePtsSec);
    }

    // Releases the first held picture, or nothing when none is held: after
    // the decoder's last picture, what is held leaves one call at a time.
    std::optional<Released> releaseFirst(double nextVideoFramePtsSec) {
        if (held.empty()) {
            return std::nullopt;
        }
        Released released{std::move(held.front().picture), nextVideoFramePtsSec,
                          nextVideoFramePtsSec};
        held.pop_front();
        if (!holdingDTS.empty()) {
            released.ptsSec = secondsPerUnit * double(holdingDTS.front());
            holdingDTS.erase(holdingDTS.begin());
            released.nextVideoFramePtsSec = released.ptsSec + secondsPerUnit;
        } else {
            released.nextVideoFramePtsSec =
                released.ptsSec + (framesPerSecond > 0.0 ? 1.0 / framesPerSecond : secondsPerUnit);
        }
        return released;
    }

    int heldCount() const { return int(held.size()); }

private:
    struct HeldPicture {
        Picture picture;
        std::optional<std::int64_t> pts;
    };

    std::deque<HeldPicture> held;          // in release order
    std::vector<std::int64_t> holdingDTS;  // ascending
    double secondsPerUnit = 0.0;
    double framesPerSecond = 0.0;
    bool isOrderedByPTS = true;
};

}  // namespace tolvane
