#pragma once

// Lets GoogleTest print Qt values readably on both sides of a failed assertion.

#include <QPoint>
#include <QRect>
#include <QSize>
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

inline void PrintTo(const QSize &value, std::ostream *out) {
    *out << value.width() << 'x' << value.height();
}

inline void PrintTo(const QPoint &value, std::ostream *out) {
    *out << '(' << value.x() << ", " << value.y() << ')';
}

inline void PrintTo(const QRect &value, std::ostream *out) {
    *out << value.width() << 'x' << value.height() << " at (" << value.x() << ", " << value.y()
         << ')';
}
