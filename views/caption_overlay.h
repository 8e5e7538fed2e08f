#pragma once

#include <QWidget>
#include <map>

#include "subtitles/my_subtitle.h"
#include "views/caption_layout.h"

namespace tolvane {

// Draws the shown caption lines over the video view: each row as its outline
// string with its fill string on top, rows stacked at the bottom ("fst.bottom",
// "fst.snd.bottom") or the top ("snd.top"), ruby centred above its base.
// Lays out in the caption space (the subtitle's viewSize) and scales that to
// the widget. A transparent child of the view that lets the mouse through;
// it follows its parent's size.
// Thread-safety: main thread only.
class CaptionOverlay : public QWidget {
public:
    explicit CaptionOverlay(QWidget *videoView);

    void setLayoutSettings(const CaptionLayoutSettings &settings);
    const CaptionLayoutSettings &layoutSettings() const { return settings; }
    // The height along the bottom of this widget that something opaque covers
    // for now (the control panel): bottom captions rise above it. 0: nothing.
    void setCoveredBottomHeight(int pixels);

    // Replaces the groups named in `groups`; a blank line (no rows, or only
    // spaces) removes its group. Repaints only when something changed; true then.
    bool applyTextLayerDic(const subtitles::TextLayerDic &groups);
    // Forgets every group, for when the track choice or the mode changes.
    void clearCaptions();
    const subtitles::TextLayerDic &shownGroups() const { return groups; }

    // Draws `groups` into a painter already mapped to the caption space; the
    // bottom groups with `bottomSettings`, the top one with `topSettings`.
    static void paintCaptionGroups(QPainter &painter, const subtitles::TextLayerDic &groups,
                                   const CaptionLayoutSettings &topSettings,
                                   const CaptionLayoutSettings &bottomSettings);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    CaptionLayoutSettings settings;
    subtitles::TextLayerDic groups;
    int coveredBottomHeight = 0;
};

}  // namespace tolvane
