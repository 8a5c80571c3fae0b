#pragma once
// What the player says about the sample space.
#include <string_view>

namespace verdin {

// The status line while a sample space is built.
inline constexpr std::string_view kCreatingSampleSpaceText =
    "Creating sample space... This may (and probably will) take some time.";

// The warning (exclamation icon, caption "Verdin") when a build found nothing. The
// spelling "where" is the player's own and stays.
inline constexpr std::string_view kNoSampleSpaceTracksWarning =
    "No tracks where found from the current sample space path.\nPlease check your settings from the "
    "Options->Playlist.";

}  // namespace verdin
