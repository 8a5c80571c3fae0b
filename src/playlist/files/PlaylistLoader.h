#pragma once
// Loading what a path names into the playlist tree.
//
// LoadItem appends to a playlist:
//   - a URL (a path containing "://"): a track, its information read now unless the
//     retrieval settings skip URLs (RetrievalRule.h); nothing answering at the address
//     does not matter;
//   - a local path, looked up on disk (FileLookup.h; the spelling on disk wins), or
//     nothing at all (false) when it names no file (a directory is none). By its
//     extension, compared without regard to case:
//       ".m3u", ".m3u8", ".pls", ".vdp"  a nested playlist holding the file's entries,
//                                        each loaded in turn with LoadItem; a file that
//                                        cannot be read gives an empty one. A playlist
//                                        just loaded has no unsaved changes.
//       ".cue"                           a cue sheet: a track per audio track, named
//                                        "<sheet>#<number>" (CueTrackPath.h); a sheet
//                                        that cannot be parsed gives its "#1" alone.
//       anything else                    a track (information per RetrievalRule.h).
//
// A cue track's name is taken when its sheet exists (its letter case as on disk).
//
// Entries of playlist files: relative ones are taken from the playlist's directory
// (EntryPath.h); entries that name nothing are skipped without a word; in ".vdp" files a
// value beginning with ";" is a random entry, the rest its expression; an M3U comment line
// ("#...") never counts as a URL, whatever it holds.
//
// A playlist that includes itself, directly or through others, is read once along each
// chain of nesting: the inner mention of a file already being read adds nothing. So does
// nesting deeper than kMaxPlaylistNesting files, and any playlist file beyond the
// kMaxPlaylistReads-th read by one call (files that each name the next one twice would
// otherwise be read 2^depth times). Entries of playlist files beyond the
// kMaxPlaylistEntries-th one loaded by one call are skipped too: a file naming another
// thousands of times, which names a track thousands of times, would otherwise fill the
// memory.
#include <string>
#include <string_view>

namespace verdin {

class InputModuleList;
class Playlist;
struct Settings;

inline constexpr int kMaxPlaylistNesting = 64;
inline constexpr int kMaxPlaylistReads = 100000;
inline constexpr int kMaxPlaylistEntries = 1000000;

struct LoadContext {
    const Settings& settings;          // the skipInfoFor... flags and ignoreID3Tags
    const InputModuleList& modules;    // asked when information is read
};

// Appends what path names to parent; false when it names no existing file (or a playlist
// file already being read further up).
bool LoadItem(Playlist& parent, std::string_view path, const LoadContext& context);

// Whether the path's extension is one of a playlist file's.
bool IsPlaylistFileName(std::string_view path);

// Reads the entries of a playlist file (chosen by its extension, as above) into playlist
// itself, rather than into a nested playlist: the main playlist kept in "default.vdp".
// Relative entries are taken from the file's directory. False, and nothing added, when
// the name is not a playlist file's or the file cannot be read; the playlist has no
// unsaved changes afterwards otherwise.
bool LoadPlaylistEntries(Playlist& playlist, const std::string& fileName, const LoadContext& context);

}  // namespace verdin
