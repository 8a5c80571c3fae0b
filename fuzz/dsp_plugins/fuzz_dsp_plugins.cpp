// Arbitrary bytes as the "dspPlugins" setting: the pieces read back must write out and
// read back again to the same list (a piece holding a ";" would not).
#include "plugins/dsp/DspPluginsText.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto entries = verdin::ParseDspPlugins(std::string_view(reinterpret_cast<const char*>(data), size));
    if (verdin::ParseDspPlugins(verdin::FormatDspPlugins(entries)) != entries) std::abort();
    return 0;
}
