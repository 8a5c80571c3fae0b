#pragma once
// The MPEG audio input module: MP3, MP2 and MP1 files through libmpg123.
#include <verdin/input.h>

namespace verdin::mpeg {

// The module object. Every call hands out the same object and counts one more user;
// each Release counts one less, and the last one frees the module's parked resources.
// (The player loads a library once per directory it is found in and releases each.)
InputModule* AcquireMpegModule();

}  // namespace verdin::mpeg
