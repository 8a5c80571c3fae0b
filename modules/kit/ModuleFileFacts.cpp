#include "ModuleFileFacts.h"

#include "base/Text.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace verdin {

namespace {

std::string_view NameOf(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

bool IsUrl(std::string_view path) {
    return path.find("://") != std::string_view::npos;
}

std::string_view FileBodyOf(std::string_view path) {
    const std::string_view name = NameOf(path);
    return name.substr(0, name.size() - ExtensionOf(name).size());
}

bool HasOneOfExtensions(std::string_view path, std::initializer_list<std::string_view> extensions) {
    const std::string_view extension = ExtensionOf(NameOf(path));
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](std::string_view e) { return EqualsIgnoreCase(extension, e); });
}

void SetSuggestedTitle(TrackInfo& info, std::string_view title) {
    const size_t length = std::min(title.size(), sizeof info.suggestedTitle - 1);
    std::memcpy(info.suggestedTitle, title.data(), length);
    info.suggestedTitle[length] = '\0';
}

uint32_t TrackFileSize(uint64_t bytes) {
    return static_cast<uint32_t>(std::min<uint64_t>(bytes, std::numeric_limits<uint32_t>::max()));
}

}  // namespace verdin
