#pragma once

#include <atomic>
#include <functional>
#include <vector>

#include "base/named_mutex.h"
#include "engine/cursor_queue.h"
#include "engine/video/bitmap_data.h"
#include "engine/video/picture_layout.h"

namespace tolvane {

// The pictures between the pixel thread and the drawing: the bitmap list of
// timed pictures, the current picture (the one on screen), and the seek
// preview, the first picture decoded after a seek, which becomes the
// current picture at once while the pictures after it go to the list.
//
// Thread-safety: every method takes bitmapDataQueueMutex, which guards all
// of it. The pixel thread adds; the draw decision and the drawing (main
// thread) read, take and show; the seek and the reset (main thread, pixel
// thread stopped) empty. count() and isSeekingVideo() are atomic reads for
// decisions made without the lock.
class PictureQueues {
public:
    PictureQueues() = default;
    PictureQueues(const PictureQueues &) = delete;
    PictureQueues &operator=(const PictureQueues &) = delete;

    // The lock, for the draw decision, which holds it from its look at the
    // next picture through what it does with it.
    NamedRecursiveMutex &mutex() const { return bitmapDataQueueMutex; }

    // --- The bitmap list. read() lends the next unread picture (valid until
    // removed); takeRead() hands over the pictures read so far, or every
    // picture when none was read; offerReadAgain() un-reads them.
    void add(BitmapData picture) { bitmapDatas.add(std::move(picture)); }
    const BitmapData *read() { return bitmapDatas.read(); }
    std::vector<BitmapData> takeRead() { return bitmapDatas.takeThroughCursor(); }
    void offerReadAgain() { bitmapDatas.resetCursor(); }
    void removeAll() { bitmapDatas.removeAll(); }
    int count() const { return bitmapDatas.count(); }

    // --- The seek preview. A seek begins one with the flag set; the first
    // picture added after it is the preview, later ones go to the list.
    void resetSeekPreview(bool isSeekingVideoNow);
    void endSeekPreview() { isSeekingVideoValue = false; }
    bool isSeekingVideo() const { return isSeekingVideoValue.load(); }
    bool isSeekPreviewDue() const;
    // Makes `picture` the seek preview when one is due, else queues it.
    void addOrMakeSeekPreview(BitmapData picture);

    // --- The current picture
    bool hasCurrentPicture() const;
    void makeCurrent(BitmapData picture);
    // Frees the current picture's bytes (between files).
    void forgetCurrentPicture();
    // Calls `draw` under the lock with the current picture; not at all when
    // there is none.
    void drawCurrent(const std::function<void(const PictureView &picture)> &draw) const;
    // Calls `reader` under the lock with the current picture's bytes and size,
    // empty when there is none.
    void readCurrent(const std::function<void(const BitmapBytes &bitmap, float width, float height)>
                         &reader) const;

private:
    mutable NamedRecursiveMutex bitmapDataQueueMutex{"bitmapDataQueue"};
    CursorQueue<BitmapData> bitmapDatas{bitmapDataQueueMutex};
    // Its time is not used; width and height are the decoded frame's.
    BitmapData currentPicture;  // guarded by bitmapDataQueueMutex
    // The seek under way has its preview; later pictures go to the list.
    bool hasSeekPreview = false;  // guarded by bitmapDataQueueMutex
    // A seek shows its picture; written under bitmapDataQueueMutex, except
    // that ending it needs no lock.
    std::atomic<bool> isSeekingVideoValue{false};
};

}  // namespace tolvane
