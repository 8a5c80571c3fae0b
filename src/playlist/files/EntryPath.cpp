#include "EntryPath.h"

#include "playlist/PlaylistItem.h"
#include "settings/Text.h"

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
    std::string text;
    if (StartsWithIgnoreCase(path, playlistDirectory))
        text.append(path, playlistDirectory.size());  // empty when path is the directory
    else
        text.append(path);
    text.append(item.Body());
    text.append(item.Extension());
    return text;
}

}  // namespace verdin
