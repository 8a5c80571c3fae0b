#include "OpenFilters.h"

#include "playlist/files/PlaylistFileTexts.h"

#include <string_view>

namespace verdin {

namespace {

std::vector<std::string_view> SplitFields(std::string_view text, char separator) {
    std::vector<std::string_view> fields;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) end = text.size();
        fields.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return fields;
}

void AppendPatterns(std::string& list, std::string_view patterns) {
    if (patterns.empty()) return;
    if (!list.empty()) list += ';';
    list += patterns;
}

}  // namespace

std::vector<DialogFilter> OpenFileFilters(const std::vector<FileTypeFilter>& moduleFilters) {
    std::vector<DialogFilter> filters;
    std::string all;
    for (const FileTypeFilter& type : moduleFilters) AppendPatterns(all, type.patterns);
    AppendPatterns(all, kPlaylistOpenFilter);
    filters.push_back({"All supported files", all});
    filters.push_back({std::string("Playlist files (") + kPlaylistOpenFilter + ")", kPlaylistOpenFilter});
    for (const FileTypeFilter& type : moduleFilters)
        filters.push_back({type.description + " (" + type.patterns + ")", type.patterns});
    filters.push_back({"All files (*.*)", "*.*"});
    return filters;
}

std::vector<DialogFilter> SavePlaylistFilters() {
    // "M3U Playlist|*.m3u|PLS Playlist|*.pls|VDP Playlist|*.vdp|": display, pattern, ...
    const std::vector<std::string_view> fields = SplitFields(kPlaylistSaveFilter, '|');
    std::vector<DialogFilter> filters;
    for (size_t i = 0; i + 1 < fields.size(); i += 2)
        filters.push_back({std::string(fields[i]), std::string(fields[i + 1])});
    return filters;
}

std::string QtFilter(const DialogFilter& filter) {
    std::string patterns;
    for (std::string_view pattern : SplitFields(filter.patterns, ';')) {
        if (pattern.empty()) continue;
        if (!patterns.empty()) patterns += ' ';
        patterns += pattern == "*.*" ? std::string_view("*") : pattern;
    }
    return filter.display + " (" + patterns + ")";
}

}  // namespace verdin
