#pragma once

#include <cerrno>

extern "C" {
#include <libavutil/error.h>
}

namespace tolvane {

// Feeds one packet to a decoder that may hold finished pictures: while
// `send` answers EAGAIN, `takeWaitingPicture` takes one out (false when none
// came) and the packet is offered again, so that a packet is never dropped
// because the decoder had more than one picture waiting. Returns the last
// answer of `send`: 0 once the packet is taken. Calls `send` once more than
// it took pictures.
template <typename Send, typename TakeWaitingPicture>
int sendPacketTakingWaitingPictures(Send &&send, TakeWaitingPicture &&takeWaitingPicture) {
    int result = send();
    while (result == AVERROR(EAGAIN) && takeWaitingPicture()) {
        result = send();
    }
    return result;
}

}  // namespace tolvane
