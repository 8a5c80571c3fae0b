#pragma once
// What the status line shows, by the status state the shell keeps:
//   1 "Retrieving information, please wait..."   2 "Loading track..."
//   3 "Loading next track for continuous play..." 4 the sample space text
//   0 while the position thumb is dragged with a track loaded: "Move to 1:23 (4:56)"
//     (the drag target, then the track's length); otherwise the status template with
//     its times (StatusTimes.h).
#include "playlist/titles/TitleState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace verdin {

enum class StatusState : std::int32_t {
    Normal = 0,
    RetrievingInformation = 1,
    LoadingTrack = 2,
    LoadingNextTrack = 3,
    CreatingSampleSpace = 4,
};

// The fixed text of states 1 to 4; nothing for the normal state (or a value that is no
// state, which shows as normal).
std::optional<std::string_view> TransientStatusText(std::int32_t statusState);

// "Move to", the drag target (" %d:%02d" or " %d:%02d:%02d"), the track's length in whole
// seconds (" (%d:%02d)" or " (%d:%02d:%02d)").
std::string MoveToStatusText(std::int64_t dragTargetSeconds, std::uint32_t trackLengthMs);

// The position thumb as the status line needs it.
struct PositionDrag {
    bool dragging = false;
    std::int64_t targetSeconds = 0;
};

// The whole line. statusTemplate is the first pass's result (WindowTitle.h).
std::string ComposeStatusText(std::int32_t statusState, const PositionDrag& drag, std::string_view statusTemplate,
                              const TitleState& state);

}  // namespace verdin
