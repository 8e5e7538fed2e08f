#include "app/desktop/mpris_service.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QUrl>
#include <cmath>

#include "app/app_controller.h"
#include "app/desktop/mpris_adaptors.h"
#include "app/series.h"
#include "base/log.h"
#include "desktop_mime_types.h"

namespace tolvane {
namespace {

constexpr double kMicrosecondsPerSecond = 1e6;
constexpr const char *kNoTrackId = "/org/mpris/MediaPlayer2/TrackList/NoTrack";
// Track ids may not lie under /org/mpris; one path per playlist item.
constexpr const char *kTrackIdPrefix = "/org/tolvane/Tolvane/Track/";

qlonglong microseconds(double seconds) {
    return std::isfinite(seconds) ? qlonglong(std::llround(seconds * kMicrosecondsPerSecond)) : 0;
}

}  // namespace

MprisRootAdaptor::MprisRootAdaptor(MprisService &service)
    : QDBusAbstractAdaptor(&service), service(service) {}

MprisPlayerAdaptor::MprisPlayerAdaptor(MprisService &service)
    : QDBusAbstractAdaptor(&service), service(service) {}

void MprisPlayerAdaptor::setRate(double rate) {
    if (rate == 0.0) {
        service.pause();
    }
}

MprisService::MprisService(AppController &controllerToUse, QObject *parent)
    : QObject(parent),
      controller(controllerToUse),
      rootAdaptor(std::make_unique<MprisRootAdaptor>(*this)),
      playerAdaptor(std::make_unique<MprisPlayerAdaptor>(*this)) {
    publishedProperties = announcedPlayerProperties();
    connect(&controller, &AppController::transportChanged, this,
            &MprisService::publishChangedProperties);
    connect(&controller, &AppController::playlistChanged, this,
            &MprisService::publishChangedProperties);
    connect(&controller, &AppController::pictureModeChanged, this,
            &MprisService::publishChangedProperties);
    connect(&controller, &AppController::fileNameChanged, this,
            &MprisService::publishChangedProperties);
    connect(&controller, &AppController::seeked, this, &MprisService::publishSeeked);
}

// The adaptors go first: they are children of this object.
MprisService::~MprisService() {
    if (isRegistered) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(QLatin1String(kObjectPath));
        bus.unregisterService(QLatin1String(kServiceName));
    }
    playerAdaptor.reset();
    rootAdaptor.reset();
}

bool MprisService::registerOnSessionBus() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logWarning(
            QStringLiteral("no session bus: media keys and MPRIS clients cannot reach "
                           "the player"));
        return false;
    }
    if (!bus.registerObject(QLatin1String(kObjectPath), this)) {
        logWarning(QStringLiteral("cannot export %1 on the session bus").arg(kObjectPath));
        return false;
    }
    if (!bus.registerService(QLatin1String(kServiceName))) {
        bus.unregisterObject(QLatin1String(kObjectPath));
        logWarning(
            QStringLiteral("another process holds %1: no MPRIS for this player").arg(kServiceName));
        return false;
    }
    isRegistered = true;
    return true;
}

void MprisService::raise() { controller.raiseMainWindow(); }

void MprisService::quit() { controller.requestQuit(); }

QStringList MprisService::supportedUriSchemes() { return {QStringLiteral("file")}; }

QStringList MprisService::supportedMimeTypes() {
    return QString::fromLatin1(kDesktopMimeTypes).split(QLatin1Char(','), Qt::SkipEmptyParts);
}

QString MprisService::playbackStatus() const {
    const TransportState state = controller.transportState();
    if (!state.isPlayEnabled) {
        return QStringLiteral("Stopped");
    }
    if (state.isPlaying) {
        return QStringLiteral("Playing");
    }
    return isStopped ? QStringLiteral("Stopped") : QStringLiteral("Paused");
}

QString MprisService::currentTrackId() const {
    const Playlist &playlist = controller.playlist();
    if (!controller.transportState().isPlayEnabled || !playlist.hasCurrentItem()) {
        return QLatin1String(kNoTrackId);
    }
    return QLatin1String(kTrackIdPrefix) + QString::number(playlist.indexPlay);
}

QVariantMap MprisService::metadata() const {
    const QString trackId = currentTrackId();
    QVariantMap map{
        {QStringLiteral("mpris:trackid"), QVariant::fromValue(QDBusObjectPath(trackId))}};
    if (trackId == QLatin1String(kNoTrackId)) {
        return map;
    }
    const QUrl &url = controller.playlist().reOpen.reOpenURL;
    map.insert(QStringLiteral("mpris:length"),
               microseconds(controller.transportState().durationSec));
    map.insert(QStringLiteral("xesam:title"), realFileNameStringWhetherBDMV(url));
    map.insert(QStringLiteral("xesam:url"), url.toString(QUrl::FullyEncoded));
    return map;
}

double MprisService::volume() const { return controller.transportState().volume; }

void MprisService::setVolume(double volume) {
    if (std::isfinite(volume)) {
        controller.clickVolumeSlider(volume);
    }
}

qlonglong MprisService::position() const {
    return microseconds(controller.transportState().positionSec);
}

bool MprisService::canGoNext() const { return controller.hasPlaylistItemInDirection(+1); }

bool MprisService::canGoPrevious() const { return controller.hasPlaylistItemInDirection(-1); }

// Play with nothing loaded reopens the recent item, as the play button does
// (the record is read only then: this is asked at every transport change).
bool MprisService::canPlay() const {
    return controller.transportState().isPlayEnabled || controller.hasRecentItem();
}

bool MprisService::canPause() const { return controller.transportState().isPlayEnabled; }

bool MprisService::canSeek() const {
    const TransportState state = controller.transportState();
    return state.isPlayEnabled && state.durationSec > 0.0;
}

void MprisService::play() {
    isStopped = false;
    if (!controller.transportState().isPlaying) {
        controller.clickPlayPauseButton();
    }
    publishChangedProperties();
}

void MprisService::pause() {
    if (controller.transportState().isPlaying) {
        controller.clickPlayPauseButton();
    }
}

void MprisService::playPause() {
    isStopped = false;
    controller.clickPlayPauseButton();
    publishChangedProperties();
}

// There is no stopped state in the player: Stop pauses and goes back to the
// beginning, and the status says "Stopped" until play is pressed.
void MprisService::stop() {
    if (!controller.transportState().isPlayEnabled) {
        return;
    }
    pause();
    controller.seekPressTo(0.0);
    isStopped = true;
    publishChangedProperties();
}

void MprisService::next() {
    isStopped = false;
    controller.clickNextFileButton();
}

void MprisService::previous() {
    isStopped = false;
    controller.clickPrevFileButton();
}

void MprisService::seek(qlonglong offsetUsec) {
    if (!canSeek()) {
        return;
    }
    const TransportState state = controller.transportState();
    const double target = state.positionSec + double(offsetUsec) / kMicrosecondsPerSecond;
    if (target > state.durationSec) {
        next();
        return;
    }
    controller.seekPressTo(std::max(0.0, target));
}

void MprisService::setPosition(const QDBusObjectPath &trackId, qlonglong positionUsec) {
    if (!canSeek() || trackId.path() != currentTrackId()) {
        return;
    }
    const double target = double(positionUsec) / kMicrosecondsPerSecond;
    if (target < 0.0 || target > controller.transportState().durationSec) {
        return;
    }
    controller.seekPressTo(target);
}

void MprisService::openUri(const QString &uri) {
    const QUrl url(uri);
    if (!url.isLocalFile()) {
        logWarning(QStringLiteral("MPRIS OpenUri: only file URIs are opened, not '%1'").arg(uri));
        return;
    }
    isStopped = false;
    controller.openFile(url.toLocalFile());
}

QVariantMap MprisService::announcedPlayerProperties() const {
    return {
        {QStringLiteral("PlaybackStatus"), playbackStatus()},
        {QStringLiteral("Metadata"), metadata()},
        {QStringLiteral("Volume"), volume()},
        {QStringLiteral("CanGoNext"), canGoNext()},
        {QStringLiteral("CanGoPrevious"), canGoPrevious()},
        {QStringLiteral("CanPlay"), canPlay()},
        {QStringLiteral("CanPause"), canPause()},
        {QStringLiteral("CanSeek"), canSeek()},
    };
}

void MprisService::publishChangedProperties() {
    if (controller.transportState().isPlaying) {
        isStopped = false;  // played again, from the window or a key
    }
    const QVariantMap now = announcedPlayerProperties();
    QVariantMap changed;
    for (auto it = now.cbegin(); it != now.cend(); ++it) {
        if (publishedProperties.value(it.key()) != it.value()) {
            changed.insert(it.key(), it.value());
        }
    }
    publishedProperties = now;
    if (changed.isEmpty() || !isRegistered) {
        return;
    }
    QDBusMessage signal = QDBusMessage::createSignal(
        QLatin1String(kObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"));
    signal << QLatin1String(kPlayerInterface) << changed << QStringList();
    QDBusConnection::sessionBus().send(signal);
}

void MprisService::publishSeeked(double positionSec) {
    Q_EMIT playerAdaptor->Seeked(microseconds(positionSec));
}

}  // namespace tolvane
