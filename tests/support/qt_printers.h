#pragma once

// Lets GoogleTest print Qt values readably on both sides of a failed assertion.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <ostream>

inline void PrintTo(const QString &value, std::ostream *out) {
    *out << '"' << value.toStdString() << '"';
}

inline void PrintTo(const QStringList &values, std::ostream *out) {
    *out << '{';
    for (qsizetype i = 0; i < values.size(); ++i) {
        *out << (i ? ", " : "") << '"' << values[i].toStdString() << '"';
    }
    *out << '}';
}

inline void PrintTo(const QVariant &value, std::ostream *out) {
    *out << value.typeName() << '(' << value.toString().toStdString() << ')';
}
