#include "FfmpegModule.h"

#include "FfmpegDecoder.h"
#include "FfmpegFileTypes.h"
#include "FfmpegFile.h"
#include "FfmpegTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <cstdio>
#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

namespace verdin::ffmpeg {

namespace {

int32_t GetFileInfo(const char* path, uint32_t dataOffset, TrackInfo* info) {
    if (!path || !info || IsUrl(path)) return 0;
    // The first frame must decode too: a file whose header survived but whose audio did
    // not is as unknown to the player as any other it cannot play.
    const std::unique_ptr<FfmpegDecoder, void (*)(FfmpegDecoder*)> decoder(
        FfmpegDecoder::Open(path, dataOffset), [](FfmpegDecoder* d) { d->ops->Destroy(d); });
    if (!decoder) return 0;
    DescribeFfmpegFile(decoder->file(), path, *info);
    return 1;
}

const InputModuleOps kOps = {
    [](InputModule*) { return FfmpegDescription(); },
    [](InputModule*, const char* path, uint32_t dataOffset) -> InputDecoder* {
        if (!path || IsUrl(path)) return nullptr;  // streams are another module's
        return FfmpegDecoder::Open(path, dataOffset);
    },
    [](InputModule*, const char* path, uint32_t dataOffset, TrackInfo* info) {
        return GetFileInfo(path, dataOffset, info);
    },
    // This module has no windows: file information, configuration and its about box show
    // nothing; About names the module on standard error.
    [](InputModule*, const char*, uint32_t) {},
    // By the name alone, so the answer never changes for the same path.
    [](InputModule*, const char* path, uint32_t) -> int32_t { return IsFfmpegFile(path); },
    [](InputModule*) { return static_cast<const char*>(kFfmpegFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", FfmpegDescription()); },
    [](InputModule*) {},
};

InputModule module{&kOps};

}  // namespace

InputModule* AcquireFfmpegModule() {
    // FFmpeg reports every damaged frame and every guess it makes; the player shows its
    // own message for a file it cannot play, so only errors reach standard error.
    av_log_set_level(AV_LOG_ERROR);
    return &module;
}

}  // namespace verdin::ffmpeg
