// The facade's views, and the commands that carry arguments.
#include "Player.h"

#include "base/Locations.h"
#include "playlist/titles/StatusTimes.h"
#include "playlist/titles/TrackTitle.h"
#include "playlist/titles/WindowTitle.h"
#include "settings/store/SettingsStore.h"
#include "shell/PlayerCore.h"
#include "shell/replaygain/ReplayGainFile.h"

#include <algorithm>

namespace verdin {

namespace {

TitleState MakeState(const Player& player) {
    const Settings& settings = player.GetSettings();
    const TitleTemplates templates{settings.trackTitleTemplate, settings.windowTitleTemplate,
                                   settings.statusStringTemplate};
    return MakeTitleState(player.List(), player.CurrentRow(), player.LoadedTrack(), player.PositionMs(),
                          player.Status(), templates);
}

}  // namespace

int Player::Listen(Listener listener) {
    const int number = core_.nextListener_++;
    core_.listeners_.emplace_back(number, std::move(listener));
    return number;
}

void Player::StopListening(int listener) {
    std::erase_if(core_.listeners_, [listener](const auto& entry) { return entry.first == listener; });
}

const Settings& Player::GetSettings() const { return core_.settings_; }
const SettingsEnvironment& Player::Environment() const { return core_.environment_; }
const InputModuleList& Player::Modules() const { return core_.modules_; }
const DspLibraryList* Player::DspLibraries() const { return core_.dspLibraries_.get(); }
const Playlist& Player::List() const { return core_.list_.Tree(); }
const SampleSpace& Player::Samples() const { return core_.list_.Samples(); }
int Player::CurrentRow() const { return core_.list_.CurrentRow(); }
bool Player::StartupDone() const { return core_.startupDone_; }
bool Player::Playing() const { return core_.playback_.Playing(); }
PlayerStatus Player::Status() const { return core_.playback_.Status(); }
uint32_t Player::PositionMs() const { return core_.playback_.PositionMs(); }
std::pair<int, int> Player::PositionRange() const { return core_.playback_.PositionRange(); }
const TrackRecord* Player::LoadedTrack() const { return core_.playback_.LoadedTrack(); }
const Stream* Player::CurrentStream() const { return core_.playback_.CurrentStream(); }
const PositionDrag& Player::Drag() const { return core_.playback_.Drag(); }
bool Player::PositionHold() const { return core_.playback_.PositionHold(); }

std::string Player::StatusText() const {
    const TitleState state = MakeState(*this);
    return ComposeStatusText(core_.playback_.StatusLineState(), Drag(), ExpandStatusTemplate(state), state);
}

std::string Player::Caption() const {
    if (!StartupDone()) return "Retrieving track information...";
    if (!GetSettings().customizedCaption) return "Verdin";
    return ExpandWindowTitle(MakeState(*this));
}

std::string Player::FormatStatus(std::string_view statusTemplate) const {
    TitleState state = MakeState(*this);
    state.templates.statusString = statusTemplate;
    return ExpandStatusString(state);
}

std::string Player::TrackTitle(const TrackRecord& track) const {
    return ExpandTrackTitle(track, GetSettings().trackTitleTemplate);
}

RowCells Player::CellsOfRow(int row) const {
    return verdin::CellsOfRow(List(), row, [this](const TrackRecord& t) { return TrackTitle(t); });
}

void Player::ClearReplacedByShell() { core_.replacedByShell_ = false; }
std::vector<std::string> Player::GeneralPlugins() const { return core_.general_.Descriptions(); }
bool Player::ConfigureGeneralPlugin(size_t index) { return core_.general_.Configure(index); }

void Player::PlayRow(int row) { core_.playback_.PlayRow(row); }

void Player::SetCurrentRow(int row) {
    if (row >= 0 && row < List().RowCount()) core_.list_.SetCurrent(row);
}
void Player::SeekTo(uint32_t milliseconds) { core_.playback_.SeekTo(milliseconds); }
void Player::SeekBy(int milliseconds) { core_.playback_.SeekBy(milliseconds); }

void Player::ChangeVolume(int delta) {
    Settings& settings = core_.settings_;
    settings.SetVolume(static_cast<uint16_t>(std::clamp(static_cast<int>(settings.Volume()) + delta, 0, 65535)));
    core_.playback_.ApplyVolume();
}

void Player::SetVolumeFromThumb(int thumb) {
    thumb = std::clamp(thumb, 0, 32767);
    core_.settings_.SetVolume(static_cast<uint16_t>(thumb * 2 + (thumb & 1)));
    core_.playback_.ApplyVolume();
}

void Player::SetPositionDrag(const PositionDrag& drag) { core_.playback_.SetDrag(drag); }
void Player::SetPositionHold(bool hold) { core_.playback_.SetPositionHold(hold); }

void Player::PreviewEqualizer(bool enabled, const EqualizerValues& values) {
    core_.playback_.ApplyEqualizer(enabled, values);
}

void Player::TakeAnalyzerSnapshot() { core_.TakeAnalyzerSnapshot(true); }

bool Player::ChangeSettings(const std::function<void(Settings&)>& change) {
    const Settings before = core_.settings_;
    change(core_.settings_);
    core_.SettingsChanged(before);
    const bool saved = SaveUserSettings(core_.settings_, core_.environment_);
    core_.Announce(kSettingsChanged | kDisplayChanged);
    return saved;
}

const ReplayGainSettings& Player::GetReplayGain() const { return core_.playback_.ReplayGain(); }

bool Player::ChangeReplayGain(const ReplayGainSettings& settings) {
    core_.playback_.SetReplayGain(settings);
    const bool saved = CreateUserDirectory() && SaveReplayGainSettings(settings, core_.environment_.userDirectory);
    if (!saved)
        core_.host_.ShowMessage("Unable to save the ReplayGain settings to " +
                                    ReplayGainFilePath(core_.environment_.userDirectory), MessageIcon::kError);
    core_.Announce(kSettingsChanged);
    return saved;
}

}  // namespace verdin
