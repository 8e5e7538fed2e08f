#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <memory>

class QDBusObjectPath;

namespace tolvane {

class AppController;
class MprisRootAdaptor;
class MprisPlayerAdaptor;

// The MPRIS 2.2 interface of Tolvane on the session bus: the
// "org.mpris.MediaPlayer2.tolvane" name with the org.mpris.MediaPlayer2 and
// org.mpris.MediaPlayer2.Player interfaces at /org/mpris/MediaPlayer2, which
// media keys, desktop panels and playerctl use. Every action goes through
// the controller as the matching button would; every change the controller
// announces is published as PropertiesChanged (Position, as the
// MPRIS protocol asks, only through Seeked).
// Thread-safety: main thread only.
class MprisService : public QObject {
    Q_OBJECT
public:
    static constexpr const char *kServiceName = "org.mpris.MediaPlayer2.tolvane";
    static constexpr const char *kObjectPath = "/org/mpris/MediaPlayer2";
    static constexpr const char *kPlayerInterface = "org.mpris.MediaPlayer2.Player";

    explicit MprisService(AppController &controller, QObject *parent = nullptr);
    ~MprisService() override;

    // False without a session bus or when the name is taken (logged once);
    // the player then runs without MPRIS.
    bool registerOnSessionBus();

    // --- org.mpris.MediaPlayer2
    void raise();
    void quit();
    static QStringList supportedUriSchemes();
    // The MIME types of the desktop file.
    static QStringList supportedMimeTypes();

    // --- org.mpris.MediaPlayer2.Player
    QString playbackStatus() const;  // "Playing", "Paused" or "Stopped"
    QVariantMap metadata() const;
    double volume() const;
    void setVolume(double volume);
    qlonglong position() const;  // microseconds
    bool canGoNext() const;
    bool canGoPrevious() const;
    bool canPlay() const;
    bool canPause() const;
    bool canSeek() const;
    void play();
    void pause();
    void playPause();
    void stop();
    void next();
    void previous();
    void seek(qlonglong offsetUsec);
    void setPosition(const QDBusObjectPath &trackId, qlonglong positionUsec);
    void openUri(const QString &uri);

    // The Player properties that PropertiesChanged announces, by their bus names.
    QVariantMap announcedPlayerProperties() const;

private:
    void publishChangedProperties();
    void publishSeeked(double positionSec);
    QString currentTrackId() const;

    AppController &controller;
    std::unique_ptr<MprisRootAdaptor> rootAdaptor;
    std::unique_ptr<MprisPlayerAdaptor> playerAdaptor;
    QVariantMap publishedProperties;
    bool isStopped = false;  // Stop was asked and play was not pressed since
    bool isRegistered = false;
};

}  // namespace tolvane
