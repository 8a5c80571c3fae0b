#pragma once
// The PulseAudio client library, opened at run time (dlopen) the first time the sound-server
// output or its device list is used. Linking it would load it, and what it links (sound
// file and codec libraries, X11), into every run of the player, including the headless
// one that plays through ALSA; a machine without it still runs, and only the sound-server
// output then fails with its usual message.
#include <pulse/pulseaudio.h>

namespace verdin {

// The functions the player uses, each once.
#define VERDIN_PULSE_FUNCTIONS(X) \
    X(pa_stream_get_state) \
    X(pa_operation_unref) \
    X(pa_context_get_state) \
    X(pa_stream_get_time) \
    X(pa_stream_flush) \
    X(pa_operation_cancel) \
    X(pa_strerror) \
    X(pa_stream_write) \
    X(pa_stream_update_timing_info) \
    X(pa_stream_unref) \
    X(pa_stream_new) \
    X(pa_stream_get_index) \
    X(pa_stream_disconnect) \
    X(pa_stream_cork) \
    X(pa_stream_connect_playback) \
    X(pa_sample_spec_valid) \
    X(pa_mainloop_set_poll_func) \
    X(pa_mainloop_prepare) \
    X(pa_mainloop_poll) \
    X(pa_mainloop_new) \
    X(pa_mainloop_get_api) \
    X(pa_mainloop_free) \
    X(pa_mainloop_dispatch) \
    X(pa_cvolume_set) \
    X(pa_context_unref) \
    X(pa_context_set_sink_input_volume) \
    X(pa_context_new) \
    X(pa_context_get_sink_info_list) \
    X(pa_context_get_server_info) \
    X(pa_context_errno) \
    X(pa_context_disconnect) \
    X(pa_context_connect) \
    X(pa_sw_volume_from_dB)

struct PulseApi {
#define VERDIN_PULSE_FIELD(name) decltype(&::name) name = nullptr;
    VERDIN_PULSE_FUNCTIONS(VERDIN_PULSE_FIELD)
#undef VERDIN_PULSE_FIELD
};

// The loaded library's functions, or null when libpulse cannot be opened (or lacks one
// of them). Loaded once; safe to call from any thread.
const PulseApi* Pulse();

// What a device or connection reports when Pulse() is null.
inline constexpr const char* kPulseLibraryMissing =
    "the PulseAudio client library (libpulse.so.0) cannot be loaded";

}  // namespace verdin
