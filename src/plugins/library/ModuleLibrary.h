#pragma once
// What enumeration learned about one plug-in library of a module kind (DSP,
// visualization). Nothing of it stays loaded: the texts are copies.
#include <string>
#include <vector>

namespace verdin {

struct ModuleLibrary {
    std::string path;         // full path as found on the search path ("dir/name.so")
    std::string description;  // the header's description
    // The modules' descriptions in module order: index i is getModule(i).
    std::vector<std::string> moduleDescriptions;
};

}  // namespace verdin
