#include "FfmpegFileTypes.h"

#include "kit/ModuleFileFacts.h"

#include <string>

extern "C" {
#include <libavformat/version.h>
}

namespace verdin::ffmpeg {

const char kFfmpegFileTypes[] =
    "MPEG-4 audio (AAC, ALAC)\0*.m4a;*.m4b;*.mp4;*.aac\0"
    "WavPack\0*.wv\0"
    "Monkey's Audio\0*.ape\0"
    "Windows Media audio\0*.wma;*.asf\0"
    "Matroska/WebM audio\0*.mka;*.webm\0"
    "Other audio (FFmpeg)\0*.ac3;*.dts;*.mpc;*.tta;*.tak;*.caf;*.spx;*.amr;*.3gp\0";

int32_t IsFfmpegFile(const char* path) {
    return path && !IsUrl(path) &&
           HasOneOfExtensions(path, {".m4a", ".m4b", ".mp4", ".aac", ".wv", ".ape", ".wma", ".asf", ".mka", ".webm",
                                     ".ac3", ".dts", ".mpc", ".tta", ".tak", ".caf", ".spx", ".amr", ".3gp"});
}

const char* FfmpegDescription() {
    static const std::string description =
        std::string("Verdin FFmpeg decoder " VERDIN_MODULE_VERSION " (libavformat ") +
        AV_STRINGIFY(LIBAVFORMAT_VERSION) + ")";
    return description.c_str();
}

}  // namespace verdin::ffmpeg
