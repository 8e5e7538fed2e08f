#pragma once

#include <QSize>

namespace tolvane {

class VideoPictureRenderer;

// What the video view asks once per display refresh. The playback engine
// implements it; tests use a scripted source.
// Thread-safety: every method is called on the view's (main) thread with the
// view's GL context current for drawPicture().
class VideoPictureSource {
public:
    virtual ~VideoPictureSource() = default;
    // Whether the view should ask at every refresh (playing or showing a
    // seek preview); while false the view does nothing per refresh.
    virtual bool isAsynchronous() const = 0;
    // The per-refresh decision: true when drawPicture() has something new.
    virtual bool canDrawPicture() = 0;
    // Draws the current picture filling `viewportPixels`; clears to black
    // when there is none.
    virtual void drawPicture(VideoPictureRenderer &renderer, QSize viewportPixels) = 0;
    // The view changed size or screen.
    virtual void viewDidResize() = 0;
};

}  // namespace tolvane
