#include <QFileInfo>
#include <QTextStream>
#include <QUrl>

#include "app/series.h"
#include "probe_commands.h"

namespace tolvane::probe {

int runSeriesCommand(const QStringList &arguments) {
    if (arguments.size() != 2) {
        QTextStream(stderr) << "usage: tolvane-probe series FILE_A FILE_B\n";
        return 2;
    }
    // Names need not exist: a bare name is taken as a file in the current folder.
    const QUrl a = QUrl::fromLocalFile(QFileInfo(arguments[0]).absoluteFilePath());
    const QUrl b = QUrl::fromLocalFile(QFileInfo(arguments[1]).absoluteFilePath());
    printJson(QVariantMap{
        {QStringLiteral("isSeries"), isSeries(a, b)},
        {QStringLiteral("a"), seriesNameOfURL(a)},
        {QStringLiteral("b"), seriesNameOfURL(b)},
    });
    return 0;
}

}  // namespace tolvane::probe
