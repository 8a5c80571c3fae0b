#include "playlist/titles/DurationText.h"

#include <cstdio>

namespace verdin {

std::string FormatDuration(std::int64_t seconds) {
    char text[48];
    const long long s = seconds;
    if (s < 3600) std::snprintf(text, sizeof text, "%lld:%02lld", s / 60, s % 60);
    else std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", s / 3600, s / 60 % 60, s % 60);
    return text;
}

}  // namespace verdin
