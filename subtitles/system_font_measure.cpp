#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <algorithm>
#include <limits>
#include <memory>

#include "base/log.h"
#include "subtitles/tag_processor.h"

namespace tolvane::subtitles {

namespace {

constexpr int kSystemFontPixelSize = 13;
// Shaping keeps several arrays per character; measuring a multi-megabyte
// line in pieces bounds that memory. The seams lose at most a kerning pair.
constexpr qsizetype kMeasuredPieceLength = 4096;

double estimatedWidth(const QString &text) {
    double width = 0.0;
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        const bool wide = unit >= 0x1100 && !(unit >= 0xD800 && unit <= 0xDFFF);
        width += wide ? double(kSystemFontPixelSize) : 6.5;
    }
    return width;
}

// Shaping a line costs far more than adding up the advances of its
// characters, and almost every caption line is far narrower than the wrapping
// width: the sum decides those, and only a line whose sum comes near the
// width is shaped. Kerning and ligatures move a width by a few pixels, never
// by a fifth. Serves one thread at a time, as its tag processor does.
class SystemFontMeasure {
public:
    explicit SystemFontMeasure(const QFont &font) : metrics(font) {}

    double width(const QString &text) {
        const double estimate = summedAdvances(text);
        if (estimate < TagProcessor::kWrapWidthThreshold * kSureMargin) {
            return estimate;
        }
        return shapedWidth(text);
    }

private:
    static constexpr double kSureMargin = 0.8;
    // Bounds the memory of a text that uses many distinct characters.
    static constexpr qsizetype kMaxCachedAdvances = 4096;

    double summedAdvances(const QString &text) {
        double sum = 0.0;
        for (const QChar character : text) {
            if (character.isSurrogate()) {
                return std::numeric_limits<double>::infinity();
            }
            const auto cached = advances.constFind(character.unicode());
            if (cached != advances.cend()) {
                sum += *cached;
                continue;
            }
            const double advance = metrics.horizontalAdvance(character);
            if (advances.size() < kMaxCachedAdvances) {
                advances.insert(character.unicode(), advance);
            }
            sum += advance;
            if (sum >= TagProcessor::kWrapWidthThreshold) {
                return sum;
            }
        }
        return sum;
    }

    double shapedWidth(const QString &text) const {
        double width = 0.0;
        for (qsizetype start = 0; start < text.size();) {
            qsizetype length = std::min(kMeasuredPieceLength, text.size() - start);
            if (start + length < text.size() && text[start + length - 1].isHighSurrogate()) {
                --length;
            }
            width += metrics.horizontalAdvance(QStringView(text).sliced(start, length).toString());
            start += length;
        }
        return width;
    }

    QFontMetricsF metrics;
    QHash<char16_t, double> advances;
};

}  // namespace

TagProcessor::TextWidthMeasure estimatedTextWidthMeasure() { return estimatedWidth; }

TagProcessor::TextWidthMeasure systemFontTextWidthMeasure() {
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr) {
        static const bool warned = [] {
            logWarning(
                QStringLiteral("caption wrapping: no QGuiApplication, estimating text widths"));
            return true;
        }();
        (void)warned;
        return estimatedWidth;
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(kSystemFontPixelSize);
    auto measure = std::make_shared<SystemFontMeasure>(font);
    return [measure](const QString &text) { return measure->width(text); };
}

}  // namespace tolvane::subtitles
