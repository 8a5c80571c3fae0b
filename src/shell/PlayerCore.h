#pragma once
// The player without windows: the main playlist and its play order, the sample space,
// the streams that play the current and the next track, and every command that acts on
// them. The windowed and the headless player both run exactly this; only PlayerHost
// differs.
//
// The current row is the row of the main playlist that plays (or would play); the
// current stream plays its track, and the next stream, prepared while the current one
// plays, takes its device over when the track ends (continuous play and crossfade). The
// progress tick (every 100 ms while anything plays) notices the end of a track, swaps in
// the prepared stream, moves the current row on, and prepares the stream after that.
//
// User-interface thread only.
#include "engine/input/InputModuleList.h"
#include "engine/stream/Stream.h"
#include "playlist/PlayOrder.h"
#include "playlist/Playlist.h"
#include "playlist/TrackRecord.h"
#include "playlist/random/SampleSpace.h"
#include "playlist/titles/StatusLine.h"
#include "playlist/titles/TitleState.h"
#include "playlist/view/PlaylistViewText.h"
#include "settings/Settings.h"
#include "shell/CommandTable.h"
#include "shell/PlayerHost.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class DspHost;
class DspLibraryList;
struct DspModuleRef;
class TrackItem;

// Where a command that inserts or deletes acts: the playlist view's selection when the
// view has the keyboard focus, else the end of the main playlist.
struct CommandContext {
    bool viewHasFocus = false;
    std::vector<int> selectedRows;  // rows of the main playlist, in any order
    int FirstSelectedRow() const;
};

class PlayerCore {
public:
    PlayerCore(Settings& settings, SettingsEnvironment environment, PlayerHost& host);
    ~PlayerCore();
    PlayerCore(const PlayerCore&) = delete;
    PlayerCore& operator=(const PlayerCore&) = delete;

    // Start-up: the input modules and plug-in hosts, then the default playlist (or the
    // command text when there is one), the saved current row, automatic play.
    void LoadPlugins(void* mainWindow);
    void StartUp(std::string_view commandText);
    bool StartupDone() const { return startupDone_; }
    // Teardown: stop playing, save the main playlist to "default.vdp" and the settings.
    // Returns false when something could not be saved (the reason went to the host).
    bool TearDown();

    // Runs a command-table identifier as a menu, key or plug-in would; false for an
    // unknown identifier and for a command that needs a window when there is none.
    bool ExecuteCommand(uint32_t id, const CommandContext& context = {});
    bool ExecuteAction(Action action, const CommandContext& context = {});
    // The command interpreter of the command server and the command line.
    void ExecuteCommandText(std::string_view text);
    // Every menu or key command, scroll and drop clears this (the "/PLAY" rule).
    void ClearReplacedByShell() { replacedByShell_ = false; }

    // Playback.
    void Play(bool keepRandomEntries = false);
    void Stop();
    void PauseResume();
    void NextTrack(bool crossfade);
    void PreviousTrack();
    void PlayRow(int row);
    void SeekTo(uint32_t milliseconds);
    void SeekBy(int milliseconds);
    void ChangeVolume(int delta);
    // The volume bar's thumb: position 0..32767 stands for volume 0..65535.
    void SetVolumeFromThumb(int thumb);
    void ApplyVolume();
    void ProgressTick();
    bool Playing() const { return current_ != nullptr; }

    // The main playlist and what belongs to it.
    Playlist& MainPlaylist() { return main_; }
    const Playlist& MainPlaylist() const { return main_; }
    int CurrentRow() const { return currentRow_; }
    void SetCurrentRow(int row);
    PlayOrder& Order() { return order_; }
    void RebuildShuffleOrder();
    const InputModuleList& Modules() const { return modules_; }
    Settings& GetSettings() { return settings_; }
    const SettingsEnvironment& Environment() const { return environment_; }
    // Whoever runs the player: message boxes and redrawing, for the dialogs.
    PlayerHost& Host() { return host_; }
    // The DSP plug-in libraries found on "dspPluginsSearchPath" and the DSP host; null
    // before LoadPlugins.
    DspLibraryList* DspLibraries() const { return dspLibraries_.get(); }
    DspHost* Dsp() const { return dsp_.get(); }
    // The DSP options page's Apply: a search path that differs from "dspPluginsSearchPath"
    // is enumerated anew and stored; then the active list and "dspPlugins" are rebuilt
    // from refs, in order.
    void ApplyDspModules(const std::string& searchPath, const std::vector<DspModuleRef>& refs);
    SampleSpace& Samples() { return sampleSpace_; }
    Stream* CurrentStream() const { return current_.get(); }
    Stream* NextPreparedStream() const { return next_.get(); }
    // The track loaded in the player (a copy of the record it was started from), or null.
    const TrackRecord* LoadedTrack() const { return loaded_.get(); }

    // Adding: files and playlists by path, directories by the directory scan. atRow < 0
    // appends to the main playlist; otherwise the items go before that row. Returns the
    // number of items added. When the list was empty, its first entry becomes current.
    int AddPaths(const std::vector<std::string>& paths, int atRow);
    int AddDirectory(const std::string& directory, int atRow);
    // After adding: the shuffle order is rebuilt, and an empty list's first entry becomes
    // current. Called by the add commands.
    void CommitAdditions(bool wasEmpty);
    // "Open": clear, add, play.
    void OpenPaths(const std::vector<std::string>& paths);
    // With deferred retrieval (the window sets it), tracks added by AddPaths and
    // AddDirectory get no information on the way in, so adding thousands of files never
    // blocks; the tracks the retrieval rule wants read are listed instead, for the caller
    // to read elsewhere and to take right after the add. A track about to play still gets
    // its information first, so its title shows at once.
    void SetDeferredRetrieval(bool deferred) { deferRetrieval_ = deferred; }
    struct DeferredTrack {
        int row;           // where the track is now
        std::string path;  // its full name
    };
    // The tracks listed since the last call that are still in the main playlist, in row
    // order.
    std::vector<DeferredTrack> TakeDeferredTracks();
    bool SaveMainPlaylistAs(const std::string& fileName, int format);
    // After rows were deleted or moved by the window (drag and drop), so the play order and
    // the prepared stream follow.
    void ListChanged();
    void DeleteRows(const std::vector<int>& rows);
    void RefreshInformation();
    bool RecreateSampleSpace();

    // What the displays show.
    PlayerStatus Status() const;
    uint32_t PositionMs() const;
    int32_t StatusState() const { return statusState_; }
    void SetPositionDrag(const PositionDrag& drag) { drag_ = drag; }
    const PositionDrag& Drag() const { return drag_; }
    bool PositionHold() const { return positionHold_; }
    void SetPositionHold(bool hold) { positionHold_ = hold; }
    std::string StatusText();
    std::string Caption();
    std::string TrackTitle(const TrackRecord& track) const;
    // The cells of every row, as the playlist view shows them.
    RowCells CellsOfRow(int row) const;
    // The position bars' range and page for a track of the given length.
    static std::pair<int, int> PositionRange(uint32_t durationMs);

private:
    // Playback internals.
    bool PrepareSampleSpaceFor(bool keepRandomEntries);
    bool StartCurrentRow();
    std::unique_ptr<Stream> MakeStream(const std::string& path, Stream* previous);
    std::string PathOfRow(int row, TrackRecord** record);
    void PrepareNextStream();
    void CloseNext();
    void CloseStreams();
    void ApplyPresetLink(const std::string& path);
    void TrackStarted(const TrackRecord* record);
    void MoveCurrentRowOn(bool& keepPlaying, bool& wrapped);
    void DeleteFinishedRow(int row);
    TitleState MakeState();
    void Refresh(bool listChanged);
    void NoteDeferred(const PlaylistItem& item);
    void RetrieveBeforePlaying(TrackRecord* record);

    // Commands.
    bool ResetAllOptions();
    void Quit();

    Settings& settings_;
    const SettingsEnvironment environment_;
    PlayerHost& host_;
    InputModuleList modules_;
    std::unique_ptr<DspLibraryList> dspLibraries_;
    std::unique_ptr<DspHost> dsp_;
    void* mainWindow_ = nullptr;  // the plug-ins' parent window record, from LoadPlugins
    Playlist main_;
    PlayOrder order_;
    SampleSpace sampleSpace_;
    int currentRow_ = 0;

    std::unique_ptr<Stream> current_;
    std::unique_ptr<Stream> next_;
    int nextRow_ = -1;
    bool nextPrepared_ = false;   // a next stream was tried for the current one
    std::unique_ptr<TrackRecord> loaded_;
    std::unique_ptr<TrackRecord> nextLoaded_;

    bool deferRetrieval_ = false;
    std::vector<const TrackItem*> deferredTracks_;

    bool startupDone_ = false;
    bool replacedByShell_ = false;
    bool progressBusy_ = false;
    bool holdRow_ = false;
    bool positionHold_ = false;
    int32_t statusState_ = 0;
    PositionDrag drag_;
};

}  // namespace verdin
