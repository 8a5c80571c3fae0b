// Arbitrary text as a dropped desktop link file. Nothing may crash or hang; and a URL read
// from any file, written back into a link file with its escapes, reads back the same.
#include "shell/ui/files/DesktopLink.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::optional<std::string> url = verdin::DesktopLinkUrl({reinterpret_cast<const char*>(data), size});
    if (!url) return 0;
    if (url->empty()) std::abort();
    std::string escaped;
    for (size_t i = 0; i < url->size(); ++i) {
        const char c = (*url)[i];
        const bool edge = i == 0 || i + 1 == url->size();
        escaped += c == '\\' ? "\\\\" : c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : c == ' ' && edge ? "\\s" : std::string(1, c);
    }
    if (verdin::DesktopLinkUrl("[Desktop Entry]\nType=Link\nURL=" + escaped + "\n") != url) std::abort();
    return 0;
}
