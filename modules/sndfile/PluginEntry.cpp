// The symbols WAV_Verdin.so exports: the entry point, and the declaration that reading a
// file's information may run on several threads at once. The plug-in itself is small: it
// knows its file types, and opens the decoding library (libverdin-sndfile-input.so, with
// libsndfile and the codec libraries it links) the first time a file is read or played.
#include "SndfileFileTypes.h"

#include "kit/LazyInputModule.h"

extern "C" VERDIN_PLUGIN_EXPORT InputModule* Verdin_GetInputModule(void* /*instance*/, void* /*mainWindow*/) {
    using namespace verdin::sndfile;
    static const verdin::LazyInputModuleTable table{
        "WAV_Verdin.so", SndfileDescription(), kSoundFileTypes, "../libverdin-sndfile-input.so", IsSoundFile, nullptr};
    return verdin::LazyInputModule(table);
}

extern "C" VERDIN_PLUGIN_EXPORT int32_t Verdin_InputModuleIsReentrant(void) { return 1; }
