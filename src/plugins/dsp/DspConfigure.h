#pragma once
// The DSP page's "Configure" buttons: the shared temporary instance with Config only.
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/library/ModuleConfigure.h"

namespace verdin {

inline bool ConfigureDspModule(DspLibraryList& libraries, size_t libraryIndex, int moduleIndex) {
    return ConfigureModule(libraries, libraryIndex, moduleIndex);
}
inline bool ConfigureDspModuleByPath(DspLibraryList& libraries, std::string_view path, int moduleIndex) {
    return ConfigureModuleByPath(libraries, path, moduleIndex);
}

}  // namespace verdin
