#pragma once
// The input modules of a run: every input plug-in found on the search path, in load order.
//
// The list is built once at start-up on the user-interface thread and torn down at exit.
// In between it does not change, so the stream threads and information-retrieval threads
// may call FindModuleFor and ModuleAt at the same time without a lock: everything they read
// was written before those threads were started.
#include "engine/input/InputFileTypes.h"

#include <verdin/input.h>
#include <verdin/input_stream.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// One loaded plug-in: the module its entry point returned and the library it lives in.
struct LoadedInputModule {
    InputModule* module = nullptr;  // as returned, never tested at load: may be null
    void* library = nullptr;        // the dlopen handle
    bool reentrant = false;         // the library declares GetFileInfo re-entrant
    const InputStreamOps* stream = nullptr;  // the library's stream extension, if it has one
};

class InputModuleList {
public:
    InputModuleList() = default;
    ~InputModuleList();  // unloads
    InputModuleList(const InputModuleList&) = delete;
    InputModuleList& operator=(const InputModuleList&) = delete;

    // Loads every input plug-in ("*.so") of the directories of searchPath (";"-separated,
    // empty pieces skipped), directory by directory, and calls each library's entry point
    // once with its own handle and mainWindow. Libraries that do not load or lack the
    // entry point are skipped silently. A list loaded earlier is unloaded first.
    // Returns the number of modules now in the list.
    size_t LoadInputModules(std::string_view searchPath, void* mainWindow);

    // The first module in list order whose IsOurFile accepts the file, or null. Later
    // modules are not asked. A null module returned by a broken entry point is passed over.
    InputModule* FindModuleFor(const std::string& path, uint32_t dataOffset) const;
    // The module that plays the file: for a URL the modules with the stream extension are
    // asked first, in list order; then as FindModuleFor. (Information about a track is
    // read through FindModuleFor: what a module says of an address it would not play
    // stays as it was.)
    InputModule* FindModuleToPlay(const std::string& path, uint32_t dataOffset) const;
    // Whether the module's GetFileInfo may be called off the user-interface thread (its
    // library says so); false for a module not in the list.
    bool IsReentrant(const InputModule* module) const;
    // The stream extension of the module's library (titles, errors, interruption of its
    // decoders), or null when it exports none.
    const InputStreamOps* StreamOpsOf(const InputModule* module) const;

    size_t ModuleCount() const { return modules_.size(); }
    // The module at index in list order; null when index is out of range (or when the
    // plug-in's entry point returned null).
    InputModule* ModuleAt(size_t index) const;

    // Releases every module and closes its library, in list order, then empties the list.
    void UnloadInputModules();

    // The extensions of all modules' file types, in module order and the order each
    // module lists them, without repeats, joined with ";" (".mp3;.mp2;.wav").
    std::string SupportedExtensions() const;
    // One filter entry per description/patterns pair, in module order.
    std::vector<FileTypeFilter> FileTypeFilters() const;

private:
    // Each module's GetFileTypes list, parsed (nothing for a module without one).
    std::vector<std::vector<FileTypeFilter>> FileTypesByModule() const;

    std::vector<LoadedInputModule> modules_;
};

}  // namespace verdin
