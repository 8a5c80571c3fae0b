#include "PulseApi.h"

#include <dlfcn.h>

namespace verdin {

namespace {

const PulseApi* Load() {
    void* library = dlopen("libpulse.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!library) return nullptr;
    static PulseApi api;
    bool complete = true;
#define VERDIN_PULSE_FUNCTION(name)                                            \
    api.name = reinterpret_cast<decltype(api.name)>(dlsym(library, #name)); \
    complete = complete && api.name != nullptr;
    VERDIN_PULSE_FUNCTIONS(VERDIN_PULSE_FUNCTION)
#undef VERDIN_PULSE_FUNCTION
    // The library stays loaded for the rest of the run: devices made from it may live on.
    return complete ? &api : nullptr;
}

}  // namespace

const PulseApi* Pulse() {
    static const PulseApi* const api = Load();
    return api;
}

}  // namespace verdin
