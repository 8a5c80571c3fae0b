#pragma once
// The sound file input module: WAV, AIFF, AU, FLAC, Ogg Vorbis and Opus through libsndfile.
#include <verdin/input.h>

namespace verdin::sndfile {

// The module object; every call hands out the same one. It holds nothing to free, so
// Release has nothing to do.
InputModule* AcquireSndfileModule();

}  // namespace verdin::sndfile
