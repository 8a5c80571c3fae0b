#include "FfmpegModule.h"

#include "FfmpegDecoder.h"
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

// Description/patterns pairs, each text NUL-terminated, the list ended by an empty text.
// MP3, WAV, AIFF, AU, FLAC, Ogg and Opus files are left to the other bundled modules.
constexpr char kFileTypes[] =
    "MPEG-4 audio (AAC, ALAC)\0*.m4a;*.m4b;*.mp4;*.aac\0"
    "WavPack\0*.wv\0"
    "Monkey's Audio\0*.ape\0"
    "Windows Media audio\0*.wma;*.asf\0"
    "Matroska/WebM audio\0*.mka;*.webm\0"
    "Other audio (FFmpeg)\0*.ac3;*.dts;*.mpc;*.tta;*.tak;*.caf;*.spx;*.amr;*.3gp\0";

bool IsFfmpegFileName(const char* path) {
    return HasOneOfExtensions(path, {".m4a", ".m4b", ".mp4", ".aac", ".wv", ".ape", ".wma", ".asf", ".mka", ".webm",
                                     ".ac3", ".dts", ".mpc", ".tta", ".tak", ".caf", ".spx", ".amr", ".3gp"});
}

const char* Description() {
    static const std::string description =
        std::string("Verdin FFmpeg decoder " VERDIN_MODULE_VERSION " (libavformat ") +
        AV_STRINGIFY(LIBAVFORMAT_VERSION) + ")";
    return description.c_str();
}

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
    [](InputModule*) { return Description(); },
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
    [](InputModule*, const char* path, uint32_t) -> int32_t { return path && !IsUrl(path) && IsFfmpegFileName(path); },
    [](InputModule*) { return static_cast<const char*>(kFileTypes); },
    [](InputModule*) {},
    [](InputModule*) { std::fprintf(stderr, "%s\n", Description()); },
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
