#include "media_description.h"

#include <array>
#include <utility>

#include "base/localized_strings.h"
#include "engine/my_ca_opengl_layer.h"

namespace tolvane {

namespace {

// Layout names that read "<name> <CHANNELS>".
constexpr std::array kNamedChannelLayouts = {"2", "4.0", "quad", "5.0", "5.1", "6", "6.1", "7.1"};

}  // namespace

QString channelDescriptionFromLayoutText(const QString &layoutText, bool *isQuad) {
    QString text = layoutText;
    text.replace(QStringLiteral(" channels"), localizedString("REDUCHANNELS"), Qt::CaseInsensitive);
    text.remove(QStringLiteral("(side)"), Qt::CaseInsensitive);
    text.remove(QStringLiteral("(wide)"), Qt::CaseInsensitive);
    const QString lower = text.toLower();
    if (isQuad != nullptr) {
        *isQuad = lower.startsWith(QStringLiteral("quad"));
    }
    if (lower == QLatin1String("mono")) {
        return localizedString("MONO");
    }
    if (lower == QLatin1String("stereo")) {
        return localizedString("STEREO");
    }
    for (const char *name : kNamedChannelLayouts) {
        if (text == QLatin1String(name)) {
            const QString shown = text == QLatin1String("quad") ? QStringLiteral("4.0") : text;
            return shown + QLatin1Char(' ') + localizedString("CHANNELS");
        }
    }
    return text;
}

bool isUglyKeyframeFromIndexEntries(std::span<const IndexEntrySummary> entries) {
    constexpr int kKeyframeFlagsMask = 0x3;
    constexpr int kUglyKeyframeDistance = 240;
    int largestMinDistance = 0;
    int keyframeCount = 0;
    for (const IndexEntrySummary &entry : entries) {
        largestMinDistance = std::max(largestMinDistance, entry.minDistance);
        if ((entry.flags & kKeyframeFlagsMask) == AVINDEX_KEYFRAME && ++keyframeCount == 2) {
            break;
        }
    }
    return largestMinDistance >= kUglyKeyframeDistance;
}

int pixelFormatModeFor(AVPixelFormat pixelFormat) {
    switch (pixelFormat) {
        case AV_PIX_FMT_YUV420P:
            return kPixelFormat420p8;
        case AV_PIX_FMT_YUV420P10LE:
            return kPixelFormat420p10;
        case AV_PIX_FMT_YUV444P10LE:
            return kPixelFormat444p10;
        default:
            return kPixelFormatUnsupported;
    }
}

int audioBytesPerChannelFor(AVSampleFormat sampleFormat) {
    switch (sampleFormat) {
        case AV_SAMPLE_FMT_S32:
        case AV_SAMPLE_FMT_FLT:
        case AV_SAMPLE_FMT_S32P:
        case AV_SAMPLE_FMT_FLTP:
            return 4;
        default:
            return 2;
    }
}

}  // namespace tolvane
