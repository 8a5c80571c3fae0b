#include "PluginLibrary.h"

#include <dlfcn.h>

#include <utility>
#include <vector>

namespace verdin {

namespace {
// The extra references of the running scan; null when none runs.
std::vector<void*>* keptOpen = nullptr;
}  // namespace

PluginLibrary PluginLibrary::Open(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) dlerror();  // failures are silent; clear the pending message
    if (handle && keptOpen) keptOpen->push_back(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    return PluginLibrary(handle);
}

PluginLibrary::KeepOpenedWhileScanning::KeepOpenedWhileScanning() {
    if (!keptOpen) keptOpen = new std::vector<void*>;
}

PluginLibrary::KeepOpenedWhileScanning::~KeepOpenedWhileScanning() {
    if (!keptOpen) return;
    for (void* handle : *keptOpen)
        if (handle) dlclose(handle);
    delete std::exchange(keptOpen, nullptr);
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
