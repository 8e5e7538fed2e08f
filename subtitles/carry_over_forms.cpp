#include "carry_over_forms.h"

namespace tolvane {
namespace {

QString carryOverFormOf(const QString &key) {
    return isCarryOverForm(key) ? key : QLatin1String(kCarryOverKeyPrefix) + key;
}

}  // namespace

bool isCarryOverForm(const QString &key) {
    return key.startsWith(QLatin1String(kCarryOverKeyPrefix));
}

QStringList cofIdxsFromReOpenSubtitleIdxs(const QStringList &reOpenSubtitleIdxs) {
    QStringList carried;
    carried.reserve(reOpenSubtitleIdxs.size());
    for (const QString &key : reOpenSubtitleIdxs) {
        carried.append(carryOverFormOf(key));
    }
    return carried;
}

SubtitleDelayDic cofDicFromReOpenDelayDic(const SubtitleDelayDic &reOpenDelayDic) {
    SubtitleDelayDic carried;
    for (auto entry = reOpenDelayDic.cbegin(); entry != reOpenDelayDic.cend(); ++entry) {
        carried.insert(carryOverFormOf(entry.key()), entry.value());
    }
    return carried;
}

}  // namespace tolvane
