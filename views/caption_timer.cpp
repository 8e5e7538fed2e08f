#include "views/caption_timer.h"

namespace tolvane {

CaptionTimer::CaptionTimer(subtitles::MySubtitle &subtitle, CaptionOverlay &overlay,
                           PlaybackTimeMsec playbackTimeMsec)
    : subtitle(subtitle), overlay(overlay), playbackTimeMsec(std::move(playbackTimeMsec)) {
    timer.setInterval(kCaptionTickInterval);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { tick(); });
}

void CaptionTimer::start() { timer.start(); }

void CaptionTimer::stop() { timer.stop(); }

bool CaptionTimer::tick() {
    const subtitles::TextLayerDic changed = subtitle.textLayerDic(playbackTimeMsec());
    return !changed.empty() && overlay.applyTextLayerDic(changed);
}

void CaptionTimer::resetShownLines() {
    subtitle.resetSortedIdx();
    overlay.clearCaptions();
}

}  // namespace tolvane
