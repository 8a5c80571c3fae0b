#pragma once
// The desktop entries that stand for the player's file classes and folder verbs.
//
// A file class is an entry the user's defaults name for a MIME type: "Verdin.Track"
// ("Verdin Audio File") and "Verdin.Playlist" ("Verdin Playlist File"), each opening its
// files with "Play with Verdin" (`verdin /PLAY %F`, the default) and offering "Add to
// Verdin main playlist" (`verdin %F`). The folder verbs are two entries for
// inode/directory, "Verdin.Play" and "Verdin.Add", that file managers offer for folders.
// None of them shows in application menus.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr std::string_view kTrackClass = "Verdin.Track";
inline constexpr std::string_view kPlaylistClass = "Verdin.Playlist";
inline constexpr std::string_view kPlayFolderVerb = "Verdin.Play";
inline constexpr std::string_view kAddFolderVerb = "Verdin.Add";

// The class of an extension (with its dot): ".vdp", ".m3u", ".pls" (any case) and
// ".m3u8" are playlists, everything else a track.
std::string_view ClassOfExtension(std::string_view extension);

// The entry's file name: "Verdin.Track.desktop".
std::string DesktopFileName(std::string_view name);

// The text of a class's entry for these MIME types, running program.
std::string ClassEntryText(std::string_view className, std::string_view program,
                           const std::vector<std::string>& mimeTypes);
// The text of a folder verb's entry.
std::string FolderVerbEntryText(std::string_view verb, std::string_view program);

// The program quoted for an Exec line.
std::string ExecQuoted(std::string_view program);

}  // namespace verdin
