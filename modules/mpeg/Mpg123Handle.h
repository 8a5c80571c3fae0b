#pragma once
// mpg123 handles set up the way this module decodes.
//
// The settings are libmpg123's defaults, which are also those of the mpg123 program, so
// that a track decodes to exactly the PCM that "mpg123 -w" writes: gapless trimming of the
// encoder's delay and padding where the file carries them, four frames decoded ahead after
// a seek (enough to refill the bit reservoir, so a seek lands on identical samples). Only
// the output is pinned to 16-bit signed samples at the stream's own rate and channel count,
// and messages to standard error are turned off.
#include <memory>

#include <mpg123.h>

namespace verdin::mpeg {

struct Mpg123HandleDeleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using Mpg123Handle = std::unique_ptr<mpg123_handle, Mpg123HandleDeleter>;

// A new handle with the settings above, or null when libmpg123 cannot make one.
Mpg123Handle NewMpg123Handle();

}  // namespace verdin::mpeg
