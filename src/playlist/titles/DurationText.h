#pragma once
// Durations as the user sees them: "%d:%02d" (minutes, seconds) under an hour,
// "%d:%02d:%02d" (hours, minutes, seconds) from an hour on.
#include <cstdint>
#include <string>

namespace verdin {

std::string FormatDuration(std::int64_t seconds);

}  // namespace verdin
