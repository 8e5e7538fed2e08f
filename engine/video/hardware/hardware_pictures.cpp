// The engine's hooks into hardware decoding: choosing it at open, and the
// way of a hardware picture from the decoder to the bitmap list.

#include <QFile>

#include "base/log.h"
#include "engine/clock/stream_time.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/hardware/nv12_bitmap.h"
#include "engine/video/hardware/pts_check.h"

namespace tolvane {

namespace {

constexpr std::uint8_t kBlackLuma = 16;
constexpr std::uint8_t kNeutralChroma = 128;

std::optional<std::int64_t> stampOrNothing(std::int64_t stamp) {
    return stamp == AV_NOPTS_VALUE ? std::nullopt : std::optional<std::int64_t>(stamp);
}

}  // namespace

void MyCAOpenGLLayer::openHardwareDecodingForVideoDecoder(const QString &path) {
    isMacSupportH264AccValue = false;
    hardwareDecoding.reset();
    const AVStream *stream = pFormatCtx->streams[videoStreamIdx];
    if (!isUseH264AccValue) {
        hardwareDecodingReasonValue = QStringLiteral("hardware decoding is off in the settings");
        return;
    }
    std::optional<std::string> refusal = hardwareDecodingRefusalFor(*stream->codecpar);
    if (!refusal && stream->codecpar->field_order != AV_FIELD_UNKNOWN &&
        stream->codecpar->field_order != AV_FIELD_PROGRESSIVE) {
        // The software path shows interlaced video by its first field; a
        // download would show both, combed.
        refusal = "the video is interlaced";
    }
    const QByteArray encodedPath = QFile::encodeName(path);
    std::unique_ptr<HardwareVideoDecoding> decoding;
    if (!refusal) {
        std::string deviceFailures;
        decoding = HardwareVideoDecoding::create(vCodec, deviceFailures);
        if (!decoding) {
            refusal = "no device: " + deviceFailures;
        }
    }
    if (!refusal) {
        refusal = tryFirstPicturesInHardware(encodedPath.constData(), videoStreamIdx, *decoding);
    }
    if (refusal) {
        hardwareDecodingReasonValue = QString::fromStdString(*refusal);
        // Only a stream that could have been decoded in hardware is worth a line.
        if (stream->codecpar->codec_id == AV_CODEC_ID_H264) {
            logInfo(
                QStringLiteral("H.264 decoded in software: %1").arg(hardwareDecodingReasonValue));
        }
        return;
    }

    hardwareDecoding = std::move(decoding);
    hardwareDecoding->attachTo(*vCodecCtx);
    hardwareDecodingReasonValue.clear();
    isMacSupportH264AccValue = true;
    hasLoggedHardwareDownloadFailure = false;
    const int flag = checkPTS(encodedPath.constData());
    NamedLockGuard lock(hardwarePictureOrderMutex);
    flagMessPTSValue = flag;
    hardwarePictureOrder.reset(secondsPerStreamUnit(stream->time_base), videoFrameRate(), flag);
    logInfo(QStringLiteral("H.264 decoded in hardware (%1), time stamps %2")
                .arg(QLatin1String(hardwareDecoding->deviceName()),
                     flag == kFlagMessPTSUnusable ? QStringLiteral("unusable")
                                                  : QStringLiteral("usable")));
}

BitmapBytes MyCAOpenGLLayer::downloadHardwarePicture(const AVFrame *frame) {
    BitmapBytes bitmap(nv12ByteCountFor(frame->width, frame->height));
    std::string reason;
    if (hardwareDecoding->transferToNv12(*frame, bitmap.data(), reason)) {
        return bitmap;
    }
    if (!hasLoggedHardwareDownloadFailure) {
        hasLoggedHardwareDownloadFailure = true;
        logWarning(
            QStringLiteral("hardware picture shown black: %1").arg(QString::fromStdString(reason)));
    }
    // Black, keeping the picture's time slot.
    const std::size_t chroma = nv12ChromaOffsetFor(frame->width, frame->height);
    std::fill(bitmap.begin(), bitmap.begin() + std::ptrdiff_t(chroma), kBlackLuma);
    std::fill(bitmap.begin() + std::ptrdiff_t(chroma), bitmap.end(), kNeutralChroma);
    return bitmap;
}

void MyCAOpenGLLayer::queueHardwarePicture(const AVFrame *frame) {
    BitmapData picture{downloadHardwarePicture(frame), 0.0, frame->width, frame->height,
                       BitmapLayout::Nv12From420p8};
    std::optional<HardwarePictureOrder<BitmapData>::Released> released;
    {
        NamedLockGuard lock(hardwarePictureOrderMutex);
        // The decoder hands back the decoding stamp of each picture's own
        // packet through reordered_opaque (set before each send).
        released = hardwarePictureOrder.properImageBufferAndPTS(
            std::move(picture), stampOrNothing(frame->pts), stampOrNothing(frame->reordered_opaque),
            vCodecCtx->has_b_frames, gNextVideoFramePtsSec.load());
    }
    if (released) {
        gNextVideoFramePtsSec = released->nextVideoFramePtsSec;
        addBitmapData(std::move(released->picture.data), released->ptsSec, released->picture.width,
                      released->picture.height, released->picture.layout);
    }
}

void MyCAOpenGLLayer::noteSoftwarePictureFromHardwareDecoder() {
    if (!isMacSupportH264AccValue.exchange(false)) {
        return;
    }
    logInfo(QStringLiteral("H.264 decoding went on in software: the device gave the stream up"));
    while (releaseHeldHardwarePicture()) {
    }
}

bool MyCAOpenGLLayer::releaseHeldHardwarePicture() {
    std::optional<HardwarePictureOrder<BitmapData>::Released> released;
    {
        NamedLockGuard lock(hardwarePictureOrderMutex);
        released = hardwarePictureOrder.releaseFirst(gNextVideoFramePtsSec.load());
    }
    if (!released) {
        return false;
    }
    gNextVideoFramePtsSec = released->nextVideoFramePtsSec;
    addBitmapData(std::move(released->picture.data), released->ptsSec, released->picture.width,
                  released->picture.height, released->picture.layout);
    return true;
}

}  // namespace tolvane
