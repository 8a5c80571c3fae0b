#include "WindowLibrary.h"

#include "base/Locations.h"

#include <dlfcn.h>
#include <string>

namespace verdin {

int RunWithWindows(int argc, char** argv, const RunOptions& options) {
    const std::string path = ProgramDirectory() + "/../lib/verdin/libverdin-windows.so";
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!library) return kWindowLibraryMissing;
    auto entry = reinterpret_cast<WindowEntryPoint>(dlsym(library, kWindowEntryPoint));
    if (!entry) return kWindowLibraryMissing;
    // The library stays loaded until the process ends.
    return entry(argc, argv, &options);
}

}  // namespace verdin
