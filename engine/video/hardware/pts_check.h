#pragma once

#include <cstdint>
#include <optional>

namespace tolvane {

// flagMessPTS values.
inline constexpr int kFlagMessPTSLookingForI = -100;
inline constexpr int kFlagMessPTSLookingForP = -200;
inline constexpr int kFlagMessPTSUsable = 0;
inline constexpr int kFlagMessPTSUnusable = 1;

// The time-stamp test of an H.264 stream, fed its first video packets in
// decoding order: whether the packets' presentation time stamps can be used
// (flagMessPTS 0) or are missing or merely repeat the decoding ones (1).
// Until then the flag is -100 (no I picture yet) or -200 (an I picture
// without a usable stamp was seen; the first P picture decides).
class PTSCheck {
public:
    // `letter` is the first letter of the packet's picture-type string; an
    // unset stamp is nullopt. Returns the flag after the packet.
    int feedPacket(char letter, std::optional<std::int64_t> pts, std::optional<std::int64_t> dts);
    int flagMessPTS() const { return flag; }
    bool isDecided() const { return unsigned(flag) < 2u; }

private:
    int flag = kFlagMessPTSLookingForI;
};

// Runs the test over `utf8Path`, opened a second time for it: reads the
// first video stream's packets until the flag is decided or the file ends,
// and answers the flag (-100 or -200 when the file ended first, or could not
// be read).
int checkPTS(const char *utf8Path);

}  // namespace tolvane
