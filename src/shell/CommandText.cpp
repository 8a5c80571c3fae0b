#include "CommandText.h"

#include "base/Text.h"

namespace verdin {

std::vector<std::string> SplitCommandText(std::string_view text) {
    std::vector<std::string> tokens;
    size_t at = 0;
    while (at < text.size()) {
        size_t end;
        size_t next;
        if (text[at] == '"') {
            ++at;
            end = text.find('"', at);
            if (end == std::string_view::npos) end = next = text.size();
            else next = end + 2;  // the closing quote and the byte after it
        } else {
            end = text.find(' ', at);
            if (end == std::string_view::npos) end = text.size();
            next = end + 1;
        }
        if (end > at) tokens.emplace_back(text.substr(at, end - at));
        at = next;
    }
    return tokens;
}

bool IsPlayToken(std::string_view token) { return EqualsIgnoreCase(token, "/PLAY"); }

}  // namespace verdin
