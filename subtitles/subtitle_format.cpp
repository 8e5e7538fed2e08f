#include "subtitles/subtitle_format.h"

#include <algorithm>
#include <initializer_list>

#include "subtitles/text_scanning.h"

namespace tolvane::subtitles {

QString recognisedSubtitleFormat(QStringView text) {
    const QString lowered = asciiLowered(text);
    const auto containsAll = [&](std::initializer_list<QStringView> markers) {
        return std::all_of(markers.begin(), markers.end(),
                           [&](QStringView marker) { return lowered.contains(marker); });
    };
    if (containsAll({u"<sync", u"start", u"=", u"<p", u"class", u">"})) {
        return QStringLiteral("smi");
    }
    if (containsAll({u"-->", u":", u","})) {
        return QStringLiteral("srt");
    }
    return {};
}

}  // namespace tolvane::subtitles
