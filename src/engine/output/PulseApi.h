#pragma once
// The PulseAudio client library, opened at run time (dlopen) the first time the sound-server
// output or its device list is used. Linking it would load it, and what it links (sound
// file and codec libraries, X11), into every run of the player, including the headless
// one that plays through ALSA; a machine without it still runs, and only the sound-server
// output then fails with its usual message.
#include <pulse/pulseaudio.h>

namespace verdin {

struct PulseApi {
#define VERDIN_PULSE_FUNCTION(name) decltype(&::name) name = nullptr;
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
};

// The loaded library's functions, or null when libpulse cannot be opened (or lacks one
// of them). Loaded once; safe to call from any thread.
const PulseApi* Pulse();

}  // namespace verdin
