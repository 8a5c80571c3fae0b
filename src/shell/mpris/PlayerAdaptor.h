#pragma once
// org.mpris.MediaPlayer2.Player: transport, seeking, loop, shuffle, volume and what plays.
//
// Every transport method runs the command-table action the menus and keys run, so a
// controller, the window and plug-ins never disagree. LoopStatus maps onto the player's
// one loop setting: "None" is off, "Playlist" on; "Track" (which the player has no mode
// for) is taken as "Playlist". Volume 0.0-1.0 is the main volume 0-65535. Positions are
// microseconds. Setting the rate does nothing: the player plays at 1.0 only.
#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>
#include <cstdint>
#include <optional>

namespace verdin {

class MprisObject;

class PlayerAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ PlaybackStatus)
    Q_PROPERTY(QString LoopStatus READ LoopStatus WRITE SetLoopStatus)
    Q_PROPERTY(double Rate READ Rate WRITE SetRate)
    Q_PROPERTY(double MinimumRate READ Rate)
    Q_PROPERTY(double MaximumRate READ Rate)
    Q_PROPERTY(bool Shuffle READ Shuffle WRITE SetShuffle)
    Q_PROPERTY(QVariantMap Metadata READ Metadata)
    Q_PROPERTY(double Volume READ Volume WRITE SetVolume)
    Q_PROPERTY(qlonglong Position READ Position)
    Q_PROPERTY(bool CanGoNext READ CanPlay)
    Q_PROPERTY(bool CanGoPrevious READ CanPlay)
    Q_PROPERTY(bool CanPlay READ CanPlay)
    Q_PROPERTY(bool CanPause READ CanPlay)
    Q_PROPERTY(bool CanSeek READ CanSeek)
    Q_PROPERTY(bool CanControl READ CanControl)
public:
    explicit PlayerAdaptor(MprisObject& object);

    QString PlaybackStatus() const;
    QString LoopStatus() const;
    void SetLoopStatus(const QString& status);
    double Rate() const { return 1.0; }
    void SetRate(double) {}
    bool Shuffle() const;
    void SetShuffle(bool shuffle);
    QVariantMap Metadata() const;
    double Volume() const;
    void SetVolume(double volume);
    qlonglong Position() const;
    // With anything playable in the list the transport works (next and previous wrap).
    bool CanPlay() const;
    bool CanSeek() const;
    bool CanControl() const { return true; }

    // After an announcement: the properties that changed since last sent, and Seeked.
    void Follow(unsigned changes);

public slots:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong offset);
    void SetPosition(const QDBusObjectPath& trackId, qlonglong position);
    void OpenUri(const QString& uri);

signals:
    void Seeked(qlonglong Position);

private:
    QVariantMap ChangeableProperties() const;
    void SendChangedProperties();
    // What the changeable properties are made of, cheap to read and compare: the progress
    // tick announces a display change ten times a second, and making the properties
    // (the metadata above all) each time only to find them unchanged costs more than the
    // rest of the tick.
    struct Sources {
        int status;
        int32_t loop, shuffle;
        uint16_t volume;
        int row;
        const void* item;
        const void* track;
        uint32_t revision;
        bool operator==(const Sources&) const = default;
    };
    Sources ReadSources() const;

    MprisObject& object_;
    QVariantMap sent_;  // the changeable properties as controllers were last told
    std::optional<Sources> sources_;  // what sent_ was made of
};

}  // namespace verdin
