#pragma once
// The options pages' "Configure" buttons: a temporary instance of the chosen module, its
// Config, and the instance released again. There is no Init and no Quit; the module may
// be active in the player at the same time through its own load of the library.
#include "plugins/library/ModuleLibraryList.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace verdin {

template <typename Kind>
bool ConfigureInstance(std::unique_ptr<ModuleInstance<Kind>> instance) {
    if (!instance) return false;
    instance->Configure();
    return true;  // the instance, never initialised, is released without Quit
}

// Module moduleIndex of the library at libraryIndex ("Available plug-ins"). False when
// there is no such module.
template <typename Kind>
bool ConfigureModule(ModuleLibraryList<Kind>& libraries, size_t libraryIndex, int moduleIndex) {
    return ConfigureInstance(libraries.Activate(libraryIndex, moduleIndex));
}

// Module moduleIndex of the library with that path ("Active modules").
template <typename Kind>
bool ConfigureModuleByPath(ModuleLibraryList<Kind>& libraries, std::string_view path, int moduleIndex) {
    return ConfigureInstance(libraries.ActivateByPath(path, moduleIndex));
}

}  // namespace verdin
