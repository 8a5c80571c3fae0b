// The facade's commands: dispatch of command-table identifiers, the command text of the
// command server, and the edits of the main list.
#include "Player.h"

#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/files/PlaylistFileTexts.h"
#include "shell/CommandText.h"
#include "shell/PlayerCore.h"

#include <sys/stat.h>

namespace verdin {

bool Player::Execute(uint32_t id, const CommandContext& context) {
    const CommandEntry* entry = FindCommand(id);
    return entry && Execute(entry->action, context);
}

bool Player::Execute(Action action, const CommandContext& context) {
    core_.replacedByShell_ = false;
    return ExecuteCoreAction(action, context);
}

bool Player::ExecuteCoreAction(Action action, const CommandContext& context) {
    Playback& playback = core_.playback_;
    MainList& list = core_.list_;
    switch (action) {
        case Action::kPreviousTrack: playback.Previous(); return true;
        case Action::kStop: playback.Stop(); return true;
        case Action::kPauseResume: playback.PauseResume(); return true;
        case Action::kPlay: playback.Play(); return true;
        case Action::kNextTrack: playback.Next(false); return true;
        case Action::kNextTrackCrossfade: playback.Next(true); return true;
        case Action::kToggleLoop: ChangeSettings([](Settings& s) { s.loopMode = s.loopMode ? 0 : 1; }); return true;
        case Action::kToggleVisualization:
            ChangeSettings([](Settings& s) { s.enableVisualizationPlugins = s.enableVisualizationPlugins ? 0 : 1; });
            return true;
        case Action::kToggleShuffle: ChangeSettings([](Settings& s) { s.shuffleMode = s.shuffleMode ? 0 : 1; }); return true;
        case Action::kResetOptions: ResetAllOptions(); return true;
        case Action::kExit: Quit(); return true;
        case Action::kAddNewPlaylist:
            list.AddNewPlaylist(context.FirstSelectedRow(), UntitledPlaylistName(Environment().userDirectory));
            return true;
        case Action::kSortPlaylist:
            list.Sort([this](const PlaylistItem& item) {
                if (item.Kind() == ItemKind::kTrack) return TrackTitle(static_cast<const TrackItem&>(item).Track());
                return CellsOfItem(item, 0, nullptr)[0];
            });
            return true;
        case Action::kFlattenMainPlaylist: list.Flatten(); return true;
        case Action::kRefreshInformation:
            playback.SetStatusState(StatusState::RetrievingInformation);
            list.RereadAll();
            playback.SetStatusState(StatusState::Normal);
            return true;
        case Action::kRecreateSampleSpace: playback.RecreateSampleSpace(); return true;
        case Action::kSeekBack: playback.SeekBy(-5000); return true;
        case Action::kSeekForward: playback.SeekBy(5000); return true;
        case Action::kVolumeUp: ChangeVolume(2048); return true;
        case Action::kVolumeDown: ChangeVolume(-2048); return true;
        case Action::kFirstRow:
            if (const int first = list.FirstPlayable(0); first >= 0) playback.PlayRow(first);
            return true;
        case Action::kLastRow:
            if (const int last = list.LastPlayable(list.RowCount() - 1); last >= 0) playback.PlayRow(last);
            return true;
        case Action::kIgnored: return true;
        default: break;
    }
    // Everything else opens or acts on a window; the window library handles those itself
    // before they get here, so reaching this point means there is no window.
    const CommandEntry& entry = CommandFor(action);
    core_.host_.WindowCommandUnavailable(entry.menuText.empty() ? entry.key : entry.menuText);
    return false;
}

void Player::ExecuteCommandText(std::string_view text) {
    bool cleared = false;
    for (const std::string& token : SplitCommandText(text)) {
        if (IsPlayToken(token) && (!Playing() || !core_.replacedByShell_)) {
            ClearList();
            cleared = true;
            core_.replacedByShell_ = true;
            continue;
        }
        // A path: a directory is scanned, anything else appended. A name that does not
        // exist (a URL among them) takes the directory route and adds nothing.
        struct stat st;
        if (::stat(token.c_str(), &st) == 0) core_.list_.Add({token}, -1);
    }
    if (cleared && List().RowCount() > 0) core_.playback_.Play();
}

bool Player::ResetAllOptions() {
    if (!core_.host_.AskYesNo("Do you really want to reset all options (including window positions and such)?",
                              MessageIcon::kQuestion, Unanswered::kYes))
        return false;
    ChangeSettings([this](Settings& settings) { SetDefaults(settings, Environment()); });
    return true;
}

void Player::Quit() {
    if (HasUnsavedPlaylists(List()) &&
        !core_.host_.AskYesNo("The main playlist contains unsaved playlist(s).\nQuit anyway?", MessageIcon::kWarning,
                              Unanswered::kNo))
        return;
    core_.host_.Quit();
}

int Player::AddPaths(const std::vector<std::string>& paths, int atRow) { return core_.list_.Add(paths, atRow); }

int Player::AddLoaded(Playlist& loaded, int atRow) { return core_.list_.AddLoaded(loaded, atRow); }

void Player::ClearList() {
    core_.playback_.Stop();
    core_.list_.Clear();
}

void Player::AddRandomEntry(int atRow, std::string_view expression) {
    core_.list_.Insert(atRow, std::make_unique<RandomEntry>(expression));
}

bool Player::SetRandomExpression(int row, std::string_view expression) {
    return core_.list_.SetExpression(row, expression);
}

void Player::DeleteRows(const std::vector<int>& rows) { core_.list_.Delete(rows); }
void Player::MoveRows(const std::vector<int>& rows, int beforeRow) { core_.list_.Move(rows, beforeRow); }

void Player::IncorporateRows(const std::vector<int>& rows) {
    core_.list_.Incorporate(rows, UntitledPlaylistName(Environment().userDirectory));
}

void Player::DropPlaylist(int row) { core_.list_.DropPlaylist(row); }

bool Player::SavePlaylist(int row, const std::string& fileName, int format) {
    if (core_.list_.Save(row, fileName, format)) return true;
    core_.host_.ShowMessage(kUnableToSavePlaylist, MessageIcon::kError);
    return false;
}

bool Player::RereadTrack(int row) { return core_.list_.Reread(row); }
void Player::SetDeferredRetrieval(bool deferred) { core_.list_.SetDeferredRetrieval(deferred); }
std::vector<DeferredTrack> Player::TakeDeferredTracks() { return core_.list_.TakeDeferred(); }
void Player::FillInformation(std::vector<RetrievedTrack> tracks) { core_.list_.Fill(std::move(tracks)); }

}  // namespace verdin
