#include "finder_order.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace tolvane {

QCollator finderCollator() {
    QLocale locale = QLocale::system();
    if (locale.language() == QLocale::C) {
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    }
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

bool isBeforeInFinderOrder(const QCollator &collator, const QString &a, const QString &b) {
    const int order = collator.compare(a, b);
    if (order != 0) {
        return order < 0;
    }
    return a < b;
}

void sortURLsInFinderOrder(QList<QUrl> &urls) {
    const QCollator collator = finderCollator();
    std::stable_sort(urls.begin(), urls.end(), [&collator](const QUrl &a, const QUrl &b) {
        return isBeforeInFinderOrder(collator, a.fileName(), b.fileName());
    });
}

QList<QUrl> listFolderInFinderOrder(const QUrl &folderURL) {
    const QDir folder(folderURL.toLocalFile());
    if (!folderURL.isLocalFile() || !folder.exists()) {
        return {};
    }
    QList<QUrl> entries;
    const QStringList names = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        entries.append(QUrl::fromLocalFile(folder.filePath(name)));
    }
    sortURLsInFinderOrder(entries);
    return entries;
}

}  // namespace tolvane
