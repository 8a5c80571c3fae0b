#include "SndfileModule.h"

#include "SndfileDecoder.h"
#include "SndfileFile.h"
#include "SndfileTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <cstdio>
#include <string>

namespace verdin::sndfile {

namespace {

// Description/patterns pairs, each text NUL-terminated, the list ended by an empty text.
constexpr char kFileTypes[] =
    "WAV audio\0*.wav\0"
    "AIFF audio\0*.aif;*.aiff;*.aifc\0"
    "Sun/NeXT audio\0*.au;*.snd\0"
    "FLAC audio\0*.flac\0"
    "Ogg Vorbis audio\0*.ogg;*.oga\0"
    "Opus audio\0*.opus\0";

bool IsSoundFileName(const char* path) {
    return HasOneOfExtensions(path, {".wav", ".aif", ".aiff", ".aifc", ".au", ".snd", ".flac", ".ogg",
                                     ".oga", ".opus"});
}

// Made once, on first use, and owned by the module for the life of the library.
const char* Description() {
    static const std::string description =
        std::string("Verdin sound file decoder " VERDIN_MODULE_VERSION " (") + sf_version_string() + ")";
    return description.c_str();
}

int32_t GetFileInfo(const char* path, uint32_t dataOffset, TrackInfo* info) {
    if (!path || !info || IsUrl(path)) return 0;
    SndfileFile file;
    if (!file.Open(path, dataOffset)) return 0;
    DescribeSoundFile(file, path, *info);
    return 1;
}

const InputModuleOps kOps = {
    [](InputModule*) { return Description(); },
    [](InputModule*, const char* path, uint32_t dataOffset) -> InputDecoder* {
        if (!path || IsUrl(path)) return nullptr;  // no network reading here
        return SndfileDecoder::Open(path, dataOffset);
    },
    [](InputModule*, const char* path, uint32_t dataOffset, TrackInfo* info) {
        return GetFileInfo(path, dataOffset, info);
    },
    // This module has no windows: file information, configuration and its about box show
    // nothing; About names the module on standard error.
    [](InputModule*, const char*, uint32_t) {},
    // By the name alone, so the answer never changes for the same path.
    [](InputModule*, const char* path, uint32_t) -> int32_t { return path && IsSoundFileName(path); },
    [](InputModule*) { return static_cast<const char*>(kFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", Description()); },
    [](InputModule*) {},
};

InputModule module{&kOps};

}  // namespace

InputModule* AcquireSndfileModule() {
    return &module;
}

}  // namespace verdin::sndfile
