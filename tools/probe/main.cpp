// tolvane-probe: runs the engine and the subtitle code without a window and
// prints what they produce as JSON, for diagnosis and for checks from outside.

#include <QGuiApplication>
#include <QJsonDocument>
#include <QTextStream>
#include <cstdio>
#include <functional>
#include <map>

#include "base/localized_strings.h"
#include "probe_commands.h"

namespace tolvane::probe {

void printJson(const QVariant &document) {
    const QByteArray json = QJsonDocument::fromVariant(document).toJson(QJsonDocument::Compact);
    std::fwrite(json.constData(), 1, std::size_t(json.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

}  // namespace tolvane::probe

namespace {

struct Subcommand {
    std::function<int(const QStringList &)> run;
    const char *usage;
};

const std::map<QString, Subcommand> &subcommands() {
    static const std::map<QString, Subcommand> table = {
        {QStringLiteral("tracks"), {tolvane::probe::runTracksCommand, "tracks FILE"}},
        {QStringLiteral("play"),
         {tolvane::probe::runPlayCommand,
          "play FILE [--seek SEC] [--for SEC] [--audio-track IDX]"}},
        {QStringLiteral("frames"),
         {tolvane::probe::runFramesCommand,
          "frames FILE [--count N] [--hardware-decoding on|off]"}},
        {QStringLiteral("series"), {tolvane::probe::runSeriesCommand, "series FILE_A FILE_B"}},
        {QStringLiteral("playlist"),
         {tolvane::probe::runPlaylistCommand, "playlist [--where DIR] PATH..."}},
        {QStringLiteral("records"), {tolvane::probe::runRecordsCommand, "records [--config DIR]"}},
        {QStringLiteral("parse"),
         {tolvane::probe::runParseCommand, "parse FILE [--type smi|srt] [--encoding NAME]"}},
        {QStringLiteral("subtitles"),
         {tolvane::probe::runSubtitlesCommand,
          "subtitles VIDEO [--encoding-item N] [--where DIR] [--bdmv]"}},
        {QStringLiteral("captions"),
         {tolvane::probe::runCaptionsCommand,
          "captions VIDEO --at MS[,MS...] [--toggle ROW[,ROW...]] [--delay MS] [--integrated]"}},
    };
    return table;
}

int printUsage() {
    QTextStream err(stderr);
    err << "usage: tolvane-probe COMMAND [ARGS]\ncommands:\n";
    for (const auto &[name, command] : subcommands()) {
        err << "  " << command.usage << '\n';
    }
    return 2;
}

}  // namespace

int main(int argc, char **argv) {
    // A QGuiApplication for measuring caption text with the system font; the
    // probe never shows a window, so it needs no display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication application(argc, argv);
    tolvane::installLocalizedStrings();
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        return printUsage();
    }
    const auto found = subcommands().find(arguments.takeFirst());
    if (found == subcommands().end()) {
        return printUsage();
    }
    return found->second.run(arguments);
}
