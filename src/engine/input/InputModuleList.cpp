#include "InputModuleList.h"

#include "base/DirectoryListing.h"
#include "base/SearchPath.h"

#include <dlfcn.h>

namespace verdin {

namespace {

// The module's operation table, or null when the module (or its table) is missing.
const InputModuleOps* OpsOf(InputModule* module) {
    return module ? module->ops : nullptr;
}

// Loads one library and appends its module. A library that does not load is passed over;
// one that loads but lacks the entry point is closed again.
void LoadOne(const std::string& file, void* mainWindow, std::vector<LoadedInputModule>& into) {
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        dlerror();  // failures are silent; clear the pending message
        return;
    }
    auto entry = reinterpret_cast<Verdin_GetInputModuleFunc>(dlsym(library, VERDIN_INPUT_ENTRY_POINT));
    if (!entry) {
        dlerror();
        dlclose(library);
        return;
    }
    auto reentrant = reinterpret_cast<Verdin_InputModuleIsReentrantFunc>(dlsym(library, VERDIN_INPUT_REENTRANT));
    auto streamOps = reinterpret_cast<Verdin_GetInputStreamOpsFunc>(dlsym(library, VERDIN_INPUT_STREAM_EXTENSION));
    dlerror();
    into.push_back({entry(library, mainWindow), library, reentrant && reentrant() != 0,
                    streamOps ? streamOps() : nullptr});
}

bool Takes(const LoadedInputModule& entry, const std::string& path, uint32_t dataOffset) {
    const InputModuleOps* ops = OpsOf(entry.module);
    return ops && ops->IsOurFile && ops->IsOurFile(entry.module, path.c_str(), dataOffset);
}

}  // namespace

InputModuleList::~InputModuleList() {
    UnloadInputModules();
}

size_t InputModuleList::LoadInputModules(std::string_view searchPath, void* mainWindow) {
    UnloadInputModules();
    for (const std::string& directory : SplitSearchPath(searchPath)) {
        // The listing sorts names without regard to case: "the module found first" then
        // means the same thing on every file system, whatever order readdir() keeps.
        // Directories whose names end in ".so" are not listed.
        for (const std::string& name : ListFilesWithExtension(directory, ".so"))
            LoadOne(JoinPath(directory, name), mainWindow, modules_);
    }
    return modules_.size();
}

InputModule* InputModuleList::FindModuleFor(const std::string& path, uint32_t dataOffset) const {
    for (const LoadedInputModule& entry : modules_)
        if (Takes(entry, path, dataOffset)) return entry.module;
    return nullptr;
}

InputModule* InputModuleList::FindModuleToPlay(const std::string& path, uint32_t dataOffset) const {
    // A file module that takes names ending in ".mp3" would take "http://host/live.mp3"
    // and then fail to read it: an address goes to a module that streams first.
    if (path.find("://") != std::string::npos)
        for (const LoadedInputModule& entry : modules_)
            if (entry.stream && Takes(entry, path, dataOffset)) return entry.module;
    return FindModuleFor(path, dataOffset);
}

bool InputModuleList::IsReentrant(const InputModule* module) const {
    for (const LoadedInputModule& entry : modules_)
        if (entry.module == module) return module != nullptr && entry.reentrant;
    return false;
}

const InputStreamOps* InputModuleList::StreamOpsOf(const InputModule* module) const {
    for (const LoadedInputModule& entry : modules_)
        if (entry.module == module) return module != nullptr ? entry.stream : nullptr;
    return nullptr;
}

InputModule* InputModuleList::ModuleAt(size_t index) const {
    return index < modules_.size() ? modules_[index].module : nullptr;
}

void InputModuleList::UnloadInputModules() {
    for (const LoadedInputModule& entry : modules_) {
        const InputModuleOps* ops = OpsOf(entry.module);
        if (ops && ops->Release) ops->Release(entry.module);
        dlclose(entry.library);
    }
    modules_.clear();
}

std::vector<std::vector<FileTypeFilter>> InputModuleList::FileTypesByModule() const {
    std::vector<std::vector<FileTypeFilter>> out;
    out.reserve(modules_.size());
    for (const LoadedInputModule& entry : modules_) {
        const InputModuleOps* ops = OpsOf(entry.module);
        out.push_back(ops && ops->GetFileTypes ? ParseFileTypeList(ops->GetFileTypes(entry.module))
                                               : std::vector<FileTypeFilter>{});
    }
    return out;
}

std::string InputModuleList::SupportedExtensions() const {
    std::vector<std::string> extensions;
    for (const auto& filters : FileTypesByModule())
        for (const FileTypeFilter& filter : filters) AppendPatternExtensions(filter.patterns, extensions);
    std::string out;
    for (const std::string& extension : extensions) {
        if (!out.empty()) out += ';';
        out += extension;
    }
    return out;
}

std::vector<FileTypeFilter> InputModuleList::FileTypeFilters() const {
    std::vector<FileTypeFilter> out;
    for (auto& filters : FileTypesByModule())
        for (FileTypeFilter& filter : filters) out.push_back(std::move(filter));
    return out;
}

}  // namespace verdin
