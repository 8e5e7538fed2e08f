#pragma once

// The styled text of one caption row: plain text plus attribute runs. The
// caption drawing reads it; nothing here depends on a text-document class.
// Thread-safety: a value type; distinct objects may be used from any thread.

#include <QString>
#include <cstddef>
#include <iterator>
#include <memory>
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

// One run as readers see it: the attributes stay where the string keeps them.
struct CaptionAttributeRun {
    qsizetype start = 0;
    qsizetype length = 0;
    const CaptionTextAttributes &attributes;
};

// Attributes are immutable once made; runs of many strings point at the same
// object, so that a track keeps each style it uses once.
using SharedCaptionAttributes = std::shared_ptr<const CaptionTextAttributes>;

// Runs cover the text from start to end without gaps, in order; neighbouring
// runs always differ in their attributes.
class StyledString {
public:
    struct SharedRun {
        qsizetype start = 0;
        qsizetype length = 0;
        SharedCaptionAttributes attributes;
    };

    // Iterates the runs as CaptionAttributeRun values.
    class Runs {
    public:
        class Iterator {
        public:
            using iterator_category = std::input_iterator_tag;
            using value_type = CaptionAttributeRun;
            using difference_type = std::ptrdiff_t;

            explicit Iterator(std::vector<SharedRun>::const_iterator at) : at_(at) {}
            CaptionAttributeRun operator*() const {
                return {at_->start, at_->length, *at_->attributes};
            }
            Iterator &operator++() {
                ++at_;
                return *this;
            }
            bool operator==(const Iterator &) const = default;

        private:
            std::vector<SharedRun>::const_iterator at_;
        };

        explicit Runs(const std::vector<SharedRun> &runs) : runs_(runs) {}
        Iterator begin() const { return Iterator(runs_.begin()); }
        Iterator end() const { return Iterator(runs_.end()); }
        std::size_t size() const { return runs_.size(); }

    private:
        const std::vector<SharedRun> &runs_;
    };

    StyledString() = default;
    StyledString(const QString &text, SharedCaptionAttributes attributes);
    // `runs` must tile `text` as described above, none without attributes.
    StyledString(const QString &text, std::vector<SharedRun> runs)
        : text_(text), runs_(std::move(runs)) {}

    const QString &text() const { return text_; }
    Runs runs() const { return Runs(runs_); }
    // Index must lie inside the text.
    const CaptionTextAttributes &attributesAt(qsizetype index) const;

    // Equal texts with runs of equal extent and equal attributes, shared or not.
    bool operator==(const StyledString &other) const;

private:
    QString text_;
    std::vector<SharedRun> runs_;
};

}  // namespace tolvane::subtitles
