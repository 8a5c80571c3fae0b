#pragma once
// The "dspPlugins" setting: the active DSP modules in processing order, in the shared
// "%s,%d;" form of an active module list.
#include "plugins/library/ModuleListText.h"

namespace verdin {

using DspModuleRef = ModuleRef;

inline std::vector<DspModuleRef> ParseDspPlugins(std::string_view text) { return ParseModuleList(text); }
inline std::string FormatDspPlugins(std::span<const DspModuleRef> entries) { return FormatModuleList(entries); }

}  // namespace verdin
