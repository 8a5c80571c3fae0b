#pragma once
// The ALSA library, opened at run time (dlopen) the first time the sound-card output or
// its device list is used. Linking it would load and relocate it in every run of the
// player, including those that play through the sound server or only answer the desktop;
// a machine without it still runs, and only the sound-card output then fails with its
// usual message.
#include <alsa/asoundlib.h>

namespace verdin {

// The functions the player uses, each once.
#define VERDIN_ALSA_FUNCTIONS(X) \
    X(snd_device_name_free_hint) \
    X(snd_device_name_get_hint) \
    X(snd_device_name_hint) \
    X(snd_lib_error_set_handler) \
    X(snd_pcm_avail_update) \
    X(snd_pcm_close) \
    X(snd_pcm_delay) \
    X(snd_pcm_drop) \
    X(snd_pcm_get_params) \
    X(snd_pcm_hw_params_can_pause) \
    X(snd_pcm_hw_params_current) \
    X(snd_pcm_hw_params_free) \
    X(snd_pcm_hw_params_malloc) \
    X(snd_pcm_open) \
    X(snd_pcm_pause) \
    X(snd_pcm_poll_descriptors) \
    X(snd_pcm_poll_descriptors_count) \
    X(snd_pcm_poll_descriptors_revents) \
    X(snd_pcm_prepare) \
    X(snd_pcm_recover) \
    X(snd_pcm_set_params) \
    X(snd_pcm_state) \
    X(snd_pcm_sw_params) \
    X(snd_pcm_sw_params_current) \
    X(snd_pcm_sw_params_free) \
    X(snd_pcm_sw_params_malloc) \
    X(snd_pcm_sw_params_set_start_threshold) \
    X(snd_pcm_type) \
    X(snd_pcm_writei) \
    X(snd_strerror)

struct AlsaApi {
#define VERDIN_ALSA_FIELD(name) decltype(&::name) name = nullptr;
    VERDIN_ALSA_FUNCTIONS(VERDIN_ALSA_FIELD)
#undef VERDIN_ALSA_FIELD
};

// The loaded library's functions, or null when libasound cannot be opened (or lacks one
// of them). Loaded once; safe to call from any thread.
const AlsaApi* Alsa();

// What a device reports when Alsa() is null.
inline constexpr const char* kAlsaLibraryMissing = "the ALSA library (libasound.so.2) cannot be loaded";

}  // namespace verdin
