#include "kit/LazyInputModule.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>

namespace verdin {
namespace {

const LazyInputModuleTable* table = nullptr;
std::once_flag opening;
// Written once under `opening`; read by every thread after call_once has returned.
InputModule* library = nullptr;
const InputStreamOps* libraryStreamOps = nullptr;

std::string FolderOfThisPlugin() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&LazyInputModule), &info) == 0 || !info.dli_fname) return ".";
    const std::string path = info.dli_fname;
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

void Open() {
    const std::string path = FolderOfThisPlugin() + "/" + table->library;
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto entry = handle ? reinterpret_cast<Verdin_GetInputModuleFunc>(dlsym(handle, VERDIN_INPUT_ENTRY_POINT))
                              : nullptr;
    InputModule* module = entry ? entry(handle, nullptr) : nullptr;
    if (!module || !module->ops) {
        const char* why = dlerror();
        std::fprintf(stderr, "%s: cannot load %s: %s\n", table->name, path.c_str(), why ? why : "no input module in it");
        return;  // the library stays open: nothing of it is freed while the process runs
    }
    if (const auto extension =
            reinterpret_cast<Verdin_GetInputStreamOpsFunc>(dlsym(handle, VERDIN_INPUT_STREAM_EXTENSION)))
        libraryStreamOps = extension();
    library = module;
}

InputModule* Library() {
    std::call_once(opening, Open);
    return library;
}

const InputModuleOps kOps = {
    [](InputModule*) { return table->description; },
    [](InputModule*, const char* path, uint32_t dataOffset) -> InputDecoder* {
        InputModule* m = Library();
        return m && m->ops->OpenDecoder ? m->ops->OpenDecoder(m, path, dataOffset) : nullptr;
    },
    [](InputModule*, const char* path, uint32_t dataOffset, TrackInfo* info) -> int32_t {
        if (table->describe) return table->describe(path, info);
        InputModule* m = Library();
        return m && m->ops->GetFileInfo ? m->ops->GetFileInfo(m, path, dataOffset, info) : 0;
    },
    [](InputModule*, const char* path, uint32_t dataOffset) {
        if (InputModule* m = Library(); m && m->ops->ShowFileInfo) m->ops->ShowFileInfo(m, path, dataOffset);
    },
    [](InputModule*, const char* path, uint32_t) -> int32_t { return path && table->isOurFile(path); },
    [](InputModule*) { return table->fileTypes; },
    [](InputModule*) {
        if (InputModule* m = Library(); m && m->ops->Configure) m->ops->Configure(m);
    },
    [](InputModule*) { std::fprintf(stderr, "%s\n", table->description); },
    // The library is released with the process: a module's Release runs just before its
    // library closes, and this one never closes.
    [](InputModule*) {},
};

InputModule module{&kOps};

const InputStreamOps kStreamOps = {
    [](InputDecoder* decoder) -> const char* {
        return libraryStreamOps && libraryStreamOps->GetStreamTitle ? libraryStreamOps->GetStreamTitle(decoder)
                                                                    : nullptr;
    },
    [](InputDecoder* decoder) -> const char* {
        return libraryStreamOps && libraryStreamOps->GetLastError ? libraryStreamOps->GetLastError(decoder) : nullptr;
    },
    [](InputDecoder* decoder) {
        if (libraryStreamOps && libraryStreamOps->Interrupt) libraryStreamOps->Interrupt(decoder);
    },
};

}  // namespace

InputModule* LazyInputModule(const LazyInputModuleTable& t) {
    table = &t;
    return &module;
}

const InputStreamOps* LazyInputStreamOps() { return &kStreamOps; }

}  // namespace verdin
