#include "json_stream.h"

#include <QJsonDocument>
#include <QJsonValue>
#include <QVariantList>
#include <QVariantMap>

namespace tolvane::probe {

JsonStream::JsonStream(std::FILE *stream_) : stream(stream_) { buffer.reserve(kFlushBytes * 2); }

JsonStream::~JsonStream() { flush(); }

void JsonStream::raw(const char *text) {
    buffer.append(text);
    if (buffer.size() >= kFlushBytes) {
        flush();
    }
}

void JsonStream::string(const QString &text) {
    static constexpr char kHex[] = "0123456789abcdef";
    buffer.append('"');
    const QByteArray utf8 = text.toUtf8();
    for (const char byte : utf8) {
        const auto unit = static_cast<unsigned char>(byte);
        switch (unit) {
            case '"':
                buffer.append("\\\"");
                break;
            case '\\':
                buffer.append("\\\\");
                break;
            case '\b':
                buffer.append("\\b");
                break;
            case '\f':
                buffer.append("\\f");
                break;
            case '\n':
                buffer.append("\\n");
                break;
            case '\r':
                buffer.append("\\r");
                break;
            case '\t':
                buffer.append("\\t");
                break;
            default:
                if (unit < 0x20) {
                    buffer.append("\\u00");
                    buffer.append(kHex[unit >> 4]);
                    buffer.append(kHex[unit & 0xF]);
                } else {
                    buffer.append(byte);
                }
        }
    }
    buffer.append('"');
}

void JsonStream::number(qint64 number) { buffer.append(QByteArray::number(number)); }

void JsonStream::value(const QVariant &value) {
    switch (value.typeId()) {
        case QMetaType::QVariantMap: {
            const QVariantMap map = value.toMap();
            buffer.append('{');
            for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
                if (entry != map.cbegin()) {
                    buffer.append(',');
                }
                string(entry.key());
                buffer.append(':');
                this->value(entry.value());
            }
            buffer.append('}');
            break;
        }
        case QMetaType::QVariantList: {
            const QVariantList list = value.toList();
            buffer.append('[');
            for (qsizetype i = 0; i < list.size(); ++i) {
                if (i > 0) {
                    buffer.append(',');
                }
                this->value(list[i]);
            }
            buffer.append(']');
            break;
        }
        case QMetaType::QString:
            string(value.toString());
            break;
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::UInt:
        case QMetaType::ULongLong:
        case QMetaType::Long:
            buffer.append(QByteArray::number(value.toLongLong()));
            break;
        case QMetaType::Bool:
            buffer.append(value.toBool() ? "true" : "false");
            break;
        default:
            if (!value.isValid() || value.isNull()) {
                buffer.append("null");
            } else {
                // Anything rarer goes through Qt's own writer.
                QByteArray json =
                    QJsonDocument::fromVariant(QVariantList{value}).toJson(QJsonDocument::Compact);
                buffer.append(json.sliced(1, json.size() - 2));
            }
    }
    if (buffer.size() >= kFlushBytes) {
        flush();
    }
}

void JsonStream::flush() {
    std::fwrite(buffer.constData(), 1, std::size_t(buffer.size()), stream);
    std::fflush(stream);
    buffer.clear();
}

}  // namespace tolvane::probe
