#pragma once
// The DSP plug-in libraries found on a search path, and the modules activated from them:
// the shared library list and instance (plugins/library) with the DSP entry point.
#include "plugins/dsp/DspKind.h"
#include "plugins/library/ModuleInstance.h"
#include "plugins/library/ModuleLibrary.h"
#include "plugins/library/ModuleLibraryList.h"

namespace verdin {

using DspLibrary = ModuleLibrary;
using DspModuleInstance = ModuleInstance<DspKind>;
using DspLibraryList = ModuleLibraryList<DspKind>;

}  // namespace verdin
