#include <QTextStream>

#include "engine/my_ca_opengl_layer.h"
#include "probe_commands.h"

namespace tolvane::probe {

int runTracksCommand(const QStringList &arguments) {
    if (arguments.size() != 1) {
        QTextStream(stderr) << "usage: tolvane-probe tracks FILE\n";
        return 2;
    }
    MyCAOpenGLLayer engine;
    const QString result = engine.openMovieFile(arguments.first());
    const bool opened = result == QLatin1String(kOpenSucceeded);
    printJson(QVariantMap{
        {QStringLiteral("result"), result},
        {QStringLiteral("tracks"), opened ? engine.tracks().toVariantMap() : QVariantMap{}},
        {QStringLiteral("fileDurationSec"), engine.fileDurationSec()},
        {QStringLiteral("pixelFormatMode"), engine.pixelFormatMode()},
        {QStringLiteral("isUglyKeyframe"), engine.isUglyKeyframe()},
        {QStringLiteral("isQuad"), engine.isQuad()},
        // Whether hardware decoding would be used with the setting on, and why not.
        {QStringLiteral("isMacSupportH264Acc"), engine.isMacSupportH264Acc()},
        {QStringLiteral("hardwareDecodingReason"), engine.hardwareDecodingReason()},
        {QStringLiteral("flagMessPTS"), engine.flagMessPTS()},
        {QStringLiteral("durationSecOfMovieFile"),
         MyCAOpenGLLayer::durationSecOfMovieFile(arguments.first())},
    });
    return opened ? 0 : 1;
}

}  // namespace tolvane::probe
