#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace tolvane {

// A subtitle track's delay in milliseconds, keyed by the track's full key (or
// by its carry-over form).
using SubtitleDelayDic = QMap<QString, qint32>;

// Marks a track choice or delay that was carried over from the previous episode
// of a series; the subtitle model then matches it without the file's base name.
inline constexpr const char *kCarryOverKeyPrefix = "#*QZR*COF*KEY*#";

// Whether `key` is already in the carry-over form.
bool isCarryOverForm(const QString &key);

// The remembered track choice (full keys and "integrated") in the carry-over
// form. A choice already in that form is kept as it is, so a choice carried
// along several episodes never gets the prefix twice.
// Thread-safety: reentrant.
QStringList cofIdxsFromReOpenSubtitleIdxs(const QStringList &reOpenSubtitleIdxs);

// The remembered delays with every key in the carry-over form.
SubtitleDelayDic cofDicFromReOpenDelayDic(const SubtitleDelayDic &reOpenDelayDic);

}  // namespace tolvane
