// Arbitrary bytes through the sound file module's file path (see InputModuleRun.h).
#include "../InputModuleRun.h"
#include "SndfileModule.h"

// libsndfile 1.2.0 leaves libvorbis's header state behind when an Ogg Vorbis stream fails
// to open (about 11 KiB per damaged file; known upstream: libsndfile issues 922 and 1013).
// Allocations made inside libvorbis are not ours to fix; any leak that also holds memory of
// libsndfile's own or of this module is still reported.
extern "C" const char* __lsan_default_suppressions() { return "leak:libvorbis.so\n"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static InputModule* const module = verdin::sndfile::AcquireSndfileModule();
    verdin::fuzz::RunInputModule(module, data, size, true);
    return 0;
}
