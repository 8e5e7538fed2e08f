#include "series.h"

#include <QFileInfo>

namespace tolvane {

QString removeAllNumbers(const QString &name) {
    static const QString kReplacedByBlank = QStringLiteral("0123456789_-.");
    QString stripped = name;
    for (const QChar replaced : kReplacedByBlank) {
        stripped.replace(replaced, QLatin1Char(' '));
    }
    const qsizetype open = stripped.indexOf(QLatin1Char('['));
    if (open >= 0) {
        const qsizetype close = stripped.indexOf(QLatin1Char(']'), open);
        if (close >= 0) {
            stripped.remove(open, close - open + 1);
        }
    }
    return stripped;
}

QString seriesNameOfURL(const QUrl &url) {
    return removeAllNumbers(QFileInfo(url.path(QUrl::FullyDecoded)).completeBaseName());
}

bool isSeries(const QUrl &url, const QUrl &before) {
    const QString a = seriesNameOfURL(url);
    const QString b = seriesNameOfURL(before);
    qsizetype common = 0;
    const qsizetype shorter = std::min(a.size(), b.size());
    while (common < shorter && a[common].toCaseFolded() == b[common].toCaseFolded()) {
        ++common;
    }
    if (common == a.size() || common == b.size()) {
        return true;
    }
    // The first non-empty words, case-sensitively: a release group's tag or a
    // leading number stripped from the front leaves blanks there, and the
    // words after them name the series. No word on either side names none.
    const QString firstWordOfA = a.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    const QString firstWordOfB = b.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    return !firstWordOfA.isEmpty() && firstWordOfA == firstWordOfB;
}

bool thisURLs(const QList<QUrl> &urls, const QUrl &haveURL) {
    const QString path = haveURL.path(QUrl::FullyDecoded);
    for (const QUrl &url : urls) {
        if (url.path(QUrl::FullyDecoded) == path) {
            return true;
        }
    }
    return false;
}

QString realFileNameStringWhetherBDMV(const QUrl &url) {
    if (url.isEmpty()) {
        return QStringLiteral(" ");
    }
    const QStringList components =
        url.path(QUrl::FullyDecoded).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const qsizetype bdmv = components.indexOf(QStringLiteral("BDMV"));
    if (bdmv > 0) {
        return components[bdmv - 1] + QStringLiteral(".m2ts");
    }
    return url.fileName();
}

}  // namespace tolvane
