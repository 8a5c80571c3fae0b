#pragma once
// What the sound file module takes, by name alone, and how it names itself: shared by the
// plug-in the player loads at start-up and the decoding library it opens when needed.
#include <cstdint>

namespace verdin::sndfile {

// Description/patterns pairs, each text NUL-terminated, the list ended by an empty text.
extern const char kSoundFileTypes[];

// By the name alone, so the answer never changes for the same path.
int32_t IsSoundFile(const char* path);

// Names the libsndfile the module was built with (the same text sf_version_string gives
// for it), so that the plug-in can say it without loading the library.
const char* SndfileDescription();

}  // namespace verdin::sndfile
