#pragma once

#include <QByteArray>
#include <QVariant>
#include <cstdio>

namespace tolvane::probe {

// Writes compact JSON to a stream as it is produced, in the form that
// QJsonDocument::toJson(Compact) gives for the same values (maps in key
// order), so that a large document never exists whole in memory.
// Thread-safety: one thread per object.
class JsonStream {
public:
    explicit JsonStream(std::FILE *stream);
    ~JsonStream();
    JsonStream(const JsonStream &) = delete;
    JsonStream &operator=(const JsonStream &) = delete;

    // Mark-up written as it stands: braces, brackets, commas and keys.
    void raw(const char *text);
    void string(const QString &text);
    void number(qint64 number);
    // Maps, lists, strings, numbers, booleans and null.
    void value(const QVariant &value);
    void flush();

private:
    static constexpr qsizetype kFlushBytes = 64 * 1024;

    std::FILE *stream;
    QByteArray buffer;
};

}  // namespace tolvane::probe
