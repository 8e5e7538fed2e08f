#pragma once

#include <QString>
#include <vector>

namespace tolvane {

// A caption file found for a video, with where it was found: "v" beside the
// video, "k" in the chosen folder's "Tolvane" subfolder, "b" there under the
// disc title of a BDMV structure; "*" appended for the asterisk name form.
struct FoundSubtitleFile {
    QString url;  // canonical absolute path
    QString ptype;
};

// The caption files with extension `type` that belong to the video at
// `videoPath`, in search order. The passes stop after the first that finds
// anything, so a file beside the video hides the chosen folder. The asterisk
// form ("movie*.smi" for "movie.avi") is a literal name, never a pattern.
// Names and extensions match without regard to case ("Movie.SMI").
// `whereFolder` empty means no chosen folder.
std::vector<FoundSubtitleFile> realSubtitleURL(const QString &videoPath, const QString &type,
                                               bool bdmv, const QString &whereFolder);

// The component just before the first one named exactly "BDMV" in `path`, or
// empty when there is none or "BDMV" comes first.
QString discTitleInPath(const QString &path);

}  // namespace tolvane
