#include "IniLineScanner.h"

#include "base/Text.h"

namespace verdin {

bool IniLineScanner::Next(IniLine* out) {
    while (at_ < text_.size()) {
        size_t end = text_.find('\n', at_);
        if (end == std::string_view::npos) end = text_.size();
        std::string_view line = text_.substr(at_, end - at_);
        at_ = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        line = TrimBlanks(line);
        if (line.empty()) continue;
        if (line.front() == '[') {
            const size_t close = line.find(']');
            const std::string_view name =
                line.substr(1, close == std::string_view::npos ? std::string_view::npos : close - 1);
            *out = IniLine{IniLine::Kind::kSection, TrimBlanks(name), {}};
            return true;
        }
        const size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        *out = IniLine{IniLine::Kind::kKey, TrimBlanks(line.substr(0, eq)),
                       Unquote(TrimBlanks(line.substr(eq + 1)))};
        return true;
    }
    return false;
}

bool IniNamesMatch(std::string_view a, std::string_view b) { return EqualsIgnoreCase(a, b); }

std::string IniNameKey(std::string_view name) { return ToLower(name); }

}  // namespace verdin
