#pragma once

#include <optional>

namespace tolvane {

class PlayedStateRecords;
struct Playlist;

// Playback resumes this much before a stored position beyond it.
inline constexpr double kResumeRewindSec = 3.0;

// The position to resume at for a stored position: 3.0 s earlier when it lies
// beyond 3.0 s, unchanged otherwise.
double resumePositionFromStoredPosition(double storedPositionSec);

// The bookkeeping of continueOpenFile, the move from one playlist item to
// another: the state of the item left is stored, the new item's state becomes
// the reopen fields, choices are carried over to the next episode of a series,
// and the resume position is set. The interface keeps the reopen fields'
// audio index, subtitle choices, delays and done flag current while an item
// plays; only the position comes from the player at the move.
// Thread-safety: main thread only.
class ItemMoveBookkeeping {
public:
    ItemMoveBookkeeping(Playlist &playlist, PlayedStateRecords &records);

    // `indexPlay` already holds the new index; `indexOfItemLeft` is the item
    // being left (out of range when it was removed from the playlist).
    // `playingPositionSec` is the player's position when a file was playing.
    void continueOpenFile(int indexOfItemLeft, std::optional<double> playingPositionSec);

    // Stores the reopen fields (with the position) into the row left and the
    // played-state record. The "start from the beginning" sentinel is stored
    // as position 0.
    void storeStateOfItemLeft(int indexOfItemLeft, std::optional<double> playingPositionSec);

    // Forward to an unfinished item of the same series: a missing audio choice
    // takes the previous item's, missing subtitle choices and delays take the
    // previous item's in the carry-over form. Returns whether it applied.
    bool carryOverToNextEpisode(int indexOfItemLeft);

private:
    Playlist &playlist;
    PlayedStateRecords &records;
};

}  // namespace tolvane
