#include "TestModules.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

namespace verdin::test {

std::string PlaceTestModule(const std::string& module, const std::string& directory, const std::string& name) {
    const std::filesystem::path source = std::filesystem::path(VERDIN_DSP_TEST_MODULES) / (module + ".so");
    if (!std::filesystem::exists(source)) throw std::runtime_error("test plug-in not built: " + source.string());
    const std::filesystem::path target = std::filesystem::path(directory) / name;
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing);
    return target.string();
}

void* LoadedHandle(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) {
        dlerror();
        return nullptr;
    }
    dlclose(handle);  // undo the reference RTLD_NOLOAD took
    return handle;
}

}  // namespace verdin::test
