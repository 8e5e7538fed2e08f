#include "processed_line_json.h"

#include <vector>

namespace tolvane::probe {

namespace {

using namespace tolvane::subtitles;

// [row key, first column, last column, value]
struct CueRun {
    int rowKey;
    qsizetype first;
    qsizetype last;
    QString value;
};

// What a cue shows besides its rows' text, collected once for both the
// variant form and the streamed form.
struct CueParts {
    std::vector<CueRun> colors;
    std::vector<CueRun> marks;
    std::vector<CueRun> ruby;
};

// Each run of `string` whose `valueOf` is not empty.
template <typename ValueOf>
void appendRuns(std::vector<CueRun> &into, int rowKey, const StyledString &string,
                ValueOf valueOf) {
    for (const CaptionAttributeRun &run : string.runs()) {
        QString value = valueOf(run.attributes);
        if (!value.isEmpty()) {
            into.push_back({rowKey, run.start, run.start + run.length - 1, std::move(value)});
        }
    }
}

CueParts cuePartsOf(const ProcessedLine &line, const CaptionColor &defaultColor) {
    CueParts parts;
    for (const ProcessedRow &row : line.rows) {
        appendRuns(parts.colors, row.rowKey, row.fill,
                   [&](const CaptionTextAttributes &attributes) {
                       return attributes.fillColor == defaultColor ? QString()
                                                                   : attributes.fillColor.hexName();
                   });
        appendRuns(parts.marks, row.rowKey, row.fill,
                   [](const CaptionTextAttributes &attributes) { return attributes.marker; });
        for (const RubyAnnotation &annotation : row.rubyAnnotations) {
            parts.ruby.push_back({row.rowKey, annotation.baseFirstColumn, annotation.baseLastColumn,
                                  annotation.fill.text()});
        }
    }
    return parts;
}

QVariantList variantsOf(const std::vector<CueRun> &runs) {
    QVariantList list;
    for (const CueRun &run : runs) {
        list.append(QVariant(QVariantList{run.rowKey, run.first, run.last, run.value}));
    }
    return list;
}

void writeRuns(JsonStream &json, const std::vector<CueRun> &runs) {
    json.raw("[");
    for (std::size_t i = 0; i < runs.size(); ++i) {
        json.raw(i == 0 ? "[" : ",[");
        json.number(runs[i].rowKey);
        json.raw(",");
        json.number(runs[i].first);
        json.raw(",");
        json.number(runs[i].last);
        json.raw(",");
        json.string(runs[i].value);
        json.raw("]");
    }
    json.raw("]");
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
    const CueParts parts = cuePartsOf(line, defaultColor);
    return QVariantMap{{"key", key},
                       {"rows", rowsOfProcessedLine(line)},
                       {"colors", variantsOf(parts.colors)},
                       {"marks", variantsOf(parts.marks)},
                       {"ruby", variantsOf(parts.ruby)}};
}

void writeCueOfProcessedLine(JsonStream &json, const QString &key, const ProcessedLine &line,
                             const CaptionColor &defaultColor) {
    const CueParts parts = cuePartsOf(line, defaultColor);
    // The keys in the order a QJsonObject keeps them.
    json.raw("{\"colors\":");
    writeRuns(json, parts.colors);
    json.raw(",\"key\":");
    json.string(key);
    json.raw(",\"marks\":");
    writeRuns(json, parts.marks);
    json.raw(",\"rows\":[");
    for (std::size_t i = 0; i < line.rows.size(); ++i) {
        json.raw(i == 0 ? "" : ",");
        json.string(line.rows[i].fill.text());
    }
    json.raw("],\"ruby\":");
    writeRuns(json, parts.ruby);
    json.raw("}");
}

}  // namespace tolvane::probe
