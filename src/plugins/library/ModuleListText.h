#pragma once
// The text of an active module list ("dspPlugins", "visualizationPlugins"): the active
// modules in order, each written "%s,%d;" with the library's full path and the module's
// index within the library.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// One piece of the text: which module of which library.
struct ModuleRef {
    std::string libraryPath;
    int32_t moduleIndex = 0;
    bool operator==(const ModuleRef&) const = default;
};

// Splits the text at ";" (empty pieces skipped) and each piece at its LAST ",": the text
// before it is the library path, the decimal number after it the module index (read as
// the C library's atoi does; 0 when there is no comma or no number). A path may thus
// contain commas but never ";".
std::vector<ModuleRef> ParseModuleList(std::string_view text);

// One "%s,%d;" per entry, in order.
std::string FormatModuleList(std::span<const ModuleRef> entries);

}  // namespace verdin
