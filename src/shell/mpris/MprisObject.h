#pragma once
// The player as media controllers see it: the object /org/mpris/MediaPlayer2 under the
// bus name org.mpris.MediaPlayer2.verdin, carrying the root, player and track-list
// interfaces (RootAdaptor, PlayerAdaptor, TrackListAdaptor). It is a face of the facade
// like any other: it reads the views, runs commands through the command table, and
// follows the announcements to tell controllers what changed (PropertiesChanged with the
// values that differ from those last sent, Seeked after every seek, the track-list
// signals). User-interface thread only.
#include "shell/mpris/ArtCache.h"
#include "shell/mpris/TrackIds.h"

#include <QDBusContext>
#include <QObject>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace verdin {

class Player;
class PlayerAdaptor;
class TrackListAdaptor;

// What the application that runs the player does for the root interface.
struct MprisHooks {
    std::function<void()> ensureStarted;  // completes a scheduled start-up
    bool canRaise = false;                // there is a window to show
    std::function<void()> raise;
    std::function<void()> quit;           // the orderly quit of the "Exit" command
};

class MprisObject : public QObject, protected QDBusContext {
    Q_OBJECT
public:
    MprisObject(Player& player, MprisHooks hooks, QObject* parent);
    ~MprisObject() override;

    // The player, its start-up completed first: a controller may ask before it ran.
    Player& Ready();
    const MprisHooks& Hooks() const { return hooks_; }
    TrackIds& Ids() { return ids_; }

    // The metadata of a row's entry; of the current row for CurrentMetadata (an empty map
    // when the list is empty), with what the player actually plays when it plays.
    QVariantMap RowMetadata(int row);
    QVariantMap CurrentMetadata();

    // Answers the call being served with an error (InvalidArgs) instead of its reply. The
    // bus delivers calls of the interfaces with this object as their context.
    void RefuseCall(const QString& message);

    // Sends org.freedesktop.DBus.Properties.PropertiesChanged for one interface.
    static void SendPropertiesChanged(const QString& interface, const QVariantMap& changed);

private:
    void Follow(unsigned changes);

    Player& player_;
    MprisHooks hooks_;
    TrackIds ids_;
    ArtCache art_;
    PlayerAdaptor* playerAdaptor_;
    TrackListAdaptor* trackListAdaptor_;
    int listener_ = 0;
};

// Exports the object and takes the bus name; null (and nothing exported) when the session
// bus is missing or the name is taken. The caller owns the object and must delete it
// while the player still exists: it stops listening to the player as it goes.
std::unique_ptr<QObject> RegisterMpris(Player& player, MprisHooks hooks);

}  // namespace verdin
