#pragma once
// The main window's caption and the status line, from their templates.
//
// Both show "Empty playlist" whatever their template says when no track is loaded and
// the main playlist is empty. Variables (names exact, case-sensitive), in lookup order:
//   %sugtitle%  the current track's suggested title     %title%  its track title
//   %num%       its row number, "%d."                   %path% %body% %ext%  its name
//   %dur%       its duration                            %ppath% %pbody% %pext%  the name
//   %pdur%      of the playlist holding it, and that playlist's total duration
//   %status%    "paused", "playing" or "stopped"        %%  a "%" sign
// Without a current track the track's variables are empty (and %ppath%... without the
// playlist holding the current row). Unknown references are written back unchanged.
//
// The status line is made in two passes: the variables above (ExpandStatusTemplate, run
// when the track, the list or the mode changes), then the times (ComposeStatusTimes,
// StatusTimes.h, run at every refresh). The first pass keeps "%%" and the time
// references for the second and doubles the "%" signs of the texts it puts in, so that a
// title such as "100% Pure" comes out as it is.
#include "playlist/titles/TitleState.h"

#include <string>

namespace verdin {

inline constexpr std::string_view kEmptyPlaylistTitle = "Empty playlist";

std::string ExpandWindowTitle(const TitleState& state);

// The status line's template after the first pass.
std::string ExpandStatusTemplate(const TitleState& state);
// Both passes.
std::string ExpandStatusString(const TitleState& state);

}  // namespace verdin
