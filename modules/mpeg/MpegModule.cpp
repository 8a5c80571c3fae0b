#include "MpegModule.h"

#include "MpegDecoder.h"
#include "MpegFile.h"
#include "MpegHandlePool.h"
#include "MpegTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <atomic>
#include <cstdio>

namespace verdin::mpeg {

namespace {

constexpr const char* kDescription = "Verdin MPEG audio decoder " VERDIN_MODULE_VERSION " (libmpg123)";

// Description/patterns pairs, each text NUL-terminated, the list ended by an empty text.
constexpr char kFileTypes[] = "MPEG audio\0*.mp3;*.mp2;*.mp1\0";

bool IsMpegFileName(const char* path) {
    return HasOneOfExtensions(path, {".mp3", ".mp2", ".mp1"});
}

class MpegModule : public InputModule {
public:
    MpegModule() : InputModule{&kOps} {}

    void AddUser() { users_.fetch_add(1, std::memory_order_relaxed); }
    void Release() {
        if (users_.fetch_sub(1, std::memory_order_acq_rel) == 1) infoHandles_.Drain();
    }

    int32_t GetFileInfo(const char* path, uint32_t dataOffset, TrackInfo* info) {
        if (!path || !info || IsUrl(path)) return 0;
        PooledMpg123Handle handle(infoHandles_);
        MpegFile file(handle.get());
        if (!file.Open(path, dataOffset)) return 0;
        DescribeMpegTrack(file, path, *info);
        return 1;
    }

private:
    static const InputModuleOps kOps;

    // Written by the entry point and by Release, both on the user-interface thread;
    // atomic so that a second user of the library never races the count.
    std::atomic<int> users_{0};
    MpegHandlePool infoHandles_;
};

MpegModule* Self(InputModule* module) {
    return static_cast<MpegModule*>(module);
}

const InputModuleOps MpegModule::kOps = {
    [](InputModule*) { return kDescription; },
    [](InputModule*, const char* path, uint32_t dataOffset) -> InputDecoder* {
        if (!path || IsUrl(path)) return nullptr;  // no network reading here
        return MpegDecoder::Open(path, dataOffset);
    },
    [](InputModule* self, const char* path, uint32_t dataOffset, TrackInfo* info) {
        return Self(self)->GetFileInfo(path, dataOffset, info);
    },
    // This module has no windows: file information, configuration and its about box show
    // nothing; About names the module on standard error.
    [](InputModule*, const char*, uint32_t) {},
    // By the name alone, so the answer never changes for the same path.
    [](InputModule*, const char* path, uint32_t) -> int32_t { return path && IsMpegFileName(path); },
    [](InputModule*) { return static_cast<const char*>(kFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", kDescription); },
    [](InputModule* self) { Self(self)->Release(); },
};

}  // namespace

InputModule* AcquireMpegModule() {
    static MpegModule module;
    module.AddUser();
    return &module;
}

}  // namespace verdin::mpeg
