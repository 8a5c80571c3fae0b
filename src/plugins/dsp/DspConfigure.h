#pragma once
// The options page's "Configure" buttons: a temporary instance of the chosen module, its
// Config, and the instance released again. There is no Init and no Quit; the module may
// be active in the player at the same time through its own load of the library.
#include "plugins/dsp/DspLibraryList.h"

#include <cstddef>
#include <string_view>

namespace verdin {

// Module moduleIndex of the library at libraryIndex ("Available plug-ins"). False when
// there is no such module.
bool ConfigureDspModule(DspLibraryList& libraries, size_t libraryIndex, int moduleIndex);
// Module moduleIndex of the library with that path ("Active modules").
bool ConfigureDspModuleByPath(DspLibraryList& libraries, std::string_view path, int moduleIndex);

}  // namespace verdin
