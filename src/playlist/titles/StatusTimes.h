#pragma once
// The second pass of the status line: its time variables, every refresh.
//
//   %time%    the loaded track's position ("0:00" when no track is loaded)
//   %timel%   its length minus its position (no track loaded: the length of the current
//             row's entry)
//   %ptime%   the lengths of the playable rows before the current one, plus the position
//   %ptimel%  the main playlist's length, minus those before, minus the position
// Every term is truncated to whole seconds before it is added or subtracted; a result
// below zero (a position past the length) shows as 0:00. Formats as DurationText.h.
// "%%" is a "%" sign; any other name gives nothing.
#include "playlist/titles/TitleState.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace verdin {

struct StatusTimes {
    std::int64_t time = 0;
    std::int64_t timeLeft = 0;
    std::int64_t playlistTime = 0;
    std::int64_t playlistTimeLeft = 0;
};

StatusTimes ComputeStatusTimes(const TitleState& state);

std::string ComposeStatusTimes(std::string_view statusTemplate, const TitleState& state);

}  // namespace verdin
