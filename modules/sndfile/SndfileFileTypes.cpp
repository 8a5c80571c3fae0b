#include "SndfileFileTypes.h"

#include "kit/ModuleFileFacts.h"

namespace verdin::sndfile {

const char kSoundFileTypes[] =
    "WAV audio\0*.wav\0"
    "AIFF audio\0*.aif;*.aiff;*.aifc\0"
    "Sun/NeXT audio\0*.au;*.snd\0"
    "FLAC audio\0*.flac\0"
    "Ogg Vorbis audio\0*.ogg;*.oga\0"
    "Opus audio\0*.opus\0";

int32_t IsSoundFile(const char* path) {
    return path && HasOneOfExtensions(path, {".wav", ".aif", ".aiff", ".aifc", ".au", ".snd", ".flac", ".ogg",
                                             ".oga", ".opus"});
}

const char* SndfileDescription() {
    return "Verdin sound file decoder " VERDIN_MODULE_VERSION " (libsndfile-" VERDIN_SNDFILE_VERSION ")";
}

}  // namespace verdin::sndfile
