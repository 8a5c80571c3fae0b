#include "Mpg123Handle.h"

namespace verdin::mpeg {

namespace {

// libmpg123 before 1.27 needs one mpg123_init() per process; later versions accept it.
void InitializeLibraryOnce() {
    static const int result = mpg123_init();
    (void)result;
}

}  // namespace

Mpg123Handle NewMpg123Handle() {
    InitializeLibraryOnce();
    Mpg123Handle handle(mpg123_new(nullptr, nullptr));
    if (!handle) return handle;
    // The tag reader has measured any ID3v2 tag already; skipping instead of parsing one
    // that is still in front of the audio costs nothing and changes no sample.
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_SKIP_ID3V2, 0.0);
    mpg123_format_none(handle.get());
    const long* rates = nullptr;
    size_t rateCount = 0;
    mpg123_rates(&rates, &rateCount);
    for (size_t i = 0; i < rateCount; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
    return handle;
}

}  // namespace verdin::mpeg
