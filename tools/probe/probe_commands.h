#pragma once

#include <QStringList>

namespace tolvane::probe {

// Each subcommand takes its own arguments (without the subcommand's name),
// prints its JSON to standard output and returns the process exit status.
int runTracksCommand(const QStringList &arguments);
int runPlayCommand(const QStringList &arguments);
int runFramesCommand(const QStringList &arguments);
int runSeriesCommand(const QStringList &arguments);
int runPlaylistCommand(const QStringList &arguments);
int runRecordsCommand(const QStringList &arguments);
int runParseCommand(const QStringList &arguments);
int runSubtitlesCommand(const QStringList &arguments);
int runCaptionsCommand(const QStringList &arguments);

// Prints `document` as one line of JSON.
void printJson(const QVariant &document);

}  // namespace tolvane::probe
