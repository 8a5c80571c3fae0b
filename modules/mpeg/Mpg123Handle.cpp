#include "Mpg123Handle.h"

#include "MpegFileSource.h"

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
    // Files are read through MpegFileSource. The reader stays with the handle from file to
    // file (closing a file keeps it), so it is set once here: setting it closes the
    // handle, and every close clears the decoder's buffers, a good part of the cost of
    // reading a file's information.
    if (mpg123_replace_reader_handle(handle.get(), ReadMpegFileSource, SeekMpegFileSource, nullptr) != MPG123_OK)
        return Mpg123Handle();
    mpg123_format_none(handle.get());
    const long* rates = nullptr;
    size_t rateCount = 0;
    mpg123_rates(&rates, &rateCount);
    for (size_t i = 0; i < rateCount; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_MONO | MPG123_STEREO, MPG123_ENC_SIGNED_16);
    return handle;
}

}  // namespace verdin::mpeg
