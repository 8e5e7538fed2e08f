#include "app/native/lazy_native_mode_player.h"

namespace tolvane {

LazyNativeModePlayer::~LazyNativeModePlayer() = default;

void LazyNativeModePlayer::load(const QString &path, std::chrono::milliseconds countDown) {
    if (!made) {
        made = std::make_unique<QtNativeModePlayer>();
        connect(made.get(), &NativeModePlayer::loadFinished, this, &NativeModePlayer::loadFinished);
        connect(made.get(), &NativeModePlayer::endReached, this, &NativeModePlayer::endReached);
        if (volume) {
            made->setVolume(*volume);
        }
        Q_EMIT playerMade(made->videoSink());
    }
    made->load(path, countDown);
}

void LazyNativeModePlayer::cancelLoading() {
    if (made) {
        made->cancelLoading();
    }
}

void LazyNativeModePlayer::unload() {
    if (made) {
        made->unload();
    }
}

bool LazyNativeModePlayer::hasMedia() const { return made && made->hasMedia(); }

double LazyNativeModePlayer::rate() const { return made ? made->rate() : 0.0; }

void LazyNativeModePlayer::setRate(double rate) {
    if (made) {
        made->setRate(rate);
    }
}

double LazyNativeModePlayer::currentTimeSec() const { return made ? made->currentTimeSec() : 0.0; }

double LazyNativeModePlayer::durationSec() const { return made ? made->durationSec() : 0.0; }

void LazyNativeModePlayer::seekToTime(double timeSec) {
    if (made) {
        made->seekToTime(timeSec);
    }
}

void LazyNativeModePlayer::setVolume(float newVolume) {
    volume = newVolume;
    if (made) {
        made->setVolume(newVolume);
    }
}

QSize LazyNativeModePlayer::naturalSize() const { return made ? made->naturalSize() : QSize(); }

}  // namespace tolvane
