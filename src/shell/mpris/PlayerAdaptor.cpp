#include "PlayerAdaptor.h"

#include "playlist/TrackRecord.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/mpris/MprisObject.h"

#include <QUrl>
#include <algorithm>
#include <cmath>

namespace verdin {

// Nothing is read here: reading would run a start-up that is still scheduled. The first
// announcement sends every changeable property.
PlayerAdaptor::PlayerAdaptor(MprisObject& object) : QDBusAbstractAdaptor(&object), object_(object) {}

QString PlayerAdaptor::PlaybackStatus() const {
    switch (object_.Ready().Status()) {
        case PlayerStatus::Playing: return QStringLiteral("Playing");
        case PlayerStatus::Paused: return QStringLiteral("Paused");
        default: return QStringLiteral("Stopped");
    }
}

QString PlayerAdaptor::LoopStatus() const {
    return object_.Ready().GetSettings().loopMode ? QStringLiteral("Playlist") : QStringLiteral("None");
}

void PlayerAdaptor::SetLoopStatus(const QString& status) {
    if (status != QLatin1String("None") && status != QLatin1String("Playlist") && status != QLatin1String("Track"))
        return;
    const int32_t loop = status == QLatin1String("None") ? 0 : 1;
    Player& player = object_.Ready();
    if (player.GetSettings().loopMode != loop) player.ChangeSettings([loop](Settings& s) { s.loopMode = loop; });
}

bool PlayerAdaptor::Shuffle() const { return object_.Ready().GetSettings().shuffleMode != 0; }

void PlayerAdaptor::SetShuffle(bool shuffle) {
    Player& player = object_.Ready();
    if ((player.GetSettings().shuffleMode != 0) != shuffle)
        player.ChangeSettings([shuffle](Settings& s) { s.shuffleMode = shuffle ? 1 : 0; });
}

QVariantMap PlayerAdaptor::Metadata() const {
    object_.Ready();
    return object_.CurrentMetadata();
}

double PlayerAdaptor::Volume() const { return object_.Ready().GetSettings().Volume() / 65535.0; }

void PlayerAdaptor::SetVolume(double volume) {
    if (std::isnan(volume)) return;
    const auto value = static_cast<uint16_t>(std::lround(std::clamp(volume, 0.0, 1.0) * 65535));
    Player& player = object_.Ready();
    if (player.GetSettings().Volume() != value) player.ChangeSettings([value](Settings& s) { s.SetVolume(value); });
}

qlonglong PlayerAdaptor::Position() const { return static_cast<qlonglong>(object_.Ready().PositionMs()) * 1000; }

bool PlayerAdaptor::CanPlay() const { return object_.Ready().List().PlayableCount() > 0; }

bool PlayerAdaptor::CanSeek() const {
    const TrackRecord* track = object_.Ready().LoadedTrack();
    return track && track->Seekable();
}

void PlayerAdaptor::Next() { object_.Ready().Execute(Action::kNextTrack); }
void PlayerAdaptor::Previous() { object_.Ready().Execute(Action::kPreviousTrack); }
void PlayerAdaptor::Stop() { object_.Ready().Execute(Action::kStop); }

void PlayerAdaptor::Pause() {
    Player& player = object_.Ready();
    if (player.Status() == PlayerStatus::Playing) player.Execute(Action::kPauseResume);
}

void PlayerAdaptor::Play() {
    Player& player = object_.Ready();
    if (player.Status() == PlayerStatus::Paused) player.Execute(Action::kPauseResume);
    else if (player.Status() == PlayerStatus::Stopped) player.Execute(Action::kPlay);
}

void PlayerAdaptor::PlayPause() {
    Player& player = object_.Ready();
    player.Execute(player.Status() == PlayerStatus::Stopped ? Action::kPlay : Action::kPauseResume);
}

void PlayerAdaptor::Seek(qlonglong offset) {
    Player& player = object_.Ready();
    const TrackRecord* track = player.LoadedTrack();
    if (!CanSeek()) return;
    const qlonglong target = static_cast<qlonglong>(player.PositionMs()) + offset / 1000;
    // Past the end is the next track, as a controller expects; before the start is the start.
    if (track->Duration() > 0 && target >= static_cast<qlonglong>(track->Duration())) {
        player.Execute(Action::kNextTrack);
        return;
    }
    player.SeekTo(static_cast<uint32_t>(std::max<qlonglong>(target, 0)));
}

void PlayerAdaptor::SetPosition(const QDBusObjectPath& trackId, qlonglong position) {
    Player& player = object_.Ready();
    const TrackRecord* track = player.LoadedTrack();
    // A position meant for another track than the one playing is stale: ignored.
    if (!CanSeek() || trackId != object_.Ids().IdOfRow(player.List(), player.CurrentRow())) return;
    if (position < 0 || (track->Duration() > 0 && position / 1000 > static_cast<qlonglong>(track->Duration()))) return;
    player.SeekTo(static_cast<uint32_t>(position / 1000));
}

void PlayerAdaptor::OpenUri(const QString& uri) {
    Player& player = object_.Ready();
    const QUrl url(uri);
    const int row = player.List().RowCount();
    if (!url.isLocalFile() || player.AddPaths({url.toLocalFile().toStdString()}, -1) == 0) {
        object_.RefuseCall(QStringLiteral("Cannot open \"%1\": not a playable local file").arg(uri));
        return;
    }
    player.PlayRow(row);
}

QVariantMap PlayerAdaptor::ChangeableProperties() const {
    return {{QStringLiteral("PlaybackStatus"), PlaybackStatus()}, {QStringLiteral("LoopStatus"), LoopStatus()},
            {QStringLiteral("Shuffle"), Shuffle()},               {QStringLiteral("Volume"), Volume()},
            {QStringLiteral("Metadata"), Metadata()},             {QStringLiteral("CanGoNext"), CanPlay()},
            {QStringLiteral("CanGoPrevious"), CanPlay()},         {QStringLiteral("CanPlay"), CanPlay()},
            {QStringLiteral("CanPause"), CanPlay()},              {QStringLiteral("CanSeek"), CanSeek()}};
}

PlayerAdaptor::Sources PlayerAdaptor::ReadSources() const {
    Player& player = object_.Ready();
    const Settings& settings = player.GetSettings();
    const TrackRecord* track = player.LoadedTrack();
    return {static_cast<int>(player.Status()), settings.loopMode, settings.shuffleMode, settings.Volume(),
            player.CurrentRow(), player.List().ItemAtRow(player.CurrentRow()).item, track,
            track ? track->Revision() : 0};
}

void PlayerAdaptor::Follow(unsigned changes) {
    // Rows, texts, the track and the settings change the properties in ways the sources do
    // not show; a change of the display alone is looked at through them.
    const Sources sources = ReadSources();
    const bool displayOnly = (changes & ~(kDisplayChanged | kPositionJumped)) == 0;
    if (!displayOnly || sources_ != sources) {
        sources_ = sources;
        SendChangedProperties();
    }
    if (changes & kPositionJumped) emit Seeked(Position());
}

void PlayerAdaptor::SendChangedProperties() {
    const QVariantMap now = ChangeableProperties();
    QVariantMap changed;
    for (auto value = now.begin(); value != now.end(); ++value)
        if (sent_.value(value.key()) != value.value()) changed.insert(value.key(), value.value());
    sent_ = now;
    MprisObject::SendPropertiesChanged(QStringLiteral("org.mpris.MediaPlayer2.Player"), changed);
}

}  // namespace verdin
