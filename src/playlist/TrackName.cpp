#include "TrackName.h"

namespace verdin {

TrackName SplitTrackName(std::string_view name) {
    const size_t slash = name.rfind('/');
    const size_t bodyStart = slash == std::string_view::npos ? 0 : slash + 1;
    size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot < bodyStart) dot = name.size();
    TrackName split;
    split.path = std::string(name.substr(0, bodyStart));
    split.body = std::string(name.substr(bodyStart, dot - bodyStart));
    split.extension = std::string(name.substr(dot));
    return split;
}

}  // namespace verdin
