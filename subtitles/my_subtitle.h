#pragma once

// The caption tracks of the video being played: which files were found and
// how they loaded, which one or two tracks are shown, their delays, and the
// line due at a playback time.
// Thread-safety: none inside. The controller builds, loads and restores a
// MySubtitle under its encoding lock and replaces the whole object on every
// load; afterwards it is used from the main thread only (caption timer, list).

#include <QList>
#include <QLocale>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "subtitles/carry_over_forms.h"
#include "subtitles/text_encodings.h"
#include "subtitles/time_content.h"

namespace tolvane::subtitles {

// Stored in an entry's delay until a delay is set or restored.
inline constexpr qint32 kUnsetSubtitleDelay = -100000000;
// What sndDelay() answers without a second track; differs from the first
// track's answer so that the two cannot be mistaken for each other.
inline constexpr qint32 kNoSecondTrackDelay = -200000000;
inline constexpr qint64 kNoTrackOrderIdx = -100;
inline constexpr qint32 kNoSortedIdx = -1;
// What toggleRow() answers when the caption list needs no row deselected.
inline constexpr const char *kNoRowToDeselect = "-100";
// Separates the five parts of a full key.
inline constexpr const char *kFullKeySeparator = "#*QZR*SPC*KEY*#";
// The last element of a remembered choice when the integrated mode was on.
inline constexpr const char *kIntegratedChoice = "integrated";

// A time key of a track with its integer value, the value the timeline orders
// and looks up by (SAMI keeps keys as written: "1000" and "1000 " both mean 1 s).
struct SortedTimeKey {
    qint32 msec = 0;
    QString key;
};

// One caption track: a SubRip file, one class of a SAMI file, or a file that
// failed to load.
struct SubtitleEntry {
    QString url;       // canonical path of the caption file
    QString fileType;  // "smi" or "srt"; a failed file's extension, lower-cased
    QString pathType;  // "v", "k" or "b", with "*" for the asterisk name form
    QString error;     // "x" loaded; "s", "e", "f" or "c": see humanReadableError
    QString order;     // "x" not shown, "f" first track, "s" second track
    QString lang;      // SAMI class upper-cased; SubRip last cue number; "x" when failed
    TimeContentDictionary tcDic;
    std::vector<SortedTimeKey> sorted;  // tcDic's keys ascending by value
    qint32 delay = kUnsetSubtitleDelay;
};

// The line groups that changed at one caption-timer tick, by where they are
// drawn: "fst.bottom", "fst.snd.bottom" (the integrated block) and "snd.top".
// A line without rows clears its group. Empty when nothing changed.
using TextLayerDic = std::map<QString, ProcessedLine>;

class MySubtitle {
public:
    // The caption style, set by the controller before the load: the tag
    // processor reads it while parsing, the caption layout afterwards.
    QString fnamePF;
    bool boldPF = false;
    float sizePF = 0.0f;
    float spacingPF = 0.0f;
    float marginPF = 0.0f;
    QSizeF viewSize{960.0, 540.0};
    bool isDefaultColor = true;

    // Finds the video's SAMI files, then its SubRip files (realSubtitleURL),
    // and appends the entries of each: one per SAMI class in upper-cased name
    // order, one per SubRip file, one per file that failed. `encodingItems`
    // are menu items of the text-encoding table, tried in order. An
    // unexpected failure is logged and ends the load, keeping the entries
    // already added. `locale` and `reader` are seams for tests.
    void openSubtitleFileURL(const QString &videoPath, std::span<const int> encodingItems,
                             bool bdmv, const QString &whereFolder,
                             const QLocale &locale = QLocale::system(),
                             const FileByteReader &reader = readFileBytes);

    const std::vector<SubtitleEntry> &entries() const { return entries_; }
    qint64 entryCount() const { return qint64(entries_.size()); }

    // The nine columns of the track table, each as long as entries().
    QStringList subtitleFileURLs() const;
    QStringList subtitleFileTypes() const;
    QStringList subtitlePathTypes() const;
    QStringList subtitleErrors() const;
    QStringList subtitleOrders() const;
    QStringList subtitleLangs() const;
    QList<TimeContentDictionary> subtitleTCDics() const;
    QList<QStringList> subtitleSorteds() const;
    QList<qint32> subtitleDelays() const;

    // URLs of the entries that loaded, in entry order (a SAMI file with two
    // classes is listed twice).
    QStringList successSubtitleFileURLs() const;

    // The message for a load result code; null for "x" and unknown codes.
    static QString humanReadableError(const QString &code);
    static const char *humanReadableErrorKey(const QString &code);

    // "base#*QZR*SPC*KEY*#ext#*QZR*SPC*KEY*#ftype#*QZR*SPC*KEY*#ptype#*QZR*SPC*KEY*#lang",
    // identifying an entry across launches; "" for an index out of range.
    QString fullKey(qint64 index) const;
    // The part of a full key that stays the same from one episode to the next:
    // "ext.ftype.ptype.lang. ", or " " for a key of fewer than four parts.
    static QString stringFromLastFourComponentsInFullKey(const QString &fullKey);

    // The current choice for reopening this video: the first track's full key,
    // the second's, then "integrated" when that mode is on.
    QStringList reOpenSubtitleIdxs() const;
    SubtitleDelayDic reOpenDelayDic() const;
    static QStringList cofIdxsFromReOpenSubtitleIdxs(const QStringList &idxs) {
        return tolvane::cofIdxsFromReOpenSubtitleIdxs(idxs);
    }
    static SubtitleDelayDic cofDicFromReOpenDelayDic(const SubtitleDelayDic &delays) {
        return tolvane::cofDicFromReOpenDelayDic(delays);
    }

    // Logs every entry and the style flags in one message.
    void dump() const;

    // Choosing tracks and their delays (caption_timeline.cpp).

    // The chosen entries, first track first; with `withIntegratedRow` and the
    // integrated mode on, the integrated row (entryCount()) follows.
    std::vector<qint64> matrixSelecteds(bool withIntegratedRow) const;
    // A click on row `row` of the caption list (entryCount() is the integrated
    // row). A two-slot queue: a third choice pushes out the oldest, and then
    // the answer is "unsel<row>" for the list to deselect; otherwise "-100".
    QString toggleRow(qint64 row);
    // Restores a remembered choice (reOpenSubtitleIdxs, possibly in the
    // carry-over form); without one, or when it matches nothing, chooses a
    // Korean track, else the first that loaded, else entry 0.
    void setOrders(const QStringList &reOpenIdxs);
    // Restores remembered delays by full key, or by the episode-independent
    // part of it when the keys are in the carry-over form.
    void setDelays(const SubtitleDelayDic &delays);
    // Moves the delays of both shown tracks by `deltaMsec`.
    void delayPlus(qint32 deltaMsec);
    qint32 fstDelay() const;
    qint32 sndDelay() const;

    bool isIntegrated() const { return integrated_; }
    qint64 fstOrderIdx() const { return fstOrderIdx_; }
    qint64 sndOrderIdx() const { return sndOrderIdx_; }
    qint32 fstSortedIdx() const { return fstSortedIdx_; }
    qint32 sndSortedIdx() const { return sndSortedIdx_; }

    // The line due at a playback time (caption_timeline.cpp).

    // Makes the next tick look both lines up afresh; call after the choice
    // or a delay changed.
    void resetSortedIdx();
    // Moves `sortedIdx` to the line of entry `orderIdx` due at `showtimeMsec`
    // plus the track's delay (a positive delay shows lines earlier); -1 is
    // before the first key. True when the shown line changed.
    bool isUpdatedSortedIdx(qint32 &sortedIdx, qint64 orderIdx, qint32 showtimeMsec) const;
    // The caption timer's question: the groups whose line changed at
    // `showtimeMsec`, moving fstSortedIdx and sndSortedIdx.
    TextLayerDic textLayerDic(qint32 showtimeMsec);
    // The line under entry `orderIdx`'s sorted key `sortedIdx`; no rows for -1.
    ProcessedLine lineAt(qint64 orderIdx, qint32 sortedIdx) const;
    // The integrated block: the first track's rows above the second's, a
    // blank line taking no room.
    static ProcessedLine integratedFstLineDic(const ProcessedLine &fstLine,
                                              const ProcessedLine &sndLine);

private:
    CaptionStyle captionStyle() const;
    void appendEntry(SubtitleEntry entry);
    void loadSubtitleFile(const QString &url, const QString &pathType,
                          std::span<const int> encodingItems, const QLocale &locale,
                          const FileByteReader &reader, const TagProcessor &tagProcessor);
    void setOrderOfEntry(qint64 index, const char *order);
    QString toggleRowUnguarded(qint64 row);
    void setOrdersUnguarded(const QStringList &reOpenIdxs);
    TextLayerDic textLayerDicUnguarded(qint32 showtimeMsec);

    // Appended one whole record at a time, so no column can run ahead of
    // the others when a load fails half-way.
    std::vector<SubtitleEntry> entries_;
    bool integrated_ = false;
    qint64 fstOrderIdx_ = kNoTrackOrderIdx;  // the entry whose order is "f"
    qint64 sndOrderIdx_ = kNoTrackOrderIdx;  // the entry whose order is "s"; only with a first
    qint32 fstSortedIdx_ = kNoSortedIdx;
    qint32 sndSortedIdx_ = kNoSortedIdx;
};

}  // namespace tolvane::subtitles
