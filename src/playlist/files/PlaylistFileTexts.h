#pragma once
// Texts the shell shows around playlist files.
namespace verdin {

// The open dialog's pattern for playlist files.
inline constexpr char kPlaylistOpenFilter[] = "*.M3U;*.PLS;*.VDP";
// The save dialog's filter: description|pattern pairs, in format order (1 M3U, 2 PLS,
// 3 VDP), so the chosen filter's 1-based index is the format number.
inline constexpr char kPlaylistSaveFilter[] = "M3U Playlist|*.m3u|PLS Playlist|*.pls|VDP Playlist|*.vdp|";
// Shown when SavePlaylist returns false.
inline constexpr char kUnableToSavePlaylist[] = "Unable to save playlist";

}  // namespace verdin
