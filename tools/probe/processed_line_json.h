#pragma once

// How the probe prints processed caption lines, shared by the subcommands
// that show caption text.

#include <QString>
#include <QVariantList>
#include <QVariantMap>

#include "json_stream.h"
#include "subtitles/tag_processor.h"

namespace tolvane::probe {

// The fill text of each row, top to bottom.
QVariantList rowsOfProcessedLine(const subtitles::ProcessedLine &line);

// {"key", "rows", "colors", "marks", "ruby"} for the line under `key`: colours
// other than `defaultColor`, italic/bold marks and ruby annotations, each as
// [row key, first column, last column, value].
QVariantMap cueOfProcessedLine(const QString &key, const subtitles::ProcessedLine &line,
                               const subtitles::CaptionColor &defaultColor);
// The same cue streamed, byte for byte as the variant form prints.
void writeCueOfProcessedLine(JsonStream &json, const QString &key,
                             const subtitles::ProcessedLine &line,
                             const subtitles::CaptionColor &defaultColor);

}  // namespace tolvane::probe
