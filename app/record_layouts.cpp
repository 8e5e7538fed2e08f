#include "record_layouts.h"

namespace tolvane {
namespace {

QVariantMap delayDicToVariantMap(const SubtitleDelayDic &delays) {
    QVariantMap map;
    for (auto delay = delays.cbegin(); delay != delays.cend(); ++delay) {
        map.insert(delay.key(), delay.value());
    }
    return map;
}

SubtitleDelayDic delayDicFromVariantMap(const QVariantMap &map) {
    SubtitleDelayDic delays;
    for (auto delay = map.cbegin(); delay != map.cend(); ++delay) {
        delays.insert(delay.key(), qint32(delay.value().toInt()));
    }
    return delays;
}

}  // namespace

QVariantMap FileEntry::toVariantMap() const {
    return {
        {QStringLiteral("fsize"), QVariant::fromValue<quint64>(fsize)},
        {QStringLiteral("laccs"), laccs},
        {QStringLiteral("ctime"), ctime},
        {QStringLiteral("caudio"), caudio},
        {QStringLiteral("csubtitleidxs"), csubtitleidxs},
        {QStringLiteral("cdelaydic"), delayDicToVariantMap(cdelaydic)},
        {QStringLiteral("cdone"), cdone},
    };
}

FileEntry FileEntry::fromVariantMap(const QVariantMap &map) {
    FileEntry entry;
    entry.fsize = map.value(QStringLiteral("fsize")).toULongLong();
    entry.laccs = map.value(QStringLiteral("laccs")).toString();
    entry.ctime = map.value(QStringLiteral("ctime")).toDouble();
    entry.caudio = qint32(map.value(QStringLiteral("caudio"), entry.caudio).toInt());
    entry.csubtitleidxs = map.value(QStringLiteral("csubtitleidxs")).toStringList();
    entry.cdelaydic = delayDicFromVariantMap(map.value(QStringLiteral("cdelaydic")).toMap());
    entry.cdone = map.value(QStringLiteral("cdone")).toBool();
    return entry;
}

QVariantMap FolderEntry::toVariantMap() const {
    return {
        {QStringLiteral("cpath"), cpath},
        {QStringLiteral("laccs"), laccs},
        {QStringLiteral("lurls"), lurls},
    };
}

FolderEntry FolderEntry::fromVariantMap(const QVariantMap &map) {
    FolderEntry entry;
    entry.cpath = map.value(QStringLiteral("cpath")).toString();
    entry.laccs = map.value(QStringLiteral("laccs")).toString();
    entry.lurls = map.value(QStringLiteral("lurls")).toStringList();
    return entry;
}

QVariantMap TtFolderDic::toVariantMap() const {
    QVariantMap map;
    for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
        map.insert(folder.key(), folder->toVariantMap());
    }
    if (!QZRrcfdpath.isEmpty()) {
        map.insert(QStringLiteral("QZRrcfdpath"), QZRrcfdpath);
        map.insert(QStringLiteral("QZRrcplist1"), QZRrcplist1);
    }
    return map;
}

TtFolderDic TtFolderDic::fromVariantMap(const QVariantMap &map) {
    TtFolderDic dic;
    for (auto value = map.cbegin(); value != map.cend(); ++value) {
        if (value.key() == QLatin1String("QZRrcfdpath")) {
            dic.QZRrcfdpath = value->toString();
        } else if (value.key() == QLatin1String("QZRrcplist1")) {
            dic.QZRrcplist1 = value->toStringList();
        } else if (value->canConvert<QVariantMap>()) {
            dic.folders.insert(value.key(), FolderEntry::fromVariantMap(value->toMap()));
        }
    }
    return dic;
}

QVariantMap TotalFdFlsData::toVariantMap() const {
    QVariantMap files;
    for (auto file = ttfile.cbegin(); file != ttfile.cend(); ++file) {
        files.insert(file.key(), file->toVariantMap());
    }
    return {
        {QStringLiteral("ttfile"), files},
        {QStringLiteral("ttfolder"), ttfolder.toVariantMap()},
    };
}

TotalFdFlsData TotalFdFlsData::fromVariantMap(const QVariantMap &map) {
    TotalFdFlsData data;
    const QVariantMap files = map.value(QStringLiteral("ttfile")).toMap();
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        data.ttfile.insert(file.key(), FileEntry::fromVariantMap(file->toMap()));
    }
    data.ttfolder = TtFolderDic::fromVariantMap(map.value(QStringLiteral("ttfolder")).toMap());
    return data;
}

QVariantMap RecentURLEntry::toVariantMap() const {
    return {
        {QStringLiteral("bookmark"), bookmark},
        {QStringLiteral("absolute"), absolute},
        {QStringLiteral("writable"), writable},
    };
}

RecentURLEntry RecentURLEntry::fromVariantMap(const QVariantMap &map) {
    RecentURLEntry entry;
    entry.bookmark = map.value(QStringLiteral("bookmark")).toByteArray();
    entry.absolute = map.value(QStringLiteral("absolute")).toString();
    entry.writable = map.value(QStringLiteral("writable")).toBool();
    return entry;
}

QVariantMap RecentURLGroup::toVariantMap() const {
    QVariantList entries;
    for (const RecentURLEntry &entry : lurls) {
        entries.append(entry.toVariantMap());
    }
    return {{QStringLiteral("lurls"), entries}};
}

RecentURLGroup RecentURLGroup::fromVariantMap(const QVariantMap &map) {
    RecentURLGroup group;
    const QVariantList entries = map.value(QStringLiteral("lurls")).toList();
    for (const QVariant &entry : entries) {
        group.lurls.append(RecentURLEntry::fromVariantMap(entry.toMap()));
    }
    return group;
}

QVariantMap RecentFdFlsData::toVariantMap() const {
    return {
        {QStringLiteral("rcfolder"), rcfolder.toVariantMap()},
        {QStringLiteral("rcsubtitle"), rcsubtitle.toVariantMap()},
        {QStringLiteral("rcvideo"), rcvideo.toVariantMap()},
        {QStringLiteral("rcplist0idx"), rcplist0idx},
    };
}

RecentFdFlsData RecentFdFlsData::fromVariantMap(const QVariantMap &map) {
    RecentFdFlsData data;
    data.rcfolder = RecentURLGroup::fromVariantMap(map.value(QStringLiteral("rcfolder")).toMap());
    data.rcsubtitle =
        RecentURLGroup::fromVariantMap(map.value(QStringLiteral("rcsubtitle")).toMap());
    data.rcvideo = RecentURLGroup::fromVariantMap(map.value(QStringLiteral("rcvideo")).toMap());
    data.rcplist0idx = map.value(QStringLiteral("rcplist0idx")).toInt();
    return data;
}

QString laccsStringFromDateTime(const QDateTime &dateTime) {
    const qint64 milliseconds = dateTime.toMSecsSinceEpoch() % 1000;
    return QStringLiteral("%1.%2")
        .arg(dateTime.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
        .arg(milliseconds, 3, 10, QLatin1Char('0'));
}

QString laccsStringForNow() { return laccsStringFromDateTime(QDateTime::currentDateTime()); }

}  // namespace tolvane
