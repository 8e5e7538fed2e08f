#include <QTextStream>

extern "C" {
#include <libavutil/crc.h>
}

#include "engine/my_ca_opengl_layer.h"
#include "probe_commands.h"

namespace tolvane::probe {

namespace {

constexpr int kDefaultFrameCount = 10;
// Passes without a new picture after the file has been read to its end.
constexpr int kPassesBeforeGivingUp = 1000;

// The checksum zlib's crc32() and Python's zlib.crc32() give for the bytes.
QString crc32Of(const BitmapBytes &bytes) {
    const AVCRC *table = av_crc_get_table(AV_CRC_32_IEEE_LE);
    const std::uint32_t crc = av_crc(table, 0xFFFFFFFFu, bytes.data(), bytes.size()) ^ 0xFFFFFFFFu;
    return QStringLiteral("%1").arg(crc, 8, 16, QLatin1Char('0'));
}

}  // namespace

int runFramesCommand(const QStringList &arguments) {
    QString path;
    int count = kDefaultFrameCount;
    bool isUseH264Acc = true;
    bool usageOk = true;
    for (int i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--count") && i + 1 < arguments.size()) {
            count = arguments[++i].toInt(&usageOk);
            usageOk = usageOk && count >= 0;
        } else if (arguments[i] == QLatin1String("--hardware-decoding") &&
                   i + 1 < arguments.size()) {
            const QString value = arguments[++i];
            usageOk = value == QLatin1String("on") || value == QLatin1String("off");
            isUseH264Acc = value == QLatin1String("on");
        } else if (path.isEmpty() && !arguments[i].startsWith(QLatin1String("--"))) {
            path = arguments[i];
        } else {
            usageOk = false;
        }
        if (!usageOk) {
            break;
        }
    }
    if (!usageOk || path.isEmpty()) {
        QTextStream(stderr)
            << "usage: tolvane-probe frames FILE [--count N] [--hardware-decoding on|off]\n";
        return 2;
    }

    MyCAOpenGLLayer engine;
    engine.setIsUseH264Acc(isUseH264Acc);
    const QString result = engine.openMovieFile(path);
    if (result != QLatin1String(kOpenSucceeded)) {
        printJson(QVariantMap{{QStringLiteral("result"), result}});
        return 1;
    }
    // The packet and pixel passes run here in turn, as their threads would.
    // Nothing plays the sound, so audio packets are discarded as they come.
    engine.setRate(1.0);
    int printed = 0;
    int passesAtEnd = 0;
    while (printed < count && passesAtEnd < kPassesBeforeGivingUp) {
        const bool endOfFile = engine.addPacketOnePass() == PacketPassAction::Sleep;
        engine.removeAllAudioPackets();
        const PixelPassOutcome outcome = engine.addBitmapDataOnePass();
        passesAtEnd = endOfFile && outcome != PixelPassOutcome::QueuedPicture ? passesAtEnd + 1 : 0;
        while (engine.getBitmapData() != nullptr) {
        }
        for (const BitmapData &picture : engine.removeBitmapData()) {
            if (printed == count) {
                break;
            }
            printJson(QVariantMap{
                {QStringLiteral("index"), printed},
                {QStringLiteral("time"), picture.ptsSec},
                {QStringLiteral("width"), picture.width},
                {QStringLiteral("height"), picture.height},
                {QStringLiteral("bytes"), qulonglong(picture.data.size())},
                {QStringLiteral("pixelFormatMode"), engine.pixelFormatMode()},
                {QStringLiteral("checksum"), crc32Of(picture.data)},
            });
            ++printed;
        }
    }
    return 0;
}

}  // namespace tolvane::probe
