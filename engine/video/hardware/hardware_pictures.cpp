// The engine's hooks into hardware decoding: choosing it at open, and the
// way of a hardware picture from the decoder to the bitmap list.

#include <QFile>

#include "base/log.h"
#include "engine/clock/stream_time.h"
#include "engine/my_ca_opengl_layer.h"
#include "engine/video/hardware/pts_check.h"

namespace tolvane {

namespace {

std::optional<std::int64_t> stampOrNothing(std::int64_t stamp) {
    return stamp == AV_NOPTS_VALUE ? std::nullopt : std::optional<std::int64_t>(stamp);
}

}  // namespace

std::unique_ptr<HardwareVideoDecoding> MyCAOpenGLLayer::openHardwareDecodingForVideoDecoder(
    const QString &path, AVCodecContext &context) {
    isMacSupportH264AccValue = false;
    const AVStream *stream = pFormatCtx->streams[videoStreamIdx];
    if (!isUseH264AccValue) {
        hardwareDecodingReasonValue = QStringLiteral("hardware decoding is off in the settings");
        return nullptr;
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
        return nullptr;
    }

    decoding->attachTo(context);
    hardwareDecodingReasonValue.clear();
    isMacSupportH264AccValue = true;
    hasLoggedHardwareDownloadFailure = false;
    const int flag = checkPTS(encodedPath.constData());
    {
        NamedLockGuard lock(hardwarePictureOrderMutex);
        flagMessPTSValue = flag;
        hardwarePictureOrder.reset(secondsPerStreamUnit(stream->time_base), videoFrameRate(), flag);
    }
    logInfo(QStringLiteral("H.264 decoded in hardware (%1), time stamps %2")
                .arg(QLatin1String(decoding->deviceName()), flag == kFlagMessPTSUnusable
                                                                ? QStringLiteral("unusable")
                                                                : QStringLiteral("usable")));
    return decoding;
}

void MyCAOpenGLLayer::logHardwareDownloadFailureOnce(const DecodedVideoPicture &picture) {
    if (picture.downloadFailure.empty() || hasLoggedHardwareDownloadFailure) {
        return;
    }
    hasLoggedHardwareDownloadFailure = true;
    logWarning(QStringLiteral("hardware picture shown black: %1")
                   .arg(QString::fromStdString(picture.downloadFailure)));
}

void MyCAOpenGLLayer::queueHardwarePicture(DecodedVideoPicture &picture, int decoderDelayPictures) {
    const AVFrame &frame = *picture.frame;
    BitmapData bitmap{std::move(*picture.nv12), 0.0, frame.width, frame.height,
                      BitmapLayout::Nv12From420p8};
    std::optional<HardwarePictureOrder<BitmapData>::Released> released;
    {
        NamedLockGuard lock(hardwarePictureOrderMutex);
        // The decoder hands back the decoding stamp of each picture's own
        // packet through reordered_opaque (set before each send).
        released = hardwarePictureOrder.properImageBufferAndPTS(
            std::move(bitmap), stampOrNothing(frame.pts), stampOrNothing(frame.reordered_opaque),
            decoderDelayPictures, gNextVideoFramePtsSec.load());
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
