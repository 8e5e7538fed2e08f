#include "engine/video/picture_queues.h"

namespace tolvane {

void PictureQueues::resetSeekPreview(bool isSeekingVideoNow) {
    NamedLockGuard lock(bitmapDataQueueMutex);
    hasSeekPreview = false;
    isSeekingVideoValue = isSeekingVideoNow;
}

bool PictureQueues::isSeekPreviewDue() const {
    NamedLockGuard lock(bitmapDataQueueMutex);
    return isSeekingVideoValue.load() && !hasSeekPreview;
}

void PictureQueues::addOrMakeSeekPreview(BitmapData picture) {
    NamedLockGuard lock(bitmapDataQueueMutex);
    // Only the first picture of a seek is its preview: the pixel thread goes
    // on decoding until the draw decision takes it, and what it decodes
    // meanwhile is the continuation.
    if (!isSeekingVideoValue.load() || hasSeekPreview) {
        bitmapDatas.add(std::move(picture));
        return;
    }
    currentPicture = std::move(picture);
    hasSeekPreview = true;
}

bool PictureQueues::hasCurrentPicture() const {
    NamedLockGuard lock(bitmapDataQueueMutex);
    return !currentPicture.data.empty();
}

void PictureQueues::makeCurrent(BitmapData picture) {
    NamedLockGuard lock(bitmapDataQueueMutex);
    currentPicture = std::move(picture);
}

void PictureQueues::forgetCurrentPicture() {
    NamedLockGuard lock(bitmapDataQueueMutex);
    currentPicture = BitmapData{};
}

void PictureQueues::drawCurrent(const std::function<void(const PictureView &picture)> &draw) const {
    NamedLockGuard lock(bitmapDataQueueMutex);
    if (currentPicture.data.empty()) {
        return;
    }
    draw(PictureView{currentPicture.layout, currentPicture.data.data(), currentPicture.data.size(),
                     currentPicture.width, currentPicture.height});
}

void PictureQueues::readCurrent(
    const std::function<void(const BitmapBytes &bitmap, float width, float height)> &reader) const {
    NamedLockGuard lock(bitmapDataQueueMutex);
    reader(currentPicture.data, float(currentPicture.width), float(currentPicture.height));
}

}  // namespace tolvane
