#pragma once
// The active DSP modules: one entry per piece of "dspPlugins", in processing order.
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/dsp/DspPluginsText.h"

#include <memory>
#include <span>
#include <vector>

namespace verdin {

struct ActiveDspEntry {
    DspModuleRef ref;  // the library path and module index as the setting names them
    // The module in use, or null when its library or module could not be found: the
    // entry then stays in the list (and in the setting) and the player skips it.
    std::unique_ptr<DspModuleInstance> instance;
};

// Makes an entry for every ref, in order. A ref whose library is in the list takes over
// the initialised instance of an equal entry of previous (the first one still holding
// one), so that a module kept active keeps its state; otherwise it is activated by path
// and, when that gives an instance, initialised (Init is called, its answer not
// checked). Instances of previous that were not taken over stay there for the caller to
// release.
std::vector<ActiveDspEntry> ActivateEntries(DspLibraryList& libraries, std::span<const DspModuleRef> refs,
                                            std::vector<ActiveDspEntry>& previous);

// The refs of the entries, in order: what "dspPlugins" is rebuilt from.
std::vector<DspModuleRef> RefsOf(std::span<const ActiveDspEntry> entries);

}  // namespace verdin
