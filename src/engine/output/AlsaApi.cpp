#include "AlsaApi.h"

#include <dlfcn.h>

namespace verdin {

namespace {

const AlsaApi* Load() {
    void* library = dlopen("libasound.so.2", RTLD_NOW | RTLD_LOCAL);
    if (!library) return nullptr;
    static AlsaApi api;
    bool complete = true;
#define VERDIN_ALSA_FUNCTION(name)                                             \
    api.name = reinterpret_cast<decltype(api.name)>(dlsym(library, #name)); \
    complete = complete && api.name != nullptr;
    VERDIN_ALSA_FUNCTIONS(VERDIN_ALSA_FUNCTION)
#undef VERDIN_ALSA_FUNCTION
    // The library stays loaded for the rest of the run: devices made from it may live on.
    return complete ? &api : nullptr;
}

}  // namespace

const AlsaApi* Alsa() {
    static const AlsaApi* const api = Load();
    return api;
}

}  // namespace verdin
