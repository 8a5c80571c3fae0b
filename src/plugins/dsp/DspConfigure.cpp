#include "DspConfigure.h"

namespace verdin {

namespace {

bool ConfigureInstance(std::unique_ptr<DspModuleInstance> instance) {
    if (!instance) return false;
    instance->Configure();
    return true;  // the instance, never initialised, is released without Quit
}

}  // namespace

bool ConfigureDspModule(DspLibraryList& libraries, size_t libraryIndex, int moduleIndex) {
    return ConfigureInstance(libraries.Activate(libraryIndex, moduleIndex));
}

bool ConfigureDspModuleByPath(DspLibraryList& libraries, std::string_view path, int moduleIndex) {
    return ConfigureInstance(libraries.ActivateByPath(path, moduleIndex));
}

}  // namespace verdin
