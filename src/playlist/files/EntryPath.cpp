#include "EntryPath.h"

#include "playlist/PlaylistItem.h"
#include "base/Text.h"

#include <algorithm>

namespace verdin {

bool IsAbsoluteEntry(std::string_view entry) {
    return (!entry.empty() && entry.front() == '/') || entry.find("://") != std::string_view::npos;
}

std::string EntryToPath(std::string_view entry, std::string_view playlistDirectory) {
    if (IsAbsoluteEntry(entry)) return std::string(entry);
    std::string path;
    path.reserve(playlistDirectory.size() + entry.size());
    path.append(playlistDirectory);
    const size_t start = path.size();
    path.append(entry);
    std::replace(path.begin() + static_cast<std::ptrdiff_t>(start), path.end(), '\\', '/');
    return path;
}

std::string EntryText(const PlaylistItem& item, std::string_view playlistDirectory) {
    const std::string path = item.Path();
    std::string whole = path + item.Body() + item.Extension();
    if (!StartsWithIgnoreCase(path, playlistDirectory)) return whole;
    // The rest after the directory (just body and extension when path is the directory);
    // a rest that would read back as absolute ("dir//x" leaves "/x") is written whole.
    std::string relative = whole.substr(playlistDirectory.size());
    return IsAbsoluteEntry(relative) ? whole : relative;
}

}  // namespace verdin
