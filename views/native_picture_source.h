#pragma once

#include <QObject>
#include <QVideoFrame>
#include <chrono>
#include <functional>

#include "views/video_picture_source.h"

class QVideoSink;

namespace tolvane {

// Puts Native mode's player behind the video view: the sink's latest frame
// is drawn through the view's renderer, so the captions stay over it as in
// FFmpeg mode. Frames in YUV 4:2:0, NV12 or 8-bit RGB go up as planes; any
// other layout is converted by Qt first.
//
// The source is asynchronous while frames arrive and for a short grace after
// the last one; the view stops asking then, and the next frame calls the
// wake handler (the view's wakeRefresh()) to start it again.
// Thread-safety: main thread only; the sink may deliver from any thread.
class NativePictureSource final : public VideoPictureSource {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds kIdleAfterLastFrame{500};

    // `sink` must outlive the source.
    explicit NativePictureSource(QVideoSink *sink);

    void setWakeHandler(std::function<void()> handler) { wake = std::move(handler); }

    bool isAsynchronous() const override;
    bool canDrawPicture() override;
    void drawPicture(VideoPictureRenderer &renderer, QSize viewportPixels) override;
    void viewDidResize() override;

    // Frames drawn through the plane path and through Qt's conversion.
    int planeDrawCount() const { return planeDraws; }
    int convertedDrawCount() const { return convertedDraws; }

private:
    void onVideoFrameChanged(const QVideoFrame &frame);
    void drawFrame(VideoPictureRenderer &renderer, QSize viewportPixels);

    QObject receiver;  // keeps the sink's signal on this thread
    QVideoFrame latestFrame;
    Clock::time_point lastFrameArrival;
    std::function<void()> wake;
    bool hasNewFrame = false;
    int planeDraws = 0;
    int convertedDraws = 0;
};

}  // namespace tolvane
