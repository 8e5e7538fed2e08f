#pragma once

#include <QTimer>
#include <chrono>
#include <functional>

#include "subtitles/my_subtitle.h"
#include "views/caption_overlay.h"

namespace tolvane {

// Every 20 ms asks the subtitle for the lines that changed at the playback
// time and hands them to the overlay, which repaints only then.
// Thread-safety: main thread only; the subtitle and the overlay must outlive it.
class CaptionTimer {
public:
    static constexpr std::chrono::milliseconds kCaptionTickInterval{20};
    // Playback position in milliseconds from the start of the media.
    using PlaybackTimeMsec = std::function<qint32()>;

    CaptionTimer(subtitles::MySubtitle &subtitle, CaptionOverlay &overlay,
                 PlaybackTimeMsec playbackTimeMsec);

    void start();
    void stop();
    // One tick; true when the overlay changed.
    bool tick();
    // After the track choice, the mode or a delay changed: forgets the shown
    // lines so that the next tick draws afresh.
    void resetShownLines();

private:
    subtitles::MySubtitle &subtitle;
    CaptionOverlay &overlay;
    PlaybackTimeMsec playbackTimeMsec;
    QTimer timer;
};

}  // namespace tolvane
