// Arbitrary text as a dropped desktop link file. Nothing may crash or hang; and a URL read
// from any file, written back into a link file with its escapes, reads back the same.
#include "shell/ui/files/DesktopLink.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

std::string Escaped(const std::string& value) {
    std::string text;
    for (size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool edge = i == 0 || i + 1 == value.size();
        if (c == '\\') text += "\\\\";
        else if (c == '\n') text += "\\n";
        else if (c == '\r') text += "\\r";
        else if (c == '\t') text += "\\t";
        else if (c == ' ' && edge) text += "\\s";
        else text += c;
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<std::string> url = verdin::DesktopLinkUrl(text);
    if (!url) return 0;
    if (url->empty()) std::abort();
    const std::string rewritten = "[Desktop Entry]\nType=Link\nURL=" + Escaped(*url) + "\n";
    const std::optional<std::string> again = verdin::DesktopLinkUrl(rewritten);
    if (!again || *again != *url) std::abort();
    return 0;
}
