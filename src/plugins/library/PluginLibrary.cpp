#include "PluginLibrary.h"

#include <dlfcn.h>

#include <utility>

namespace verdin {

PluginLibrary PluginLibrary::Open(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) dlerror();  // failures are silent; clear the pending message
    return PluginLibrary(handle);
}

PluginLibrary::~PluginLibrary() { Close(); }

PluginLibrary::PluginLibrary(PluginLibrary&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}

PluginLibrary& PluginLibrary::operator=(PluginLibrary&& other) noexcept {
    if (this != &other) {
        Close();
        handle_ = std::exchange(other.handle_, nullptr);
    }
    return *this;
}

void* PluginLibrary::Symbol(const char* name) const {
    if (!handle_) return nullptr;
    void* address = dlsym(handle_, name);
    if (!address) dlerror();
    return address;
}

void PluginLibrary::Close() {
    if (handle_) dlclose(std::exchange(handle_, nullptr));
}

}  // namespace verdin
