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

StyledString::StyledString(const QString &text, SharedCaptionAttributes attributes) : text_(text) {
    if (!text_.isEmpty()) {
        runs_.push_back({0, text_.size(), std::move(attributes)});
    }
}

const CaptionTextAttributes &StyledString::attributesAt(qsizetype index) const {
    const auto found =
        std::upper_bound(runs_.begin(), runs_.end(), index,
                         [](qsizetype value, const SharedRun &run) { return value < run.start; });
    return *std::prev(found)->attributes;
}

bool StyledString::operator==(const StyledString &other) const {
    return text_ == other.text_ &&
           std::equal(runs_.begin(), runs_.end(), other.runs_.begin(), other.runs_.end(),
                      [](const SharedRun &a, const SharedRun &b) {
                          return a.start == b.start && a.length == b.length &&
                                 (a.attributes == b.attributes || *a.attributes == *b.attributes);
                      });
}

}  // namespace tolvane::subtitles
