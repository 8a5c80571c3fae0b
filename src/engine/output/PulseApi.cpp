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
    VERDIN_PULSE_FUNCTION(pa_stream_get_state)
    VERDIN_PULSE_FUNCTION(pa_operation_unref)
    VERDIN_PULSE_FUNCTION(pa_context_get_state)
    VERDIN_PULSE_FUNCTION(pa_stream_get_time)
    VERDIN_PULSE_FUNCTION(pa_stream_flush)
    VERDIN_PULSE_FUNCTION(pa_operation_cancel)
    VERDIN_PULSE_FUNCTION(pa_strerror)
    VERDIN_PULSE_FUNCTION(pa_stream_write)
    VERDIN_PULSE_FUNCTION(pa_stream_update_timing_info)
    VERDIN_PULSE_FUNCTION(pa_stream_unref)
    VERDIN_PULSE_FUNCTION(pa_stream_new)
    VERDIN_PULSE_FUNCTION(pa_stream_get_index)
    VERDIN_PULSE_FUNCTION(pa_stream_disconnect)
    VERDIN_PULSE_FUNCTION(pa_stream_cork)
    VERDIN_PULSE_FUNCTION(pa_stream_connect_playback)
    VERDIN_PULSE_FUNCTION(pa_sample_spec_valid)
    VERDIN_PULSE_FUNCTION(pa_mainloop_set_poll_func)
    VERDIN_PULSE_FUNCTION(pa_mainloop_prepare)
    VERDIN_PULSE_FUNCTION(pa_mainloop_poll)
    VERDIN_PULSE_FUNCTION(pa_mainloop_new)
    VERDIN_PULSE_FUNCTION(pa_mainloop_get_api)
    VERDIN_PULSE_FUNCTION(pa_mainloop_free)
    VERDIN_PULSE_FUNCTION(pa_mainloop_dispatch)
    VERDIN_PULSE_FUNCTION(pa_cvolume_set)
    VERDIN_PULSE_FUNCTION(pa_context_unref)
    VERDIN_PULSE_FUNCTION(pa_context_set_sink_input_volume)
    VERDIN_PULSE_FUNCTION(pa_context_new)
    VERDIN_PULSE_FUNCTION(pa_context_get_sink_info_list)
    VERDIN_PULSE_FUNCTION(pa_context_get_server_info)
    VERDIN_PULSE_FUNCTION(pa_context_errno)
    VERDIN_PULSE_FUNCTION(pa_context_disconnect)
    VERDIN_PULSE_FUNCTION(pa_context_connect)
    VERDIN_PULSE_FUNCTION(pa_sw_volume_from_dB)
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
