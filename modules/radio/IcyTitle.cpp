#include "IcyTitle.h"

#include <algorithm>
#include <cctype>

namespace verdin::radio {

namespace {

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

}  // namespace

std::string StreamTitleOf(std::string_view metadata) {
    constexpr std::string_view kKey = "StreamTitle='";
    const size_t start = metadata.find(kKey);
    if (start == std::string_view::npos) return {};
    std::string_view value = metadata.substr(start + kKey.size());
    // The block is padded with NULs to a multiple of 16 bytes.
    value = value.substr(0, value.find('\0'));
    const size_t end = value.find("';");
    if (end != std::string_view::npos) value = value.substr(0, end);
    else if (!value.empty() && value.back() == '\'') value.remove_suffix(1);
    return std::string(Trimmed(value));
}

std::string HeaderValueOf(std::string_view headers, std::string_view name) {
    while (!headers.empty()) {
        const size_t end = headers.find('\n');
        const std::string_view line = headers.substr(0, end);
        headers = end == std::string_view::npos ? std::string_view() : headers.substr(end + 1);
        const size_t colon = line.find(':');
        if (colon != std::string_view::npos && SameName(Trimmed(line.substr(0, colon)), name))
            return std::string(Trimmed(line.substr(colon + 1)));
    }
    return {};
}

}  // namespace verdin::radio
