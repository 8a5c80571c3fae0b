// The commands: dispatch of command-table identifiers, the command text of the command
// server, and the commands that add to or change the main playlist.
#include "PlayerCore.h"

#include "playlist/TrackItem.h"
#include "playlist/TreeCommands.h"
#include "playlist/files/PlaylistFormat.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "playlist/files/RetrievalRule.h"
#include "base/DirectoryListing.h"
#include "shell/CommandText.h"
#include "shell/DirectoryScan.h"

#include <algorithm>
#include <sys/stat.h>
#include <unordered_set>

namespace verdin {

bool PlayerCore::ExecuteCommand(uint32_t id, const CommandContext& context) {
    const CommandEntry* entry = FindCommand(id);
    if (!entry) return false;
    return ExecuteAction(entry->action, context);
}

bool PlayerCore::ExecuteAction(Action action, const CommandContext& context) {
    replacedByShell_ = false;
    const CommandEntry& entry = CommandFor(action);
    switch (action) {
        case Action::kPreviousTrack: PreviousTrack(); return true;
        case Action::kStop: Stop(); return true;
        case Action::kPauseResume: PauseResume(); return true;
        case Action::kPlay: Play(); return true;
        case Action::kNextTrack: NextTrack(false); return true;
        case Action::kNextTrackCrossfade: NextTrack(true); return true;
        case Action::kToggleLoop:
            settings_.loopMode = !settings_.loopMode;
            if (Playing()) {
                CloseNext();
                nextPrepared_ = false;
            }
            Refresh(false);
            return true;
        case Action::kToggleShuffle:
            settings_.shuffleMode = !settings_.shuffleMode;
            RebuildShuffleOrder();
            order_.SetCursorToRow(currentRow_);
            if (Playing()) {
                CloseNext();
                nextPrepared_ = false;
            }
            Refresh(false);
            return true;
        case Action::kResetOptions: ResetAllOptions(); return true;
        case Action::kExit: Quit(); return true;
        case Action::kAddNewPlaylist: {
            const bool wasEmpty = main_.PlayableCount() == 0;
            AddNewPlaylist(main_, context.FirstSelectedRow(), UntitledPlaylistName(environment_.userDirectory));
            ListChanged();
            CommitAdditions(wasEmpty);
            return true;
        }
        case Action::kSortPlaylist:
            SortPlaylist(main_, [this](const PlaylistItem& item) {
                if (item.Kind() == ItemKind::kTrack) return TrackTitle(static_cast<const TrackItem&>(item).Track());
                return CellsOfItem(item, 0, nullptr)[0];
            });
            ListChanged();
            return true;
        case Action::kFlattenMainPlaylist:
            FlattenMainPlaylist(main_);
            ListChanged();
            return true;
        case Action::kRefreshInformation: RefreshInformation(); return true;
        case Action::kRecreateSampleSpace:
            statusState_ = static_cast<int32_t>(StatusState::CreatingSampleSpace);
            host_.RefreshNow();
            RecreateSampleSpace();
            statusState_ = 0;
            Refresh(true);
            return true;
        case Action::kSeekBack: SeekBy(-5000); return true;
        case Action::kSeekForward: SeekBy(5000); return true;
        case Action::kVolumeUp: ChangeVolume(2048); return true;
        case Action::kVolumeDown: ChangeVolume(-2048); return true;
        case Action::kFirstRow: {
            const int first = NextPlayableRow(main_, 0);
            if (first >= 0) PlayRow(first);
            return true;
        }
        case Action::kLastRow: {
            const int last = PreviousPlayableRow(main_, main_.RowCount() - 1);
            if (last >= 0) PlayRow(last);
            return true;
        }
        case Action::kIgnored: return true;
        default: break;
    }
    // Everything else opens or acts on a window; the window library handles those itself
    // before they get here, so reaching this point means there is no window.
    host_.WindowCommandUnavailable(entry.menuText.empty() ? entry.key : entry.menuText);
    return false;
}

void PlayerCore::ExecuteCommandText(std::string_view text) {
    const bool wasEmpty = main_.PlayableCount() == 0;
    bool cleared = false;
    for (const std::string& token : SplitCommandText(text)) {
        if (IsPlayToken(token) && (!current_ || !replacedByShell_)) {
            Stop();
            main_.Clear();
            currentRow_ = 0;
            cleared = true;
            replacedByShell_ = true;
            continue;
        }
        // A path: a directory is scanned, anything else appended. A name that does not
        // exist takes the directory route and adds nothing.
        struct stat st;
        if (::stat(token.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) AddDirectory(token, -1);
        else AddPaths({token}, -1);
    }
    RebuildShuffleOrder();
    if (cleared || wasEmpty) {
        currentRow_ = settings_.shuffleMode ? order_.First() : 0;
        order_.SetCursorToRow(currentRow_);
        if (cleared && main_.RowCount() > 0) {
            Play();
            return;
        }
    }
    Refresh(true);
}

int PlayerCore::AddPaths(const std::vector<std::string>& paths, int atRow) {
    // Deferred: loaded as if every retrieval were switched off, then listed.
    Settings noRetrieval;
    if (deferRetrieval_) {
        noRetrieval = settings_;
        noRetrieval.skipInfoForAnyFile = 1;
    }
    const LoadContext context{deferRetrieval_ ? noRetrieval : settings_, modules_};
    int added = 0;
    if (atRow < 0 || !main_.ItemAtRow(atRow)) {
        for (const std::string& path : paths) {
            if (IsDirectory(path)) {
                added += AddDirectory(path, -1);
            } else if (LoadItem(main_, path, context)) {
                NoteDeferred(*main_.ItemAt(main_.ItemCount() - 1));
                ++added;
            }
        }
    } else {
        // Loaded into a scratch playlist first, then moved before the row, in order.
        Playlist scratch;
        for (const std::string& path : paths) {
            if (IsDirectory(path)) {
                for (const std::string& file : ScanDirectory(path, settings_.recursiveAddDirectory != 0,
                                                             modules_.SupportedExtensions()))
                    LoadItem(scratch, file, context);
            } else {
                LoadItem(scratch, path, context);
            }
        }
        const RowRef ref = main_.ItemAtRow(atRow);
        const size_t at = ref.index;
        for (size_t i = 0; i < scratch.ItemCount(); ++i) NoteDeferred(*scratch.ItemAt(i));
        added = static_cast<int>(scratch.ItemCount());
        ref.holder->InsertItems(at, scratch.TakeAllItems());
    }
    if (added > 0) ListChanged();
    return added;
}

void PlayerCore::NoteDeferred(const PlaylistItem& item) {
    if (!deferRetrieval_) return;
    if (item.Kind() == ItemKind::kTrack) {
        const auto& track = static_cast<const TrackItem&>(item);
        if (ShouldRetrieveOnAdd(track.Track(), settings_)) deferredTracks_.push_back(&track);
    } else if (item.Kind() == ItemKind::kPlaylist) {
        const auto& playlist = static_cast<const Playlist&>(item);
        for (size_t i = 0; i < playlist.ItemCount(); ++i) NoteDeferred(*playlist.ItemAt(i));
    }
}

std::vector<PlayerCore::DeferredTrack> PlayerCore::TakeDeferredTracks() {
    std::vector<DeferredTrack> tracks;
    if (deferredTracks_.empty()) return tracks;
    // Listed items may have gone since (a "/PLAY" empties the list between two paths):
    // only those still found in the tree are handed out, and nothing listed is touched
    // before it is found.
    std::unordered_set<const PlaylistItem*> listed(deferredTracks_.begin(), deferredTracks_.end());
    deferredTracks_.clear();
    const int rows = main_.RowCount();
    for (int row = 0; row < rows && !listed.empty(); ++row) {
        const RowRef ref = main_.ItemAtRow(row);
        if (listed.erase(ref.item) == 0) continue;
        tracks.push_back({row, static_cast<const TrackItem*>(ref.item)->Track().FullName()});
    }
    return tracks;
}

int PlayerCore::AddDirectory(const std::string& directory, int atRow) {
    if (!IsDirectory(directory)) return 0;
    const std::vector<std::string> files =
        ScanDirectory(directory, settings_.recursiveAddDirectory != 0, modules_.SupportedExtensions());
    if (files.empty()) return 0;
    return AddPaths(files, atRow);
}

void PlayerCore::CommitAdditions(bool wasEmpty) {
    RebuildShuffleOrder();
    if (wasEmpty && main_.RowCount() > 0) {
        currentRow_ = settings_.shuffleMode ? order_.First() : 0;
        order_.SetCursorToRow(currentRow_);
    } else {
        order_.SetCursorToRow(currentRow_);
    }
    Refresh(true);
}

void PlayerCore::OpenPaths(const std::vector<std::string>& paths) {
    Stop();
    main_.Clear();
    currentRow_ = 0;
    AddPaths(paths, -1);
    CommitAdditions(true);
    Play();
}

bool PlayerCore::SaveMainPlaylistAs(const std::string& fileName, int format) {
    if (SavePlaylist(main_, fileName, static_cast<PlaylistFormat>(format))) {
        Refresh(true);
        return true;
    }
    host_.ShowMessage("Unable to save playlist", MessageIcon::kError);
    return false;
}

void PlayerCore::ListChanged() {
    // The track prepared to follow may no longer be the one that follows.
    if (Playing()) {
        CloseNext();
        nextPrepared_ = false;
    }
    if (currentRow_ >= main_.RowCount()) currentRow_ = std::max(0, main_.RowCount() - 1);
    Refresh(true);
}

void PlayerCore::DeleteRows(const std::vector<int>& rows) {
    if (rows.empty()) return;
    const PlaylistItem* currentItem = main_.ItemAtRow(currentRow_).item;
    const int before = std::count_if(rows.begin(), rows.end(), [&](int r) { return r < currentRow_; });
    verdin::DeleteRows(main_, rows);
    const int stillThere = currentItem ? RowOfItem(main_, currentItem) : -1;
    currentRow_ = stillThere >= 0 ? stillThere : std::max(0, std::min(currentRow_ - before, main_.RowCount() - 1));
    RebuildShuffleOrder();
    order_.SetCursorToRow(currentRow_);
    ListChanged();
}

void PlayerCore::RefreshInformation() {
    statusState_ = static_cast<int32_t>(StatusState::RetrievingInformation);
    host_.RefreshNow();
    const int rows = main_.RowCount();
    for (int row = 0; row < rows; ++row) {
        const RowRef ref = main_.ItemAtRow(row);
        if (ref && ref.item->Kind() == ItemKind::kTrack)
            static_cast<TrackItem*>(ref.item)->Track().RetrieveInformation(modules_, settings_.ignoreID3Tags != 0);
    }
    statusState_ = 0;
    Refresh(true);
}

}  // namespace verdin
