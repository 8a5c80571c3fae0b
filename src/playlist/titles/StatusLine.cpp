#include "playlist/titles/StatusLine.h"

#include "playlist/TrackRecord.h"
#include "playlist/random/SampleSpaceTexts.h"
#include "playlist/titles/DurationText.h"
#include "playlist/titles/StatusTimes.h"

#include <algorithm>
#include <array>

namespace verdin {
namespace {

constexpr std::array<std::string_view, 4> kTransientTexts{
    "Retrieving information, please wait...",
    "Loading track...",
    "Loading next track for continuous play...",
    kCreatingSampleSpaceText,
};

}  // namespace

std::optional<std::string_view> TransientStatusText(std::int32_t statusState) {
    if (statusState < 1 || statusState > static_cast<std::int32_t>(kTransientTexts.size())) return std::nullopt;
    return kTransientTexts[static_cast<std::size_t>(statusState - 1)];
}

std::string MoveToStatusText(std::int64_t dragTargetSeconds, std::uint32_t trackLengthMs) {
    return "Move to " + FormatDuration(std::max<std::int64_t>(dragTargetSeconds, 0)) + " (" +
           FormatDuration(trackLengthMs / 1000) + ")";
}

std::string ComposeStatusText(std::int32_t statusState, const PositionDrag& drag, std::string_view statusTemplate,
                              const TitleState& state) {
    if (const auto text = TransientStatusText(statusState)) return std::string(*text);
    if (drag.dragging && state.trackLoaded && state.track)
        return MoveToStatusText(drag.targetSeconds, state.track->Duration());
    return ComposeStatusTimes(statusTemplate, state);
}

}  // namespace verdin
