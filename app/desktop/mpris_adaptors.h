#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>
#include <QVariantMap>

#include "app/desktop/mpris_service.h"

namespace tolvane {

// The two MPRIS interfaces as QtDBus exports them: properties and methods
// under their bus names, each forwarded to the MprisService they adapt.

class MprisRootAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ canQuit)
    Q_PROPERTY(bool CanRaise READ canRaise)
    Q_PROPERTY(bool HasTrackList READ hasTrackList)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ supportedUriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ supportedMimeTypes)
public:
    explicit MprisRootAdaptor(MprisService &service);

    bool canQuit() const { return true; }
    bool canRaise() const { return true; }
    bool hasTrackList() const { return false; }
    QString identity() const { return QStringLiteral("Tolvane"); }
    QString desktopEntry() const { return QStringLiteral("tolvane"); }
    QStringList supportedUriSchemes() const { return MprisService::supportedUriSchemes(); }
    QStringList supportedMimeTypes() const { return MprisService::supportedMimeTypes(); }

public Q_SLOTS:
    void Raise() { service.raise(); }
    void Quit() { service.quit(); }

private:
    MprisService &service;
};

class MprisPlayerAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPause)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)
public:
    explicit MprisPlayerAdaptor(MprisService &service);

    QString playbackStatus() const { return service.playbackStatus(); }
    // Tolvane plays at the normal rate only; 0 asks for a pause.
    double rate() const { return 1.0; }
    void setRate(double rate);
    QVariantMap metadata() const { return service.metadata(); }
    double volume() const { return service.volume(); }
    void setVolume(double volume) { service.setVolume(volume); }
    qlonglong position() const { return service.position(); }
    bool canGoNext() const { return service.canGoNext(); }
    bool canGoPrevious() const { return service.canGoPrevious(); }
    bool canPlay() const { return service.canPlay(); }
    bool canPause() const { return service.canPause(); }
    bool canSeek() const { return service.canSeek(); }
    bool canControl() const { return true; }

public Q_SLOTS:
    void Next() { service.next(); }
    void Previous() { service.previous(); }
    void Pause() { service.pause(); }
    void PlayPause() { service.playPause(); }
    void Stop() { service.stop(); }
    void Play() { service.play(); }
    void Seek(qlonglong Offset) { service.seek(Offset); }
    void SetPosition(const QDBusObjectPath &TrackId, qlonglong Position) {
        service.setPosition(TrackId, Position);
    }
    void OpenUri(const QString &Uri) { service.openUri(Uri); }

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    MprisService &service;
};

}  // namespace tolvane
