#include "engine/demux/media_description.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvane {
namespace {

TEST(ChannelDescription, SuffixesQuadAndCaseOfTheLayoutText) {
    struct Case {
        const char *layout;
        const char *expected;
        bool isQuad;
    };
    const Case cases[] = {
        {"mono", "Mono", false},
        {"5.1(side)", "5.1 Channels", false},
        {"7.1(wide-side)", "7.1(wide-side)", false},
        {"quad", "4.0 Channels", true},
        {"quad(side)", "4.0 Channels", true},
        {"4.0", "4.0 Channels", false},
        {"3 Channels", "3 channels", false},
        {"hexadecagonal", "hexadecagonal", false},
    };
    for (const Case &c : cases) {
        bool isQuad = !c.isQuad;
        EXPECT_EQ(channelDescriptionFromLayoutText(QString::fromUtf8(c.layout), &isQuad),
                  QString::fromUtf8(c.expected))
            << c.layout;
        EXPECT_EQ(isQuad, c.isQuad) << c.layout;
    }
}

TEST(UglyKeyframe, LargestMinDistanceUpToTheSecondKeyframe) {
    const int key = AVINDEX_KEYFRAME;
    struct Case {
        std::vector<IndexEntrySummary> entries;
        bool expected;
    };
    const Case cases[] = {
        {{}, false},
        {{{key, 0}, {0, 1}, {0, 239}, {key, 239}}, false},
        {{{key, 0}, {0, 120}, {key, 240}}, true},
        // Entries after the second key frame are not looked at.
        {{{key, 0}, {key, 10}, {0, 500}}, false},
        // A discard-flagged key frame does not count as a key frame.
        {{{key, 0}, {key | 2, 5}, {0, 300}, {key, 0}}, true},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(isUglyKeyframeFromIndexEntries(c.entries), c.expected)
            << "entries: " << c.entries.size();
    }
}

}  // namespace
}  // namespace tolvane
