#pragma once
// The "dspPlugins" setting: the active DSP modules in processing order, each written
// "%s,%d;" with the library's full path and the module's index within the library.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// One piece of the setting: which module of which library.
struct DspModuleRef {
    std::string libraryPath;
    int32_t moduleIndex = 0;
    bool operator==(const DspModuleRef&) const = default;
};

// Splits the text at ";" (empty pieces skipped) and each piece at its LAST ",": the text
// before it is the library path, the decimal number after it the module index (read as
// the C library's atoi does; 0 when there is no comma or no number). A path may thus
// contain commas but never ";".
std::vector<DspModuleRef> ParseDspPlugins(std::string_view text);

// One "%s,%d;" per entry, in order.
std::string FormatDspPlugins(std::span<const DspModuleRef> entries);

}  // namespace verdin
