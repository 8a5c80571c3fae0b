#pragma once
// What the FFmpeg module takes, by name alone, and how it names itself: shared by the
// plug-in the player loads at start-up and the decoding library it opens when needed.
#include <cstdint>

namespace verdin::ffmpeg {

// Description/patterns pairs, each text NUL-terminated, the list ended by an empty text.
// MP3, WAV, AIFF, AU, FLAC, Ogg and Opus files are left to the other bundled modules.
extern const char kFfmpegFileTypes[];

// A file (never a URL: streams are another module's) with one of the module's extensions.
int32_t IsFfmpegFile(const char* path);

const char* FfmpegDescription();

}  // namespace verdin::ffmpeg
