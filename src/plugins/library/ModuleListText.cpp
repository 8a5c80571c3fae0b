#include "ModuleListText.h"

#include "base/SearchPath.h"
#include "base/Text.h"

namespace verdin {

std::vector<ModuleRef> ParseModuleList(std::string_view text) {
    std::vector<ModuleRef> entries;
    // The pieces follow the search-path rule: ";"-terminated, empty ones skipped.
    for (const std::string& piece : SplitSearchPath(text)) {
        const size_t comma = piece.rfind(',');
        if (comma == std::string::npos) {
            entries.push_back({piece, 0});
        } else {
            entries.push_back({piece.substr(0, comma), ParseDecimal(std::string_view(piece).substr(comma + 1))});
        }
    }
    return entries;
}

std::string FormatModuleList(std::span<const ModuleRef> entries) {
    std::string text;
    for (const ModuleRef& entry : entries) {
        text += entry.libraryPath;
        text += ',';
        text += std::to_string(entry.moduleIndex);
        text += ';';
    }
    return text;
}

}  // namespace verdin
