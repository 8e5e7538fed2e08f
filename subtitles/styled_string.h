#pragma once

// The styled text of one caption row: plain text plus attribute runs. The
// caption drawing reads it; nothing here depends on a text-document class.
// Thread-safety: a value type; distinct objects may be used from any thread.

#include <QString>
#include <vector>

namespace tolvane::subtitles {

// Red, green, blue and alpha in 0..1, as the colour computations produce them.
struct CaptionColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    // "#RRGGBB", each channel rounded to 0..255.
    QString hexName() const;
    bool operator==(const CaptionColor &) const = default;
};

struct CaptionTextAttributes {
    QString fontFamily;
    int fontSize = 0;
    bool italic = false;
    bool bold = false;
    CaptionColor fillColor;
    CaptionColor strokeColor;
    // Negative widths stroke and fill at once; 0 fills only.
    double strokeWidth = 0.0;
    // "", "i", "b" or "ib": the italic and bold spans, for the caption layout.
    QString marker;

    bool operator==(const CaptionTextAttributes &) const = default;
};

struct CaptionAttributeRun {
    qsizetype start = 0;
    qsizetype length = 0;
    CaptionTextAttributes attributes;

    bool operator==(const CaptionAttributeRun &) const = default;
};

// Runs cover the text from start to end without gaps, in order; neighbouring
// runs always differ in their attributes.
class StyledString {
public:
    StyledString() = default;
    StyledString(const QString &text, const CaptionTextAttributes &attributes);
    // `runs` must tile `text` as described above.
    StyledString(const QString &text, std::vector<CaptionAttributeRun> runs)
        : text_(text), runs_(std::move(runs)) {}

    const QString &text() const { return text_; }
    const std::vector<CaptionAttributeRun> &runs() const { return runs_; }

    // Appends `text` with `attributes`, merging with the last run when equal.
    void append(QStringView text, const CaptionTextAttributes &attributes);
    // Index must lie inside the text.
    const CaptionTextAttributes &attributesAt(qsizetype index) const;

    bool operator==(const StyledString &) const = default;

private:
    QString text_;
    std::vector<CaptionAttributeRun> runs_;
};

}  // namespace tolvane::subtitles
