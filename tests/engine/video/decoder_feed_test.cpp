#include "engine/video/decoder_feed.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane {
namespace {

// A decoder scripted by the answers of its sends and receives.
TEST(DecoderFeed, APacketIsOfferedUntilTakenWhilePicturesCanBeTakenOut) {
    constexpr int kAgain = AVERROR(EAGAIN);
    struct Case {
        const char *what;
        std::vector<int> sendAnswers;
        std::vector<bool> receiveAnswers;
        int result;
        int sends;
        int pictures;
    };
    const Case cases[] = {
        {"taken at once", {0}, {}, 0, 1, 0},
        {"one picture waiting", {kAgain, 0}, {true}, 0, 2, 1},
        // A frame-threaded decoder or packed B-frames: two waiting pictures.
        // Offered only twice, the packet would be lost.
        {"two pictures waiting", {kAgain, kAgain, 0}, {true, true}, 0, 3, 2},
        {"full with no picture to take", {kAgain}, {false}, kAgain, 1, 0},
        {"refused as invalid", {AVERROR_INVALIDDATA}, {}, AVERROR_INVALIDDATA, 1, 0},
    };
    for (const Case &c : cases) {
        std::size_t sends = 0;
        std::size_t receives = 0;
        int pictures = 0;
        const int result =
            sendPacketTakingWaitingPictures([&] { return c.sendAnswers.at(sends++); },
                                            [&] {
                                                const bool got = c.receiveAnswers.at(receives++);
                                                pictures += got ? 1 : 0;
                                                return got;
                                            });
        EXPECT_EQ(result, c.result) << c.what;
        EXPECT_EQ(int(sends), c.sends) << c.what;
        EXPECT_EQ(pictures, c.pictures) << c.what;
    }
}

}  // namespace
}  // namespace tolvane
