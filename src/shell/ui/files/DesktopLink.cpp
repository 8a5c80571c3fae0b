#include "DesktopLink.h"

namespace verdin {

namespace {

std::string Unescaped(std::string_view value) {
    std::string text;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const char c = value[++i];
        text += c == 's' ? ' ' : c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    return text;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

}  // namespace

std::optional<std::string> DesktopLinkUrl(std::string_view fileText) {
    std::string type, url;
    bool inEntry = false;
    while (!fileText.empty()) {
        const size_t end = fileText.find('\n');
        const std::string_view line = Trimmed(fileText.substr(0, end));
        fileText.remove_prefix(end == std::string_view::npos ? fileText.size() : end + 1);
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            inEntry = line == "[Desktop Entry]";
            continue;
        }
        const size_t equals = line.find('=');
        if (!inEntry || equals == std::string_view::npos) continue;
        const std::string_view key = Trimmed(line.substr(0, equals));
        const std::string_view value = Trimmed(line.substr(equals + 1));
        if (key == "Type") type = Unescaped(value);
        else if (key == "URL") url = Unescaped(value);
    }
    if (type != "Link" || url.empty()) return std::nullopt;
    return url;
}

}  // namespace verdin
