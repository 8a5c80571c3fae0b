#include "MprisObject.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "shell/Player.h"
#include "shell/mpris/PlayerAdaptor.h"
#include "shell/mpris/RootAdaptor.h"
#include "shell/mpris/TrackListAdaptor.h"
#include "shell/mpris/TrackMetadata.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>

namespace verdin {

namespace {

constexpr const char* kMprisPath = "/org/mpris/MediaPlayer2";
constexpr const char* kMprisName = "org.mpris.MediaPlayer2.verdin";

// The record a row plays: a track's own, a random entry's pick; null otherwise.
const TrackRecord* RecordOfRow(const Playlist& list, int row) {
    const PlaylistItem* item = list.ItemAtRow(row).item;
    if (!item) return nullptr;
    if (item->Kind() == ItemKind::kTrack) return &static_cast<const TrackItem*>(item)->Track();
    if (item->Kind() == ItemKind::kRandomEntry) return static_cast<const RandomEntry*>(item)->PickedTrack();
    return nullptr;
}

}  // namespace

MprisObject::MprisObject(Player& player, MprisHooks hooks, QObject* parent)
    : QObject(parent), player_(player), hooks_(std::move(hooks)) {
    new RootAdaptor(*this);
    playerAdaptor_ = new PlayerAdaptor(*this);
    trackListAdaptor_ = new TrackListAdaptor(*this);
    listener_ = player_.Listen([this](unsigned changes) { Follow(changes); });
}

MprisObject::~MprisObject() { player_.StopListening(listener_); }

Player& MprisObject::Ready() {
    if (hooks_.ensureStarted) hooks_.ensureStarted();
    return player_;
}

QVariantMap MprisObject::RowMetadata(int row) {
    const Playlist& list = player_.List();
    const PlaylistItem* item = list.ItemAtRow(row).item;
    if (!item) return {};
    const TrackRecord* track = RecordOfRow(list, row);
    if (row == player_.CurrentRow() && player_.LoadedTrack()) track = player_.LoadedTrack();
    if (track && track->IsNullTrack()) track = nullptr;
    std::string title = item->Body();
    if (track) title = track->SuggestedTitle().empty() ? track->Body() : track->SuggestedTitle();
    return TrackMetadata(ids_.IdOfRow(list, row), track, title, track ? art_.UrlFor(*track) : QString());
}

QVariantMap MprisObject::CurrentMetadata() { return RowMetadata(player_.CurrentRow()); }

void MprisObject::RefuseCall(const QString& message) {
    if (calledFromDBus()) sendErrorReply(QDBusError::InvalidArgs, message);
}

void MprisObject::SendPropertiesChanged(const QString& interface, const QVariantMap& changed) {
    if (changed.isEmpty()) return;
    QDBusMessage signal = QDBusMessage::createSignal(QLatin1String(kMprisPath),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << interface << changed << QStringList();
    QDBusConnection::sessionBus().send(signal);
}

void MprisObject::Follow(unsigned changes) {
    if (changes & (kRowsChanged | kListReplaced)) ids_.Forget(player_.List());
    playerAdaptor_->Follow(changes);
    trackListAdaptor_->Follow(changes);
}

std::unique_ptr<QObject> RegisterMpris(Player& player, MprisHooks hooks) {
    qDBusRegisterMetaType<QList<QDBusObjectPath>>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return nullptr;
    auto object = std::make_unique<MprisObject>(player, std::move(hooks), nullptr);
    if (bus.registerObject(QLatin1String(kMprisPath), object.get(), QDBusConnection::ExportAdaptors)) {
        if (bus.registerService(QLatin1String(kMprisName))) return object;
        bus.unregisterObject(QLatin1String(kMprisPath));
    }
    return nullptr;
}

}  // namespace verdin
