#include "engine/video/hardware/pts_check.h"

#include "engine/ffmpeg_handles.h"
#include "engine/video/hardware/picture_type.h"

namespace tolvane {

namespace {

bool isUnsetOrDecodingStamp(std::optional<std::int64_t> pts, std::optional<std::int64_t> dts) {
    return !pts || pts == dts;
}

std::optional<std::int64_t> stampOrNothing(std::int64_t stamp) {
    return stamp == AV_NOPTS_VALUE ? std::nullopt : std::optional<std::int64_t>(stamp);
}

// Reading stops here even when nothing was decided: a stream that has shown
// no I or P picture this far is not going to be judged by reading on.
constexpr int kMaxVideoPacketsRead = 600;

}  // namespace

int PTSCheck::feedPacket(char letter, std::optional<std::int64_t> pts,
                         std::optional<std::int64_t> dts) {
    const bool isUnusable = isUnsetOrDecodingStamp(pts, dts);
    if (flag == kFlagMessPTSLookingForI) {
        if (letter == 'I') {
            flag = isUnusable ? kFlagMessPTSLookingForP : kFlagMessPTSUsable;
        } else if (letter == 'P') {
            flag = isUnusable ? kFlagMessPTSUnusable : kFlagMessPTSUsable;
        } else {
            flag = kFlagMessPTSLookingForP;
        }
    } else if (flag == kFlagMessPTSLookingForP) {
        flag = letter == 'P' && isUnusable ? kFlagMessPTSUnusable : kFlagMessPTSUsable;
    }
    return flag;
}

int checkPTS(const char *utf8Path) {
    PTSCheck check;
    const OpenedInput input = openInputWithStreamInfo(utf8Path);
    if (input.failedStep >= 0) {
        return check.flagMessPTS();
    }
    AVFormatContext *context = input.context.get();
    // The first video stream, as the engine plays.
    int videoStream = -1;
    for (unsigned i = 0; i < context->nb_streams && videoStream < 0; ++i) {
        if (context->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) {
            videoStream = int(i);
        }
    }
    if (videoStream < 0) {
        return check.flagMessPTS();
    }
    const AVCodecParameters *parameters = context->streams[videoStream]->codecpar;
    const int naluSizeByte = naluSizeByteInExtraData(
        parameters->extradata, std::size_t(std::max(parameters->extradata_size, 0)));
    const PacketPtr packet = makePacket();
    int videoPacketsRead = 0;
    while (!check.isDecided() && videoPacketsRead < kMaxVideoPacketsRead &&
           av_read_frame(context, packet.get()) >= 0) {
        if (packet->stream_index == videoStream) {
            ++videoPacketsRead;
            const std::string type = pictureTypeFromPacketData(
                packet->data, std::size_t(std::max(packet->size, 0)), naluSizeByte);
            check.feedPacket(type[0], stampOrNothing(packet->pts), stampOrNothing(packet->dts));
        }
        av_packet_unref(packet.get());
    }
    return check.flagMessPTS();
}

}  // namespace tolvane
