// The pixel thread: video packets decoded into timed bitmaps.

#include "base/log.h"
#include "base/notification_center.h"
#include "engine/clock/stream_time.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/bitmap_conversion.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace tolvane {

namespace {

PlanarPictureView planarViewOf(const AVFrame &frame) {
    PlanarPictureView view;
    for (int plane = 0; plane < 3; ++plane) {
        view.planes[plane] = frame.data[plane];
        view.strides[plane] = frame.linesize[plane];
    }
    view.width = frame.width;
    view.height = frame.height;
    return view;
}

// Whether the conversion for `layout` can read `frame` without leaving its
// planes. The 8-bit layouts read any planar picture whose chroma is at most
// halved in each direction (that is how unsupported formats are shown); the
// 10-bit ones need exactly their format, which a stream may change midway.
bool frameFitsLayout(const AVFrame &frame, BitmapLayout layout) {
    if (frame.width <= 0 || frame.height <= 0 || frame.data[0] == nullptr ||
        frame.data[1] == nullptr || frame.data[2] == nullptr) {
        return false;
    }
    switch (layout) {
        case BitmapLayout::Packed422From420p8:
        case BitmapLayout::Packed422FirstFieldFrom420p8:
        case BitmapLayout::Nv12From420p8: {
            const AVPixFmtDescriptor *descriptor = av_pix_fmt_desc_get(AVPixelFormat(frame.format));
            return descriptor != nullptr && (descriptor->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 &&
                   (descriptor->flags & (AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_PAL |
                                         AV_PIX_FMT_FLAG_BITSTREAM)) == 0 &&
                   descriptor->nb_components >= 3 && descriptor->log2_chroma_w <= 1 &&
                   descriptor->log2_chroma_h <= 1;
        }
        case BitmapLayout::Packed422From420p10:
        case BitmapLayout::Rgba16From420p10:
            return frame.format == AV_PIX_FMT_YUV420P10LE;
        case BitmapLayout::Rgba16From444p10:
        case BitmapLayout::Argb8From444p10:
            return frame.format == AV_PIX_FMT_YUV444P10LE;
    }
    return false;
}

}  // namespace

void MyCAOpenGLLayer::startPixelThread() {
    pixelThread.start("tolvane-pixel", *this, &MyCAOpenGLLayer::addBitmapDataOnThreadOnlyOne);
}

bool MyCAOpenGLLayer::stopPixelThread() {
    if (pixelThread.stop(workerStopBound)) {
        return true;
    }
    // The abandoned thread keeps the decoder it may still be decoding with,
    // and the engine lets it go.
    logWarning(
        QStringLiteral("the video decoder did not stop in time: no more pictures of this file"));
    videoDecoder.reset();
    return false;
}

void MyCAOpenGLLayer::addBitmapDataOnThreadOnlyOne(WorkerLink &link,
                                                   const std::function<bool()> &isCancelled) {
    // The engine is reached only through the link, and never during the
    // decode, which may stall for longer than the engine waits for this thread.
    while (!isCancelled()) {
        PixelPassStart start;
        if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                NamedLockGuard threadLock(engine.bitmapDataThreadMutex);
                start = engine.beginPixelPass();
            })) {
            return;
        }
        PixelPassOutcome outcome = start.outcome;
        if (start.turn) {
            std::vector<DecodedVideoPicture> decoded =
                start.turn->decoder->decode(start.turn->packet.get());
            if (!link.withEngine([&](MyCAOpenGLLayer &engine) {
                    NamedLockGuard threadLock(engine.bitmapDataThreadMutex);
                    outcome = engine.finishPixelPass(*start.turn, std::move(decoded));
                })) {
                return;
            }
        }
        if (outcome == PixelPassOutcome::Idle || outcome == PixelPassOutcome::DroppedLatePacket) {
            sleepForIdleTurn();
        }
    }
}

double MyCAOpenGLLayer::videoFrameRate() const {
    if (!pFormatCtx || videoStreamIdx < 0) {
        return 0.0;
    }
    const AVStream *stream = pFormatCtx->streams[videoStreamIdx];
    return videoFrameRateFor(stream->avg_frame_rate, stream->r_frame_rate);
}

PixelPassOutcome MyCAOpenGLLayer::addBitmapDataOnePass() {
    NamedLockGuard threadLock(bitmapDataThreadMutex);
    PixelPassStart start = beginPixelPass();
    if (!start.turn) {
        return start.outcome;
    }
    return finishPixelPass(*start.turn, start.turn->decoder->decode(start.turn->packet.get()));
}

MyCAOpenGLLayer::PixelPassStart MyCAOpenGLLayer::beginPixelPass() {
    if (!videoDecoder) {
        // The decoder was left to a thread abandoned in a decode: the video
        // packets go unread rather than pile up.
        while (getVideoPacket() != nullptr) {
        }
        removeVideoPacket();
        return {};
    }
    if (!pFormatCtx || videoStreamIdx < 0) {
        return {};
    }
    const double rate = rateValue.load();
    if (rate == 0.0) {
        return {};
    }
    const double fps = videoFrameRate();
    const double nowSec = currentTimeSec();
    const std::size_t pictureBytes =
        bitmapByteCountFor(bitmapLayoutFor(pixelFormatModeValue.load(), is10bitModeValue),
                           videoDecoder->context().width, videoDecoder->context().height);
    const int wanted =
        std::min(wantedBitmapQueueLength(fileDurationSecValue, startTimeSec(), nowSec, fps),
                 bitmapQueueLimitForPictureBytes(pictureBytes));
    const VideoDecoderDrainState drainState = videoDecoderDrainState.load();
    const bool decoderHoldsPictures = drainState == VideoDecoderDrainState::EndOfFileRead ||
                                      drainState == VideoDecoderDrainState::Draining;
    if (pixelPassActionFor(rate, wanted, pictures.count(), packets.videoCount(),
                           packets.audioCount(), decoderHoldsPictures) == PixelPassAction::Sleep) {
        return {};
    }

    VideoDecodingTurn turn;
    turn.decoder = videoDecoder;
    turn.timeBase = pFormatCtx->streams[videoStreamIdx]->time_base;
    const AVPacket *packet = getVideoPacket();
    if (packet == nullptr) {
        if (decoderHoldsPictures) {
            return {PixelPassOutcome::NoPictureYet, std::move(turn)};
        }
        // Once the decoder has given its last picture nothing can come before
        // a seek: idle instead of trying again at once.
        return {drainState == VideoDecoderDrainState::Drained ? PixelPassOutcome::Idle
                                                              : PixelPassOutcome::NoUnreadPacket,
                std::nullopt};
    }

    const std::optional<double> packetTimeSec =
        packet->pts == AV_NOPTS_VALUE
            ? std::nullopt
            : std::optional<double>(secondsOfStreamTimestamp(packet->pts, turn.timeBase));
    const double seekTargetSec = seekingMovieTimeSec.load();
    const LateVideoPacketJudgement judgement =
        judgeLateVideoPacket(packetTimeSec, (packet->flags & AV_PKT_FLAG_KEY) != 0, nowSec,
                             packets.videoCount(), seekTargetSec);
    if (judgement.seekingMovieTimeSec != seekTargetSec) {
        seekingMovieTimeSec = judgement.seekingMovieTimeSec;
    }
    if (judgement.drop) {
        removeVideoPacket();
        return {PixelPassOutcome::DroppedLatePacket, std::nullopt};
    }
    // A reference of the turn's own: the list may be emptied while a decode
    // the engine gave up on still reads the packet.
    turn.packet = makePacket();
    if (!turn.packet || av_packet_ref(turn.packet.get(), packet) < 0) {
        return {};
    }
    return {PixelPassOutcome::NoPictureYet, std::move(turn)};
}

PixelPassOutcome MyCAOpenGLLayer::finishPixelPass(const VideoDecodingTurn &turn,
                                                  std::vector<DecodedVideoPicture> decoded) {
    if (!turn.packet) {
        videoDecoderDrainState = VideoDecoderDrainState::Draining;
        if (!decoded.empty()) {
            // No packet was fed for this picture: without a time of its own
            // it takes the running next time.
            queueDecodedPicture(decoded.front(), turn);
            removeVideoPacket();
            return PixelPassOutcome::QueuedPicture;
        }
        if (releaseHeldHardwarePicture()) {
            return PixelPassOutcome::QueuedPicture;
        }
        videoDecoderDrainState = VideoDecoderDrainState::Drained;
        return PixelPassOutcome::Idle;
    }
    // The packets read so far stay in the list until a picture comes out, and
    // are then freed together: a packet the decoder refuses stays read and
    // goes with the next picture.
    for (DecodedVideoPicture &picture : decoded) {
        queueDecodedPicture(picture, turn);
    }
    if (decoded.empty()) {
        return PixelPassOutcome::NoPictureYet;
    }
    removeVideoPacket();
    return PixelPassOutcome::QueuedPicture;
}

void MyCAOpenGLLayer::noteVideoPacketReadFailure() {
    // A read error ends the packets as the end of the file does: the decoder
    // still gives back the pictures it holds.
    auto feeding = VideoDecoderDrainState::Feeding;
    videoDecoderDrainState.compare_exchange_strong(feeding, VideoDecoderDrainState::EndOfFileRead);
}

void MyCAOpenGLLayer::queueDecodedPicture(DecodedVideoPicture &picture,
                                          const VideoDecodingTurn &turn) {
    const AVFrame *frame = picture.frame.get();
    if (turn.decoder->isHardware() && !picture.nv12) {
        noteSoftwarePictureFromHardwareDecoder();
    } else if (picture.nv12) {
        logHardwareDownloadFailureOnce(picture);
        // The seek's picture is shown as it comes, timed by its own stamp.
        if (!pictures.isSeekPreviewDue()) {
            queueHardwarePicture(picture, turn.decoder->context().has_b_frames);
            return;
        }
    }
    const AVPacket *packet = turn.packet.get();
    const PictureTime time = pictureTimeFor(frame->best_effort_timestamp,
                                            packet != nullptr ? packet->pts : AV_NOPTS_VALUE,
                                            packet != nullptr ? packet->dts : AV_NOPTS_VALUE,
                                            turn.timeBase, gNextVideoFramePtsSec.load());
    gNextVideoFramePtsSec = time.nextVideoFramePtsSec;
    addDecodedPictureToQueue(picture, time.ptsSec);
}

void MyCAOpenGLLayer::noteInterlacedFrame(const AVFrame *frame) {
    if (frame->interlaced_frame == 0) {
        return;
    }
    int progressiveMode = kPixelFormat420p8;
    pixelFormatModeValue.compare_exchange_strong(progressiveMode, kPixelFormat420p8Interlaced);
    if (!isInterlacedValue.exchange(true)) {
        // Posted on this thread; observers move their work to the main thread.
        NotificationCenter::defaultCenter().post(kIsInterlacedNotification, this);
    }
}

BitmapLayout MyCAOpenGLLayer::softwareLayoutNotingInterlacing(const AVFrame *frame) {
    noteInterlacedFrame(frame);
    return bitmapLayoutFor(pixelFormatModeValue.load(), is10bitModeValue);
}

BitmapData MyCAOpenGLLayer::softwareBitmapOf(const AVFrame *frame, double ptsSec) {
    const BitmapLayout layout = softwareLayoutNotingInterlacing(frame);
    BitmapBytes bitmap(bitmapByteCountFor(layout, frame->width, frame->height));
    if (frameFitsLayout(*frame, layout)) {
        convertPictureToBitmap(layout, planarViewOf(*frame), frame->top_field_first != 0,
                               bitmap.data());
    } else {
        // A picture the layout cannot read is shown blank, keeping its time slot.
        std::fill(bitmap.begin(), bitmap.end(), std::uint8_t{0});
    }
    return BitmapData{std::move(bitmap), ptsSec, frame->width, frame->height, layout};
}

void MyCAOpenGLLayer::addBitmapDataToQueueWithAVFrame(const AVFrame *frame, double ptsSec,
                                                      double /*fps*/) {
    pictures.addOrMakeSeekPreview(softwareBitmapOf(frame, ptsSec));
}

void MyCAOpenGLLayer::addDecodedPictureToQueue(DecodedVideoPicture &picture, double ptsSec) {
    const AVFrame *frame = picture.frame.get();
    if (!picture.nv12) {
        pictures.addOrMakeSeekPreview(softwareBitmapOf(frame, ptsSec));
        return;
    }
    pictures.addOrMakeSeekPreview(BitmapData{std::move(*picture.nv12), ptsSec, frame->width,
                                             frame->height, BitmapLayout::Nv12From420p8});
}

bool MyCAOpenGLLayer::decodingJustOneVideoFrameForNormal(const AVPacket *packet, double /*fps*/) {
    if (!videoDecoder || !pFormatCtx || videoStreamIdx < 0 || packet == nullptr) {
        return false;
    }
    // The first picture out is the one judged; any other waiting in the
    // decoder only made room for the packet.
    std::vector<DecodedVideoPicture> decoded = videoDecoder->decode(packet);
    if (decoded.empty() || decoded.front().frame->key_frame == 0) {
        return false;
    }
    DecodedVideoPicture &picture = decoded.front();
    logHardwareDownloadFailureOnce(picture);
    // The preview's time is not used for drawing; the picture's own time
    // serves, and the time given to untimed pictures is left alone.
    const PictureTime time = pictureTimeFor(
        picture.frame->best_effort_timestamp, packet->pts, packet->dts,
        pFormatCtx->streams[videoStreamIdx]->time_base, gNextVideoFramePtsSec.load());
    addDecodedPictureToQueue(picture, time.ptsSec);
    return true;
}

}  // namespace tolvane
