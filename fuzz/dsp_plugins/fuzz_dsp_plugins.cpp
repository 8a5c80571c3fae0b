// Arbitrary bytes as the "dspPlugins" setting: the pieces read back must write out and
// read back again to the same list, and no piece may be empty or hold a ";".
#include "plugins/dsp/DspPluginsText.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto entries = verdin::ParseDspPlugins(text);
    for (const verdin::DspModuleRef& entry : entries)
        if (entry.libraryPath.find(';') != std::string::npos) std::abort();
    if (entries.size() > size) std::abort();
    if (verdin::ParseDspPlugins(verdin::FormatDspPlugins(entries)) != entries) std::abort();
    return 0;
}
