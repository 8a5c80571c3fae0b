#pragma once
// Saving one playlist's direct items as M3U, PLS or ".vdp" (nested playlists are written
// as the names of their files, not inlined). Lines end in CR LF.
//
//   M3U   one entry per line, no header; random entries are left out
//   PLS   "[playlist]", "File<n>=<entry>" numbered from 1 over the entries written
//         (random entries are left out and take no number), "NumberOfEntries=<n>"
//   .vdp  "[Verdin Advanced Playlist]", "Version=1.00", "[Entries]", then
//         "Entry<n>=<entry>" for every item, a random entry as "Entry<n>=;<expression>",
//         and "NumberOfEntries=<items>"
//
// Entries are written relative to the playlist's directory where they lie inside it
// (EntryPath.h). In PLS and ".vdp" files, a value that reading would alter (blanks at
// either end, wholly in quotes) is written in double quotes, which reading takes off.
#include "playlist/files/PlaylistFormat.h"

#include <string>
#include <string_view>

namespace verdin {

class Playlist;

// The file's text for the playlist as it is named now.
std::string PlaylistFileText(const Playlist& playlist, PlaylistFormat format);

// Saves the playlist:
//   1. the format's extension is appended to fileName unless it already has it (compared
//      without regard to case);
//   2. when the name differs from the playlist's (exactly, case included) and the playlist
//      has a parent, the parent is marked modified (it now refers to another file); the
//      playlist takes the name and its own unsaved-changes flag clears;
//   3. the file is written whole or not at all: a temporary file beside it, renamed over
//      it (a symbolic link is written through, to the file it names).
// Returns false when the file cannot be written (or format is no format), leaving the
// disk as it was; the name change of step 2 is kept even then.
bool SavePlaylist(Playlist& playlist, std::string_view fileName, PlaylistFormat format);

}  // namespace verdin
