#include "PlayerCore.h"

#include "playlist/RandomEntryWalk.h"
#include "playlist/files/PlaylistFileTexts.h"
#include "playlist/files/PlaylistFormat.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "playlist/titles/StatusTimes.h"
#include "playlist/titles/TrackTitle.h"
#include "playlist/titles/WindowTitle.h"
#include "plugins/dsp/DspHost.h"
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/dsp/DspPluginsText.h"
#include "settings/EqualizerRecord.h"
#include "base/Locations.h"
#include "settings/SettingsStorage.h"
#include "settings/store/SettingsStore.h"

#include <algorithm>

namespace verdin {

int CommandContext::FirstSelectedRow() const {
    if (!viewHasFocus || selectedRows.empty()) return -1;
    return *std::min_element(selectedRows.begin(), selectedRows.end());
}

PlayerCore::PlayerCore(Settings& settings, SettingsEnvironment environment, PlayerHost& host)
    : settings_(settings), environment_(std::move(environment)), host_(host) {}

PlayerCore::~PlayerCore() {
    // Streams first: the DSP host's hook is in their options.
    CloseStreams();
}

void PlayerCore::LoadPlugins(void* mainWindow) {
    mainWindow_ = mainWindow;
    dspLibraries_ = std::make_unique<DspLibraryList>(static_cast<VerdinHostWindow*>(mainWindow),
                                                     settings_.dspPluginsSearchPath);
    dsp_ = std::make_unique<DspHost>();
    const std::vector<DspModuleRef> refs = ParseDspPlugins(settings_.dspPlugins);
    dsp_->SetActiveList(*dspLibraries_, refs);
    modules_.LoadInputModules(settings_.inputPluginsSearchPath, mainWindow);
}

void PlayerCore::ApplyDspModules(const std::string& searchPath, const std::vector<DspModuleRef>& refs) {
    if (!dspLibraries_ || searchPath != settings_.dspPluginsSearchPath) {
        dspLibraries_ = std::make_unique<DspLibraryList>(static_cast<VerdinHostWindow*>(mainWindow_), searchPath);
        settings_.dspPluginsSearchPath = searchPath;
    }
    if (!dsp_) dsp_ = std::make_unique<DspHost>();
    dsp_->SetActiveList(*dspLibraries_, refs);
    settings_.dspPlugins = FormatDspPlugins(refs);
}

void PlayerCore::StartUp(std::string_view commandText) {
    if (commandText.empty()) {
        const std::string defaultPlaylist = environment_.userDirectory + "/default.vdp";
        LoadPlaylistEntries(main_, defaultPlaylist, LoadContext{settings_, modules_});
        main_.SetFileName(defaultPlaylist);
        main_.SetModified(false);
        RebuildShuffleOrder();
        const int saved = settings_.savedCurrentIndex;
        currentRow_ = saved >= 0 && saved < main_.RowCount() ? saved : 0;
        order_.SetCursorToRow(currentRow_);
        startupDone_ = true;
        if (settings_.autoPlayAtStartup) Play();
    } else {
        startupDone_ = true;
        ExecuteCommandText(commandText);
    }
    Refresh(true);
}

bool PlayerCore::TearDown() {
    Stop();
    bool saved = true;
    CreateUserDirectory();
    const std::string defaultPlaylist = environment_.userDirectory + "/default.vdp";
    if (!SavePlaylist(main_, defaultPlaylist, PlaylistFormat::kVdp)) {
        host_.ShowMessage(kUnableToSavePlaylist, MessageIcon::kError);
        saved = false;
    }
    settings_.savedCurrentIndex = currentRow_;
    if (!SaveUserSettings(settings_, environment_)) saved = false;
    if (dsp_) dsp_->ClearActiveList();
    return saved;
}

void PlayerCore::SetCurrentRow(int row) {
    currentRow_ = row;
    order_.SetCursorToRow(row);
    if (Playing()) {
        // The track after the new current row follows the playing one.
        CloseNext();
        nextPrepared_ = false;
    }
    Refresh(false);
}

void PlayerCore::RebuildShuffleOrder() { order_.Rebuild(main_); }

PlayerStatus PlayerCore::Status() const {
    if (!current_) return PlayerStatus::Stopped;
    return current_->PlaybackPaused() ? PlayerStatus::Paused : PlayerStatus::Playing;
}

uint32_t PlayerCore::PositionMs() const { return current_ ? current_->PlayedMilliseconds() : 0; }

std::string PlayerCore::TrackTitle(const TrackRecord& track) const {
    return ExpandTrackTitle(track, settings_.trackTitleTemplate);
}

RowCells PlayerCore::CellsOfRow(int row) const {
    return verdin::CellsOfRow(main_, row, [this](const TrackRecord& t) { return TrackTitle(t); });
}

TitleState PlayerCore::MakeState() {
    const TitleTemplates templates{settings_.trackTitleTemplate, settings_.windowTitleTemplate,
                                   settings_.statusStringTemplate};
    return MakeTitleState(main_, currentRow_, loaded_.get(), PositionMs(), Status(), templates);
}

std::string PlayerCore::StatusText() {
    const TitleState state = MakeState();
    return ComposeStatusText(statusState_, drag_, ExpandStatusTemplate(state), state);
}

std::string PlayerCore::Caption() {
    if (!startupDone_) return "Retrieving track information...";
    if (!settings_.customizedCaption) return "Verdin";
    return ExpandWindowTitle(MakeState());
}

std::pair<int, int> PlayerCore::PositionRange(uint32_t durationMs) {
    const int d = static_cast<int>(durationMs / 1000);
    if (d < 16) return {d, 1};
    return {d + d / 16 - 1, d / 16};
}

void PlayerCore::Refresh(bool listChanged) { host_.Refresh(listChanged); }

bool PlayerCore::ResetAllOptions() {
    if (!host_.AskYesNo("Do you really want to reset all options (including window positions and such)?",
                        MessageIcon::kQuestion))
        return false;
    SetDefaults(settings_, environment_);
    SaveUserSettings(settings_, environment_);
    Refresh(true);
    return true;
}

void PlayerCore::Quit() {
    if (HasUnsavedPlaylists(main_) &&
        !host_.AskYesNo("The main playlist contains unsaved playlist(s).\nQuit anyway?", MessageIcon::kWarning))
        return;
    host_.Quit();
}

}  // namespace verdin
