#include "DspModuleInstance.h"

#include "plugins/library/PluginCallScope.h"

#include <utility>

namespace verdin {

DspModuleInstance::DspModuleInstance(PluginLibrary library, winampDSPHeader* header, winampDSPModule* module,
                                     void* parentWindow)
    : library_(std::move(library)), header_(header), module_(module) {
    // The record is the library's own static data, shared by every load of it: when the
    // module is active already, a stream may be reading it right now. The values would be
    // the same, so they are only written when they differ, which keeps that a pure read.
    if (module_->hDllInstance != library_.handle()) module_->hDllInstance = library_.handle();
    if (module_->hwndParent != parentWindow) module_->hwndParent = parentWindow;
}

DspModuleInstance::~DspModuleInstance() {
    if (initialised_ && module_->Quit) {
        PluginCallScope call;
        module_->Quit(module_);
    }
    // library_ is destroyed after this body: the module's code stays mapped through Quit.
}

void DspModuleInstance::Initialise() {
    initialised_ = true;
    if (module_->Init) {
        PluginCallScope call;
        module_->Init(module_);
    }
}

void DspModuleInstance::Configure() {
    if (module_->Config) {
        PluginCallScope call;
        module_->Config(module_);
    }
}

}  // namespace verdin
