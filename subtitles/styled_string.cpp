#include "subtitles/styled_string.h"

#include <algorithm>
#include <cmath>

namespace tolvane::subtitles {

namespace {

int channelByte(double channel) { return std::clamp(int(std::lround(channel * 255.0)), 0, 255); }

}  // namespace

QString CaptionColor::hexName() const {
    return QStringLiteral("#%1%2%3")
        .arg(channelByte(red), 2, 16, QLatin1Char('0'))
        .arg(channelByte(green), 2, 16, QLatin1Char('0'))
        .arg(channelByte(blue), 2, 16, QLatin1Char('0'))
        .toUpper();
}

StyledString::StyledString(const QString &text, const CaptionTextAttributes &attributes) {
    append(text, attributes);
}

void StyledString::append(QStringView text, const CaptionTextAttributes &attributes) {
    if (text.isEmpty()) {
        return;
    }
    if (!runs_.empty() && runs_.back().attributes == attributes) {
        runs_.back().length += text.size();
    } else {
        runs_.push_back({text_.size(), text.size(), attributes});
    }
    text_.append(text);
}

const CaptionTextAttributes &StyledString::attributesAt(qsizetype index) const {
    const auto found = std::upper_bound(
        runs_.begin(), runs_.end(), index,
        [](qsizetype value, const CaptionAttributeRun &run) { return value < run.start; });
    return std::prev(found)->attributes;
}

}  // namespace tolvane::subtitles
