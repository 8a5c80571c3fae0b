#pragma once
// The formats a playlist is saved in, by number (the save dialog's filter index).
#include <string>
#include <string_view>

namespace verdin {

enum class PlaylistFormat : int { kM3u = 1, kPls = 2, kVdp = 3 };

// Whether the number is one of the three formats.
bool IsPlaylistFormat(PlaylistFormat format);
// ".m3u", ".pls" or ".vdp"; empty for a number that is no format.
std::string_view FormatExtension(PlaylistFormat format);
// The name to save under: fileName itself when its extension (from its last ".") is the
// format's, compared without regard to case; otherwise fileName with the format's
// extension appended ("mix" and "mix.txt" become "mix.pls", "mix.txt.pls").
std::string NameWithFormatExtension(std::string_view fileName, PlaylistFormat format);

}  // namespace verdin
