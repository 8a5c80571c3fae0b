#pragma once
// The player as its faces see it (the main window and its dialogs, the D-Bus objects, a
// second start's command line, every face to come): read-only views of the core's state,
// and commands: the command table's, a few with arguments, edits of the main list by
// intent, settings changes through one call. A face registers for the announcements and
// draws from the views; it keeps no state of the core. User-interface thread only.
#include "playlist/mainlist/MainList.h"
#include "playlist/titles/StatusLine.h"
#include "playlist/view/PlaylistViewText.h"
#include "plugins/dsp/DspForward.h"
#include "shell/CommandTable.h"
#include "shell/replaygain/ReplayGainSettings.h"

#include <verdin/input.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace verdin {

class InputModuleList;
class PlayerCore;
class Stream;
struct Settings;
struct SettingsEnvironment;

// What an announcement says changed (bits); the views tell the rest.
enum PlayerChange : unsigned {
    kRowsChanged = 1,        // rows of the main list came, went or moved
    kTextsChanged = 2,       // information shown for some rows changed
    kCurrentChanged = 4,     // the current row is another one
    kListReplaced = 8,       // the main list was emptied or replaced as a whole
    kDisplayChanged = 16,    // status, caption, position, volume or a mode
    kTrackChanged = 32,      // the track in the player: its position range is new
    kSettingsChanged = 64,   // settings changed, and were saved
    kPositionJumped = 128,   // the playing track was seeked, by whichever face
};

class Player {
public:
    explicit Player(PlayerCore& core) : core_(core) {}

    using Listener = std::function<void(unsigned changes)>;
    int Listen(Listener listener);  // the listener's number, for StopListening
    void StopListening(int listener);

    // Views.
    const Settings& GetSettings() const;
    const SettingsEnvironment& Environment() const;
    const InputModuleList& Modules() const;
    const DspLibraryList* DspLibraries() const;  // null before the plug-ins are loaded
    std::vector<std::string> GeneralPlugins() const;  // the descriptions of those running
    const Playlist& List() const;
    const SampleSpace& Samples() const;
    int CurrentRow() const;
    bool StartupDone() const;
    bool Playing() const;
    PlayerStatus Status() const;
    uint32_t PositionMs() const;
    std::pair<int, int> PositionRange() const;  // seconds, and the page step
    const TrackRecord* LoadedTrack() const;     // a copy of the track in the player
    const Stream* CurrentStream() const;        // its analyzer data, format and volume
    const PositionDrag& Drag() const;
    bool PositionHold() const;
    std::string StatusText() const;
    std::string Caption() const;
    // Any template filled in as the status line's is, times included.
    std::string FormatStatus(std::string_view statusTemplate) const;
    std::string TrackTitle(const TrackRecord& track) const;
    RowCells CellsOfRow(int row) const;

    // Commands. Execute runs a command-table identifier as a menu, key or plug-in would;
    // false when unknown, or when it needs a window and none handled it.
    bool Execute(uint32_t id, const CommandContext& context = {});
    bool Execute(Action action, const CommandContext& context = {});
    // The command text of the command server and the command line: "/PLAY" and paths.
    void ExecuteCommandText(std::string_view text);
    // Every menu or key command, scroll and drop ends the "/PLAY" replacement rule.
    void ClearReplacedByShell();
    void PlayRow(int row);
    // Makes a row current without playing it; a row that names no entry is ignored.
    void SetCurrentRow(int row);
    void SeekTo(uint32_t milliseconds);
    void SeekBy(int milliseconds);
    void ChangeVolume(int delta);
    // The volume bar's thumb: position 0..32767 stands for volume 0..65535.
    void SetVolumeFromThumb(int thumb);
    void SetPositionDrag(const PositionDrag& drag);
    void SetPositionHold(bool hold);
    // The playing streams equalize with these values; the settings stay as they are.
    void PreviewEqualizer(bool enabled, const EqualizerValues& values);
    void TakeAnalyzerSnapshot();
    // What depends on the settings follows the change at once (volume, equalizer, DSP
    // modules, play order); then they are saved and announced. False when saving failed.
    bool ChangeSettings(const std::function<void(Settings&)>& change);
    // ReplayGain, kept apart from the settings record: tracks opened from now on use the
    // new values; they are saved to their own file and announced as a settings change.
    // False when saving failed.
    const ReplayGainSettings& GetReplayGain() const;
    bool ChangeReplayGain(const ReplayGainSettings& settings);

    // Edits of the main list, each keeping play order and current row consistent. Rows
    // are rows of the main playlist; atRow < 0 (or past the end) appends.
    int AddPaths(const std::vector<std::string>& paths, int atRow);
    // Entries loaded elsewhere (LoadItem, no information read) moved into the list.
    int AddLoaded(Playlist& loaded, int atRow);
    // Stops playing and empties the list ("Open" then adds and plays).
    void ClearList();
    void AddRandomEntry(int atRow, std::string_view expression);
    bool SetRandomExpression(int row, std::string_view expression);
    void DeleteRows(const std::vector<int>& rows);
    void MoveRows(const std::vector<int>& rows, int beforeRow);
    void IncorporateRows(const std::vector<int>& rows);
    void DropPlaylist(int row);
    // The nested playlist at row (the main one for -1) into a file of a PlaylistFormat;
    // says "Unable to save playlist" when it cannot.
    bool SavePlaylist(int row, const std::string& fileName, int format);
    // The config of a running general-purpose plug-in, by its place in GeneralPlugins().
    bool ConfigureGeneralPlugin(size_t index);
    // Reads the information of the track at row again (a random entry's picked track).
    bool RereadTrack(int row);
    // Adding without reading information (the window reads it on worker threads).
    void SetDeferredRetrieval(bool deferred);
    std::vector<DeferredTrack> TakeDeferredTracks();
    void FillInformation(std::vector<RetrievedTrack> tracks);

private:
    bool ExecuteCoreAction(Action action, const CommandContext& context);
    bool ResetAllOptions();
    void Quit();

    PlayerCore& core_;
};

}  // namespace verdin
