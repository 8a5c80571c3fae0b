#pragma once
// How an entry of a playlist file names a file, and how an item is written back.
//
// An entry is absolute when it begins with "/" or contains "://" (a URL); anything else
// is relative to the directory of the playlist file. A relative entry may come from
// another system, so a "\" in it is read as "/".
//
// Writing is the reverse: an item whose directory lies inside the playlist's directory
// (compared without regard to case) is written relative to it, anything else whole.
#include <string>
#include <string_view>

namespace verdin {

class PlaylistItem;

bool IsAbsoluteEntry(std::string_view entry);

// The path an entry names: an absolute entry as it is; a relative one appended to the
// playlist's directory (which ends in "/"), its backslashes turned into "/".
std::string EntryToPath(std::string_view entry, std::string_view playlistDirectory);

// The text an item is written as, for a playlist whose directory (ending in "/") is given:
//   the item's path begins with the directory and is longer: the rest of its path, body
//   and extension; it is the directory itself: body and extension; else the full name
//   (also when the rest would read back as absolute, as "/x" left by "dir//x" would).
// A nested playlist is written as the name of its file, a URL as its full text.
std::string EntryText(const PlaylistItem& item, std::string_view playlistDirectory);

}  // namespace verdin
