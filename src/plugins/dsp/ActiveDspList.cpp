#include "ActiveDspList.h"

namespace verdin {

namespace {

// The instance of the first entry of previous that names the same module and still has
// one, moved out; null when there is none.
std::unique_ptr<DspModuleInstance> TakeOver(std::vector<ActiveDspEntry>& previous, const DspModuleRef& ref) {
    for (ActiveDspEntry& entry : previous)
        if (entry.instance && entry.ref == ref) return std::move(entry.instance);
    return nullptr;
}

}  // namespace

std::vector<ActiveDspEntry> ActivateEntries(DspLibraryList& libraries, std::span<const DspModuleRef> refs,
                                            std::vector<ActiveDspEntry>& previous) {
    std::vector<ActiveDspEntry> entries;
    entries.reserve(refs.size());
    for (const DspModuleRef& ref : refs) {
        ActiveDspEntry entry{ref, nullptr};
        if (libraries.LibraryByPath(ref.libraryPath)) {
            entry.instance = TakeOver(previous, ref);
            if (!entry.instance) {
                entry.instance = libraries.ActivateByPath(ref.libraryPath, ref.moduleIndex);
                if (entry.instance) entry.instance->Initialise();
            }
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<DspModuleRef> RefsOf(std::span<const ActiveDspEntry> entries) {
    std::vector<DspModuleRef> refs;
    refs.reserve(entries.size());
    for (const ActiveDspEntry& entry : entries) refs.push_back(entry.ref);
    return refs;
}

}  // namespace verdin
