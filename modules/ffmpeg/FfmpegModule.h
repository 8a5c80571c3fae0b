#pragma once
// The FFmpeg input module: AAC/M4A, ALAC, WavPack, Monkey's Audio, WMA and the other
// audio formats FFmpeg reads, by extension. It sorts before the other bundled modules
// ("FFmpeg_Verdin" < "MPEG_Verdin" < "WAV_Verdin") and the first module that takes a file
// plays it, so it declines their extensions and every URL by name.
#include <verdin/input.h>

namespace verdin::ffmpeg {

// The module object; every call hands out the same one. It holds nothing to free, so
// Release has nothing to do. The first call also quiets FFmpeg's log to errors only.
InputModule* AcquireFfmpegModule();

}  // namespace verdin::ffmpeg
