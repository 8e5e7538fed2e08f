#include "open_result_message.h"

#include "base/localized_strings.h"

namespace tolvane {
namespace {

struct ListedOpenResult {
    const char *codePrefix;
    const char *messageKey;
};

constexpr ListedOpenResult kListedOpenResults[] = {
    {"-2002", "NOVIDEOTRACK"}, {"-2003", "NOAUDIOTRACK"}, {"-2004", "NOVIDEOCODEC"},
    {"-2005", "NOAUDIOCODEC"}, {"-2008", "NOAUDIOCHNNL"},
};

constexpr qsizetype kCodeLength = 5;
constexpr qsizetype kMessageStart = kCodeLength + 2;  // after the code and ": "

}  // namespace

QString messageForOpenResult(const QString &result) {
    for (const ListedOpenResult &listed : kListedOpenResults) {
        if (result.startsWith(QLatin1String(listed.codePrefix))) {
            return localizedString(listed.messageKey);
        }
    }
    if (result.endsWith(QLatin1String(": (null)")) || result.size() <= kMessageStart) {
        return result.left(kCodeLength);
    }
    return result.mid(kMessageStart);
}

}  // namespace tolvane
