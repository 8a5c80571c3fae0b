#include "InputFileTypes.h"

#include "base/Text.h"

#include <algorithm>
#include <cstring>

namespace verdin {

namespace {

// Real lists are a few hundred bytes; this only stops a list that has no end.
constexpr size_t kMaxFileTypeListBytes = 64 * 1024;

// The next NUL-terminated text at list[at], or none when the bound is reached first.
std::optional<std::string_view> TextAt(const char* list, size_t at) {
    if (at >= kMaxFileTypeListBytes) return std::nullopt;
    const size_t length = strnlen(list + at, kMaxFileTypeListBytes - at);
    if (at + length == kMaxFileTypeListBytes) return std::nullopt;
    return std::string_view(list + at, length);
}

}  // namespace

std::vector<FileTypeFilter> ParseFileTypeList(const char* list) {
    std::vector<FileTypeFilter> out;
    if (!list) return out;
    size_t at = 0;
    for (;;) {
        const auto description = TextAt(list, at);
        if (!description || description->empty()) break;
        at += description->size() + 1;
        const auto patterns = TextAt(list, at);
        if (!patterns || patterns->empty()) break;
        at += patterns->size() + 1;
        out.push_back({std::string(*description), std::string(*patterns)});
    }
    return out;
}

std::optional<std::string> ExtensionOfPattern(std::string_view pattern) {
    pattern = TrimBlanks(pattern);
    if (pattern.size() < 3 || pattern.substr(0, 2) != "*.") return std::nullopt;
    const std::string_view rest = pattern.substr(2);
    if (rest.find_first_of("*?.; \t") != std::string_view::npos) return std::nullopt;
    return "." + std::string(rest);
}

void AppendPatternExtensions(std::string_view patterns, std::vector<std::string>& extensions) {
    size_t start = 0;
    while (start <= patterns.size()) {
        size_t end = patterns.find(';', start);
        if (end == std::string_view::npos) end = patterns.size();
        if (auto extension = ExtensionOfPattern(patterns.substr(start, end - start))) {
            const bool known = std::any_of(extensions.begin(), extensions.end(),
                                           [&](const std::string& e) { return EqualsIgnoreCase(e, *extension); });
            if (!known) extensions.push_back(std::move(*extension));
        }
        start = end + 1;
    }
}

}  // namespace verdin
