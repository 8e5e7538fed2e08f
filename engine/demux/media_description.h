#pragma once

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/pixfmt.h>
#include <libavutil/samplefmt.h>
}

#include <QString>
#include <span>

namespace tolvane {

// The "channel" text of an audio track from FFmpeg's layout description
// ("stereo", "5.1(side)", "3 channels"), in the user's language. Sets
// `isQuad` when the layout is a quad one.
QString channelDescriptionFromLayoutText(const QString &layoutText, bool *isQuad);

struct IndexEntrySummary {
    int flags = 0;
    int minDistance = 0;
};

// Whether key frames lie so far apart that seeking needs care: the largest
// min_distance among the index entries up to the second key frame is 240 or more.
bool isUglyKeyframeFromIndexEntries(std::span<const IndexEntrySummary> entries);

int pixelFormatModeFor(AVPixelFormat pixelFormat);
int audioBytesPerChannelFor(AVSampleFormat sampleFormat);

}  // namespace tolvane
