// MySubtitle's caption timeline: the choice of up to two shown tracks, their
// delays, and the line due at a playback time.

#include <algorithm>
#include <exception>
#include <limits>

#include "base/log.h"
#include "subtitles/my_subtitle.h"

namespace tolvane::subtitles {

namespace {

// The two SAMI class names that Korean tracks carry; a default choice.
constexpr const char *kDefaultTrackLangs[] = {"KRCC", "KOCC"};

qint64 effectiveDelay(qint32 storedDelay) {
    return storedDelay == kUnsetSubtitleDelay ? 0 : storedDelay;
}

qint32 clampedToInt32(qint64 value) {
    return qint32(std::clamp<qint64>(value, std::numeric_limits<qint32>::min(),
                                     std::numeric_limits<qint32>::max()));
}

bool isBlankLine(const ProcessedLine &line) {
    return std::all_of(line.rows.begin(), line.rows.end(),
                       [](const ProcessedRow &row) { return row.fill.text().trimmed().isEmpty(); });
}

// Runs `operation`, logging an exception as escaping from `where`.
template <typename Operation>
void runCatchingExceptions(const char *where, Operation operation) {
    try {
        operation();
    } catch (const std::exception &exception) {
        logException(where, exception.what());
    } catch (...) {
        logException(where);
    }
}

}  // namespace

std::vector<qint64> MySubtitle::matrixSelecteds(bool withIntegratedRow) const {
    std::vector<qint64> selected;
    if (fstOrderIdx_ != kNoTrackOrderIdx) {
        selected.push_back(fstOrderIdx_);
    }
    if (sndOrderIdx_ != kNoTrackOrderIdx) {
        selected.push_back(sndOrderIdx_);
    }
    if (withIntegratedRow && integrated_) {
        selected.push_back(entryCount());
    }
    return selected;
}

void MySubtitle::setOrderOfEntry(qint64 index, const char *order) {
    entries_.at(std::size_t(index)).order = QString::fromLatin1(order);
}

QString MySubtitle::toggleRow(qint64 row) {
    QString answer = QString::fromLatin1(kNoRowToDeselect);
    runCatchingExceptions("tr", [&] { answer = toggleRowUnguarded(row); });
    return answer;
}

QString MySubtitle::toggleRowUnguarded(qint64 row) {
    const QString nothingToDeselect = QString::fromLatin1(kNoRowToDeselect);
    const qint64 count = entryCount();
    if (count == 0 || row < 0 || row > count) {
        return nothingToDeselect;
    }
    if (row == count) {
        integrated_ = !integrated_;
        return nothingToDeselect;
    }
    const qint64 first = fstOrderIdx_;
    const qint64 second = sndOrderIdx_;
    if (first == kNoTrackOrderIdx) {
        setOrderOfEntry(row, "f");
        fstOrderIdx_ = row;
        sndOrderIdx_ = kNoTrackOrderIdx;
    } else if (second == kNoTrackOrderIdx) {
        if (row == first) {
            setOrderOfEntry(first, "x");
            fstOrderIdx_ = kNoTrackOrderIdx;
        } else {
            setOrderOfEntry(row, "s");
            sndOrderIdx_ = row;
        }
    } else if (row == first) {
        setOrderOfEntry(first, "x");
        setOrderOfEntry(second, "f");
        fstOrderIdx_ = second;
        sndOrderIdx_ = kNoTrackOrderIdx;
    } else if (row == second) {
        setOrderOfEntry(second, "x");
        sndOrderIdx_ = kNoTrackOrderIdx;
    } else {
        setOrderOfEntry(first, "x");
        setOrderOfEntry(second, "f");
        setOrderOfEntry(row, "s");
        fstOrderIdx_ = second;
        sndOrderIdx_ = row;
        return QStringLiteral("unsel%1").arg(first);
    }
    return nothingToDeselect;
}

void MySubtitle::setOrders(const QStringList &reOpenIdxs) {
    runCatchingExceptions("so", [&] { setOrdersUnguarded(reOpenIdxs); });
}

void MySubtitle::setOrdersUnguarded(const QStringList &reOpenIdxs) {
    if (!reOpenIdxs.isEmpty()) {
        // A choice carried over from another episode matches without the
        // file's base name; one remembered for this video by the whole key.
        const bool carriedOver = isCarryOverForm(reOpenIdxs.first());
        const auto matchingKey = [carriedOver](const QString &key) {
            return carriedOver ? stringFromLastFourComponentsInFullKey(key) : key;
        };
        QStringList keys;
        for (qint64 i = 0; i < entryCount(); ++i) {
            keys.append(matchingKey(fullKey(i)));
        }
        for (qsizetype remembered = 0; remembered < std::min<qsizetype>(reOpenIdxs.size(), 2);
             ++remembered) {
            const qsizetype found = keys.indexOf(matchingKey(reOpenIdxs[remembered]));
            if (found >= 0) {
                toggleRow(found);
            }
        }
        // Only a remembered pair brings the integrated mode back; a single
        // track followed by "integrated" restores the track alone.
        if (reOpenIdxs.size() == 3) {
            toggleRow(entryCount());
        }
        if (fstOrderIdx_ != kNoTrackOrderIdx) {
            return;
        }
    }
    qint64 chosen = -1;
    for (qint64 i = 0; i < entryCount() && chosen < 0; ++i) {
        const QString &lang = entries_[std::size_t(i)].lang;
        if (std::any_of(std::begin(kDefaultTrackLangs), std::end(kDefaultTrackLangs),
                        [&](const char *korean) { return lang == QLatin1String(korean); })) {
            chosen = i;
        }
    }
    for (qint64 i = 0; i < entryCount() && chosen < 0; ++i) {
        if (entries_[std::size_t(i)].error == u"x") {
            chosen = i;
        }
    }
    toggleRow(std::max<qint64>(chosen, 0));
}

void MySubtitle::setDelays(const SubtitleDelayDic &delays) {
    if (delays.isEmpty()) {
        return;
    }
    const bool carriedOver = isCarryOverForm(delays.firstKey());
    SubtitleDelayDic matchingDelays;
    if (carriedOver) {
        for (auto delay = delays.cbegin(); delay != delays.cend(); ++delay) {
            matchingDelays.insert(stringFromLastFourComponentsInFullKey(delay.key()),
                                  delay.value());
        }
    }
    const SubtitleDelayDic &lookup = carriedOver ? matchingDelays : delays;
    for (qint64 i = 0; i < entryCount(); ++i) {
        const QString key =
            carriedOver ? stringFromLastFourComponentsInFullKey(fullKey(i)) : fullKey(i);
        const auto found = lookup.constFind(key);
        if (found != lookup.cend()) {
            entries_[std::size_t(i)].delay = found.value();
        }
    }
}

void MySubtitle::delayPlus(qint32 deltaMsec) {
    for (const qint64 chosen : {fstOrderIdx_, sndOrderIdx_}) {
        if (chosen != kNoTrackOrderIdx) {
            qint32 &delay = entries_.at(std::size_t(chosen)).delay;
            delay = clampedToInt32(effectiveDelay(delay) + deltaMsec);
        }
    }
}

qint32 MySubtitle::fstDelay() const {
    return fstOrderIdx_ == kNoTrackOrderIdx ? kUnsetSubtitleDelay
                                            : entries_.at(std::size_t(fstOrderIdx_)).delay;
}

qint32 MySubtitle::sndDelay() const {
    return sndOrderIdx_ == kNoTrackOrderIdx ? kNoSecondTrackDelay
                                            : entries_.at(std::size_t(sndOrderIdx_)).delay;
}

void MySubtitle::resetSortedIdx() {
    fstSortedIdx_ = kNoSortedIdx;
    sndSortedIdx_ = kNoSortedIdx;
}

bool MySubtitle::isUpdatedSortedIdx(qint32 &sortedIdx, qint64 orderIdx, qint32 showtimeMsec) const {
    if (orderIdx < 0 || orderIdx >= entryCount()) {
        return false;
    }
    const SubtitleEntry &entry = entries_[std::size_t(orderIdx)];
    const std::vector<SortedTimeKey> &sorted = entry.sorted;
    if (sorted.empty()) {
        return false;
    }
    // An index left over from another track counts as "before the first key".
    if (sortedIdx < kNoSortedIdx || sortedIdx >= qint32(sorted.size())) {
        sortedIdx = kNoSortedIdx;
    }
    const qint64 effectiveTime = qint64(showtimeMsec) + effectiveDelay(entry.delay);
    const qint64 reference = sorted[std::size_t(std::max(sortedIdx, 0))].msec;
    const auto byMsec = [](const SortedTimeKey &key) { return qint64(key.msec); };
    const qint32 previous = sortedIdx;
    if (reference == effectiveTime) {
        if (sortedIdx != kNoSortedIdx) {
            return false;
        }
        sortedIdx = 0;
        return true;
    }
    if (effectiveTime > reference) {
        // Ahead of the current key: the first later key exactly at the time,
        // otherwise the last one not after it (the last key past the end).
        const auto later = sorted.begin() + (sortedIdx + 1);
        const auto atOrAfter =
            std::ranges::lower_bound(later, sorted.end(), effectiveTime, std::less<>(), byMsec);
        if (atOrAfter == sorted.end()) {
            sortedIdx = qint32(sorted.size()) - 1;
        } else if (atOrAfter->msec == effectiveTime) {
            sortedIdx = qint32(atOrAfter - sorted.begin());
        } else {
            sortedIdx = qint32(atOrAfter - sorted.begin()) - 1;
        }
        return sortedIdx != previous;
    }
    // Behind it: the last earlier key not after the time. Before every key
    // always reports a change, even from -1; the blank key "-900000000" that
    // every track holds keeps real playback from getting there.
    const auto earlier = sorted.begin() + std::max(sortedIdx, 0);
    const auto after =
        std::ranges::upper_bound(sorted.begin(), earlier, effectiveTime, std::less<>(), byMsec);
    sortedIdx = qint32(after - sorted.begin()) - 1;
    return sortedIdx == kNoSortedIdx || sortedIdx != previous;
}

ProcessedLine MySubtitle::lineAt(qint64 orderIdx, qint32 sortedIdx) const {
    if (orderIdx < 0 || orderIdx >= entryCount()) {
        return {};
    }
    const SubtitleEntry &entry = entries_[std::size_t(orderIdx)];
    if (sortedIdx < 0 || sortedIdx >= qint32(entry.sorted.size())) {
        return {};
    }
    return entry.tcDic.value(entry.sorted[std::size_t(sortedIdx)].key);
}

ProcessedLine MySubtitle::integratedFstLineDic(const ProcessedLine &fstLine,
                                               const ProcessedLine &sndLine) {
    if (isBlankLine(sndLine)) {
        return fstLine;
    }
    if (isBlankLine(fstLine)) {
        return sndLine;
    }
    ProcessedLine joined = fstLine;
    // The second line's rows continue the first's numbering and character
    // positions, as if both had been one text with a line feed between.
    const int rowKeyOffset = fstLine.rows.back().rowKey;
    const qsizetype characterOffset = fstLine.rows.back().lastCharacterIndex + 1;
    for (ProcessedRow row : sndLine.rows) {
        row.rowKey += rowKeyOffset;
        row.lastCharacterIndex += characterOffset;
        joined.rows.push_back(std::move(row));
    }
    return joined;
}

TextLayerDic MySubtitle::textLayerDic(qint32 showtimeMsec) {
    TextLayerDic groups;
    runCatchingExceptions("tld:rl", [&] { groups = textLayerDicUnguarded(showtimeMsec); });
    return groups;
}

TextLayerDic MySubtitle::textLayerDicUnguarded(qint32 showtimeMsec) {
    TextLayerDic groups;
    const std::size_t shownTracks = matrixSelecteds(false).size();
    if ((integrated_ && shownTracks == 1) || (!integrated_ && shownTracks >= 1)) {
        if (isUpdatedSortedIdx(fstSortedIdx_, fstOrderIdx_, showtimeMsec)) {
            groups[QStringLiteral("fst.bottom")] = lineAt(fstOrderIdx_, fstSortedIdx_);
        }
    }
    if (integrated_ && shownTracks == 2) {
        // Both move on every tick, whichever of them changed.
        const bool fstChanged = isUpdatedSortedIdx(fstSortedIdx_, fstOrderIdx_, showtimeMsec);
        const bool sndChanged = isUpdatedSortedIdx(sndSortedIdx_, sndOrderIdx_, showtimeMsec);
        if (fstChanged || sndChanged) {
            groups[QStringLiteral("fst.snd.bottom")] = integratedFstLineDic(
                lineAt(fstOrderIdx_, fstSortedIdx_), lineAt(sndOrderIdx_, sndSortedIdx_));
        }
    }
    if (!integrated_ && shownTracks == 2) {
        if (isUpdatedSortedIdx(sndSortedIdx_, sndOrderIdx_, showtimeMsec)) {
            groups[QStringLiteral("snd.top")] = lineAt(sndOrderIdx_, sndSortedIdx_);
        }
    }
    return groups;
}

}  // namespace tolvane::subtitles
