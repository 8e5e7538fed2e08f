#include <QSettings>
#include <QTextStream>
#include <QUrl>

#include "app/played_state_records.h"
#include "probe_commands.h"

namespace tolvane::probe {
namespace {

QVariantList recentPaths(const RecentURLGroup &group) {
    QVariantList entries;
    for (const RecentURLEntry &entry : group.lurls) {
        const QUrl url(entry.absolute);
        entries.append(QVariantMap{
            {QStringLiteral("absolute"), url.isLocalFile() ? url.toLocalFile() : entry.absolute},
            {QStringLiteral("writable"), entry.writable}});
    }
    return entries;
}

}  // namespace

// What the player remembers, as it stored it: the played-state record, the
// recent record (bookmark data left out) and "QZRRecentIsFolder".
int runRecordsCommand(const QStringList &arguments) {
    if (arguments.size() == 2 && arguments.first() == QLatin1String("--config")) {
        // Must come before any settings are opened: QSettings keeps the first path.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, arguments[1]);
    } else if (!arguments.isEmpty()) {
        QTextStream(stderr) << "usage: tolvane-probe records [--config DIR]\n";
        return 2;
    }
    const RecentFdFlsData recent = PlayedStateRecords::readRecentFdFlsData();
    printJson(QVariantMap{
        {QStringLiteral("QZRTotalFdFlsData"),
         PlayedStateRecords::readTotalFdFlsData().toVariantMap()},
        {QStringLiteral("QZRRecentFdFlsData"),
         QVariantMap{{QStringLiteral("rcfolder"), recentPaths(recent.rcfolder)},
                     {QStringLiteral("rcsubtitle"), recentPaths(recent.rcsubtitle)},
                     {QStringLiteral("rcvideo"), recentPaths(recent.rcvideo)},
                     {QStringLiteral("rcplist0idx"), recent.rcplist0idx}}},
        {QStringLiteral("QZRRecentIsFolder"), PlayedStateRecords::getSavedRecentIsFolder()},
    });
    return 0;
}

}  // namespace tolvane::probe
