#include "processed_line_json.h"

#include <functional>

namespace tolvane::probe {

namespace {

using namespace tolvane::subtitles;

// [row key, first column, last column, value] for each run of `string` whose
// `valueOf` is not empty.
void appendRuns(QVariantList &into, int rowKey, const StyledString &string,
                const std::function<QString(const CaptionTextAttributes &)> &valueOf) {
    for (const CaptionAttributeRun &run : string.runs()) {
        const QString value = valueOf(run.attributes);
        if (!value.isEmpty()) {
            into.append(
                QVariant(QVariantList{rowKey, run.start, run.start + run.length - 1, value}));
        }
    }
}

}  // namespace

QVariantList rowsOfProcessedLine(const ProcessedLine &line) {
    QVariantList rows;
    for (const ProcessedRow &row : line.rows) {
        rows.append(row.fill.text());
    }
    return rows;
}

QVariantMap cueOfProcessedLine(const QString &key, const ProcessedLine &line,
                               const CaptionColor &defaultColor) {
    QVariantList colors;
    QVariantList marks;
    QVariantList ruby;
    for (const ProcessedRow &row : line.rows) {
        appendRuns(colors, row.rowKey, row.fill, [&](const CaptionTextAttributes &attributes) {
            return attributes.fillColor == defaultColor ? QString()
                                                        : attributes.fillColor.hexName();
        });
        appendRuns(marks, row.rowKey, row.fill,
                   [](const CaptionTextAttributes &attributes) { return attributes.marker; });
        for (const RubyAnnotation &annotation : row.rubyAnnotations) {
            ruby.append(QVariant(QVariantList{row.rowKey, annotation.baseFirstColumn,
                                              annotation.baseLastColumn, annotation.fill.text()}));
        }
    }
    return QVariantMap{{"key", key},
                       {"rows", rowsOfProcessedLine(line)},
                       {"colors", colors},
                       {"marks", marks},
                       {"ruby", ruby}};
}

}  // namespace tolvane::probe
