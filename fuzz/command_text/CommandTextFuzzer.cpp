// The command text the desktop and a second start hand over: any bytes at all (NUL,
// invalid UTF-8, unbalanced quotes, megabytes of it) split into tokens without a crash.
// Oracle: the tokens are non-empty pieces of the text, in order, never overlapping, and a
// text without quotes splits exactly at its spaces.
#include "shell/CommandText.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    size_t at = 0;
    for (const std::string& token : verdin::SplitCommandText(text)) {
        const size_t found = text.find(token, at);
        if (token.empty() || found == std::string_view::npos) std::abort();
        at = found + token.size();
    }
    if (text.find('"') == std::string_view::npos) {
        std::vector<std::string> spaces;
        for (size_t start = 0; start <= text.size();) {
            const size_t end = std::min(text.find(' ', start), text.size());
            if (end > start) spaces.emplace_back(text.substr(start, end - start));
            start = end + 1;
        }
        if (spaces != verdin::SplitCommandText(text)) std::abort();
    }
    return 0;
}
