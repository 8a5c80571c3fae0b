#include "playlist/titles/StatusTimes.h"

#include "playlist/TrackRecord.h"
#include "playlist/titles/DurationText.h"
#include "playlist/titles/TemplateExpansion.h"

#include <algorithm>
#include <array>

namespace verdin {
namespace {

struct TimeVariable {
    std::string_view name;
    std::int64_t StatusTimes::*seconds;
};

constexpr std::array<TimeVariable, 4> kTimeVariables{{
    {"time", &StatusTimes::time},
    {"timel", &StatusTimes::timeLeft},
    {"ptime", &StatusTimes::playlistTime},
    {"ptimel", &StatusTimes::playlistTimeLeft},
}};

}  // namespace

StatusTimes ComputeStatusTimes(const TitleState& state) {
    const bool loaded = state.trackLoaded && state.track;
    const std::int64_t position = loaded ? state.positionMs / 1000 : 0;
    StatusTimes times;
    times.time = position;
    times.timeLeft = loaded ? state.track->Duration() / 1000 - position : state.currentEntryMs / 1000;
    times.playlistTime = state.secondsBeforeCurrent + position;
    times.playlistTimeLeft = state.mainPlaylistMs / 1000 - state.secondsBeforeCurrent - position;
    times.timeLeft = std::max<std::int64_t>(times.timeLeft, 0);
    times.playlistTimeLeft = std::max<std::int64_t>(times.playlistTimeLeft, 0);
    return times;
}

std::string ComposeStatusTimes(std::string_view statusTemplate, const TitleState& state) {
    const StatusTimes times = ComputeStatusTimes(state);
    return ExpandReferences(statusTemplate, {.percentSign = "%", .keepUnknown = false, .escapeValues = false},
                            [&times](std::string_view name, std::string& out) {
                                for (const TimeVariable& variable : kTimeVariables) {
                                    if (variable.name == name) {
                                        out += FormatDuration(times.*variable.seconds);
                                        return true;
                                    }
                                }
                                return false;
                            });
}

}  // namespace verdin
