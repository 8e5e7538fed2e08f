#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <memory>

#include "base/log.h"
#include "subtitles/tag_processor.h"

namespace tolvane::subtitles {

namespace {

constexpr int kSystemFontPixelSize = 13;
// Shaping keeps several arrays per character; measuring a multi-megabyte
// line in pieces bounds that memory. The seams lose at most a kerning pair.
constexpr qsizetype kMeasuredPieceLength = 4096;

double estimatedTextWidth(const QString &text) {
    double width = 0.0;
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        const bool wide = unit >= 0x1100 && !(unit >= 0xD800 && unit <= 0xDFFF);
        width += wide ? double(kSystemFontPixelSize) : 6.5;
    }
    return width;
}

}  // namespace

TagProcessor::TextWidthMeasure systemFontTextWidthMeasure() {
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr) {
        static const bool warned = [] {
            logWarning(
                QStringLiteral("caption wrapping: no QGuiApplication, estimating text widths"));
            return true;
        }();
        (void)warned;
        return estimatedTextWidth;
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(kSystemFontPixelSize);
    auto metrics = std::make_shared<const QFontMetricsF>(font);
    return [metrics](const QString &text) {
        double width = 0.0;
        for (qsizetype start = 0; start < text.size();) {
            qsizetype length = std::min(kMeasuredPieceLength, text.size() - start);
            if (start + length < text.size() && text[start + length - 1].isHighSurrogate()) {
                --length;
            }
            width += metrics->horizontalAdvance(QStringView(text).sliced(start, length).toString());
            start += length;
        }
        return width;
    };
}

}  // namespace tolvane::subtitles
