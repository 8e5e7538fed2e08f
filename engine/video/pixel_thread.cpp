// The pixel thread: video packets decoded in software into timed bitmaps.

#include "base/notification_center.h"
#include "engine/clock/stream_time.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/bitmap_conversion.h"
#include "engine/video/decoder_feed.h"

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
    if (pixelThread) {
        return;
    }
    pixelThread = std::make_unique<WorkerThread>(
        "tolvane-pixel", [this](const std::function<bool()> &isCancelled) {
            addBitmapDataToQueueOnThreadOnlyOne(isCancelled);
        });
    pixelThread->start();
}

bool MyCAOpenGLLayer::stopPixelThread() {
    if (!pixelThread) {
        return true;
    }
    const bool stopped = pixelThread->stop();
    pixelThread.reset();
    return stopped;
}

void MyCAOpenGLLayer::addBitmapDataToQueueOnThreadOnlyOne(
    const std::function<bool()> &isCancelled) {
    NamedLockGuard threadLock(bitmapDataThreadMutex);
    while (!isCancelled()) {
        const PixelPassOutcome outcome = addBitmapDataOnePass();
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
    if (!vCodecCtx || !pFormatCtx || videoStreamIdx < 0) {
        return PixelPassOutcome::Idle;
    }
    const double rate = rateValue.load();
    if (rate == 0.0) {
        return PixelPassOutcome::Idle;
    }
    const double fps = videoFrameRate();
    const double nowSec = currentTimeSec();
    const std::size_t pictureBytes =
        bitmapByteCountFor(bitmapLayoutFor(pixelFormatModeValue.load(), is10bitModeValue),
                           vCodecCtx->width, vCodecCtx->height);
    const int wanted =
        std::min(wantedBitmapQueueLength(fileDurationSecValue, startTimeSec(), nowSec, fps),
                 bitmapQueueLimitForPictureBytes(pictureBytes));
    const VideoDecoderDrainState drainState = videoDecoderDrainState.load();
    const bool decoderHoldsPictures = drainState == VideoDecoderDrainState::EndOfFileRead ||
                                      drainState == VideoDecoderDrainState::Draining;
    if (pixelPassActionFor(rate, wanted, pictures.count(), packets.videoCount(),
                           packets.audioCount(), decoderHoldsPictures) == PixelPassAction::Sleep) {
        return PixelPassOutcome::Idle;
    }

    const AVPacket *packet = getVideoPacket();
    if (packet == nullptr) {
        if (drainVideoDecoderIntoQueue(fps)) {
            return PixelPassOutcome::QueuedPicture;
        }
        // Once the decoder has given its last picture nothing can come before
        // a seek: idle instead of trying again at once.
        return videoDecoderDrainState.load() == VideoDecoderDrainState::Drained
                   ? PixelPassOutcome::Idle
                   : PixelPassOutcome::NoUnreadPacket;
    }

    const AVRational timeBase = pFormatCtx->streams[videoStreamIdx]->time_base;
    const std::optional<double> packetTimeSec =
        packet->pts == AV_NOPTS_VALUE
            ? std::nullopt
            : std::optional<double>(secondsOfStreamTimestamp(packet->pts, timeBase));
    const double seekTargetSec = seekingMovieTimeSec.load();
    const LateVideoPacketJudgement judgement =
        judgeLateVideoPacket(packetTimeSec, (packet->flags & AV_PKT_FLAG_KEY) != 0, nowSec,
                             packets.videoCount(), seekTargetSec);
    if (judgement.seekingMovieTimeSec != seekTargetSec) {
        seekingMovieTimeSec = judgement.seekingMovieTimeSec;
    }
    if (judgement.drop) {
        removeVideoPacket();
        return PixelPassOutcome::DroppedLatePacket;
    }

    return decodeVideoPacketIntoQueue(packet, fps) ? PixelPassOutcome::QueuedPicture
                                                   : PixelPassOutcome::NoPictureYet;
}

bool MyCAOpenGLLayer::decodeVideoPacketIntoQueue(const AVPacket *packet, double fps) {
    if (!vFrame) {
        vFrame = makeFrame();
    }
    AVCodecContext *context = vCodecCtx.get();
    if (hardwareDecoding) {
        // Comes back on the packet's own picture, for the time-stamp rule.
        context->reordered_opaque = packet->dts;
    }
    bool queued = false;
    // The packets read so far stay in the list until a picture comes out, and
    // are then freed together: a packet the decoder refuses stays read and
    // goes with the next picture.
    sendPacketTakingWaitingPictures([&] { return avcodec_send_packet(context, packet); },
                                    [&] {
                                        if (avcodec_receive_frame(context, vFrame.get()) != 0) {
                                            return false;
                                        }
                                        queueDecodedPicture(vFrame.get(), packet, fps);
                                        av_frame_unref(vFrame.get());
                                        queued = true;
                                        return true;
                                    });
    if (!queued && avcodec_receive_frame(context, vFrame.get()) == 0) {
        queueDecodedPicture(vFrame.get(), packet, fps);
        av_frame_unref(vFrame.get());
        queued = true;
    }
    if (queued) {
        removeVideoPacket();
    }
    return queued;
}

void MyCAOpenGLLayer::noteVideoPacketReadFailure() {
    // A read error ends the packets as the end of the file does: the decoder
    // still gives back the pictures it holds.
    auto feeding = VideoDecoderDrainState::Feeding;
    videoDecoderDrainState.compare_exchange_strong(feeding, VideoDecoderDrainState::EndOfFileRead);
}

bool MyCAOpenGLLayer::drainVideoDecoderIntoQueue(double fps) {
    const VideoDecoderDrainState state = videoDecoderDrainState.load();
    if (state == VideoDecoderDrainState::Feeding || state == VideoDecoderDrainState::Drained) {
        return false;
    }
    if (!vFrame) {
        vFrame = makeFrame();
    }
    if (state == VideoDecoderDrainState::EndOfFileRead) {
        avcodec_send_packet(vCodecCtx.get(), nullptr);
        videoDecoderDrainState = VideoDecoderDrainState::Draining;
    }
    if (avcodec_receive_frame(vCodecCtx.get(), vFrame.get()) != 0) {
        if (releaseHeldHardwarePicture()) {
            return true;
        }
        videoDecoderDrainState = VideoDecoderDrainState::Drained;
        return false;
    }
    // No packet was fed for this picture: without a time of its own it takes
    // the running next time.
    const PacketPtr noPacket = makePacket();
    queueDecodedPicture(vFrame.get(), noPacket.get(), fps);
    av_frame_unref(vFrame.get());
    removeVideoPacket();
    return true;
}

void MyCAOpenGLLayer::queueDecodedPicture(const AVFrame *frame, const AVPacket *packetJustFed,
                                          double fps) {
    if (hardwareDecoding && !isHardwareFrame(frame)) {
        noteSoftwarePictureFromHardwareDecoder();
    } else if (isHardwareFrame(frame)) {
        // The seek's picture is shown as it comes, timed by its own stamp.
        if (!pictures.isSeekPreviewDue()) {
            queueHardwarePicture(frame);
            return;
        }
    }
    const PictureTime time = pictureTimeFor(
        frame->best_effort_timestamp, packetJustFed->pts, packetJustFed->dts,
        pFormatCtx->streams[videoStreamIdx]->time_base, gNextVideoFramePtsSec.load());
    gNextVideoFramePtsSec = time.nextVideoFramePtsSec;
    addBitmapDataToQueueWithAVFrame(frame, time.ptsSec, fps);
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

void MyCAOpenGLLayer::addBitmapDataToQueueWithAVFrame(const AVFrame *frame, double ptsSec,
                                                      double /*fps*/) {
    const bool isHardware = isHardwareFrame(frame);
    const BitmapLayout layout =
        isHardware ? BitmapLayout::Nv12From420p8 : softwareLayoutNotingInterlacing(frame);
    BitmapBytes bitmap;
    if (isHardware) {
        bitmap = downloadHardwarePicture(frame);
    } else {
        bitmap.resize(bitmapByteCountFor(layout, frame->width, frame->height));
        if (frameFitsLayout(*frame, layout)) {
            convertPictureToBitmap(layout, planarViewOf(*frame), frame->top_field_first != 0,
                                   bitmap.data());
        } else {
            // A picture the layout cannot read is shown blank, keeping its time slot.
            std::fill(bitmap.begin(), bitmap.end(), std::uint8_t{0});
        }
    }

    pictures.addOrMakeSeekPreview(
        BitmapData{std::move(bitmap), ptsSec, frame->width, frame->height, layout});
}

bool MyCAOpenGLLayer::decodingJustOneVideoFrameForNormal(const AVPacket *packet, double fps) {
    if (!vCodecCtx || !pFormatCtx || videoStreamIdx < 0 || packet == nullptr) {
        return false;
    }
    if (!vFrameForSeeking) {
        vFrameForSeeking = makeFrame();
    }
    AVCodecContext *context = vCodecCtx.get();
    // The first picture out is the one judged; any other waiting in the
    // decoder only makes room for the packet.
    bool gotPicture = false;
    FramePtr surplus;
    sendPacketTakingWaitingPictures(
        [&] { return avcodec_send_packet(context, packet); },
        [&] {
            if (!gotPicture) {
                gotPicture = avcodec_receive_frame(context, vFrameForSeeking.get()) == 0;
                return gotPicture;
            }
            if (!surplus) {
                surplus = makeFrame();
            }
            const bool got = avcodec_receive_frame(context, surplus.get()) == 0;
            av_frame_unref(surplus.get());
            return got;
        });
    if (!gotPicture) {
        gotPicture = avcodec_receive_frame(context, vFrameForSeeking.get()) == 0;
    }
    const bool shown = gotPicture && vFrameForSeeking->key_frame != 0;
    if (shown) {
        // The preview's time is not used for drawing; the picture's own time
        // serves, and the time given to untimed pictures is left alone.
        const PictureTime time = pictureTimeFor(
            vFrameForSeeking->best_effort_timestamp, packet->pts, packet->dts,
            pFormatCtx->streams[videoStreamIdx]->time_base, gNextVideoFramePtsSec.load());
        addBitmapDataToQueueWithAVFrame(vFrameForSeeking.get(), time.ptsSec, fps);
    }
    vFrameForSeeking.reset();
    return shown;
}

}  // namespace tolvane
