#pragma once
// Everything the window title and the status line are made from, gathered by the shell
// at each refresh; the expansions are pure functions of it.
#include <cstdint>
#include <string_view>

namespace verdin {

class Playlist;
class TrackRecord;

enum class PlayerStatus : std::uint8_t { Stopped, Playing, Paused };

// The three user templates (the settings trackTitleTemplate, windowTitleTemplate,
// statusStringTemplate). Not owned: they must outlive the state.
struct TitleTemplates {
    std::string_view trackTitle;
    std::string_view windowTitle;
    std::string_view statusString;
};

struct TitleState {
    TitleTemplates templates;

    // The current track: the one loaded in the player, else the track at the current row
    // (a random entry's picked track once it has one). Null when there is none.
    const TrackRecord* track = nullptr;
    // Whether a track is loaded in the player. Without one, "%time%" reads "0:00" and
    // "%timel%" the length of the current row's entry.
    bool trackLoaded = false;
    // "%num%": the current row counted from 1 (every row of the tree counts, nested
    // playlists' own rows included); 0 when no row is current.
    int number = 0;
    // The playlist that holds the current row's entry (the main playlist or a nested one).
    const Playlist* holder = nullptr;
    PlayerStatus status = PlayerStatus::Stopped;
    bool mainPlaylistEmpty = true;

    // For the status line's times.
    std::uint32_t positionMs = 0;           // play position of the loaded track
    std::uint32_t currentEntryMs = 0;       // length of the current row's entry
    std::int64_t secondsBeforeCurrent = 0;  // whole-second lengths of the playable rows before it, summed
    std::uint32_t mainPlaylistMs = 0;       // length of the whole main playlist
};

// Fills a state from the tree: currentRow is the player's current row (-1 for none),
// loadedTrack the track loaded in the player (null for none). Walks the rows before the
// current one, so a refresh that only moves the position need only update positionMs.
TitleState MakeTitleState(const Playlist& main, int currentRow, const TrackRecord* loadedTrack,
                          std::uint32_t positionMs, PlayerStatus status, const TitleTemplates& templates);

// The sum of Duration()/1000 over the playable rows before row (each truncated first).
std::int64_t WholeSecondsBeforeRow(const Playlist& main, int row);

}  // namespace verdin
