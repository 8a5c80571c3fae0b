#include "SndfileModule.h"

#include "SndfileDecoder.h"
#include "SndfileFile.h"
#include "SndfileFileTypes.h"
#include "SndfileTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <cstdio>

namespace verdin::sndfile {

namespace {

int32_t GetFileInfo(const char* path, uint32_t dataOffset, TrackInfo* info) {
    if (!path || !info || IsUrl(path)) return 0;
    SndfileFile file;
    if (!file.Open(path, dataOffset)) return 0;
    DescribeSoundFile(file, path, *info);
    return 1;
}

const InputModuleOps kOps = {
    [](InputModule*) { return SndfileDescription(); },
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
    [](InputModule*, const char* path, uint32_t) { return IsSoundFile(path); },
    [](InputModule*) { return static_cast<const char*>(kSoundFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", SndfileDescription()); },
    [](InputModule*) {},
};

InputModule module{&kOps};

}  // namespace

InputModule* AcquireSndfileModule() {
    return &module;
}

}  // namespace verdin::sndfile
