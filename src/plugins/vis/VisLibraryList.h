#pragma once
// The visualization plug-in libraries found on a search path, and the modules activated
// from them: the shared library list and instance (plugins/library) with the
// visualization records and entry point, "winampVisGetHeader".
#include "plugins/library/ModuleInstance.h"
#include "plugins/library/ModuleLibrary.h"
#include "plugins/library/ModuleLibraryList.h"

#include <verdin/vis.h>

namespace verdin {

struct VisKind {
    using Header = winampVisHeader;
    using Module = winampVisModule;
    using GetHeader = winampVisGetHeaderType;
    static constexpr const char* kEntryPoint = VERDIN_VIS_ENTRY_POINT;
};

using VisLibrary = ModuleLibrary;
using VisModuleInstance = ModuleInstance<VisKind>;
using VisLibraryList = ModuleLibraryList<VisKind>;

}  // namespace verdin
