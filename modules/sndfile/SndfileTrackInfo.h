#pragma once
// What the player learns about a sound file before playing it.
#include "SndfileFile.h"

#include <verdin/input.h>

namespace verdin::sndfile {

// Fills the record from an opened file: the file's body as title, its size, whether it
// can seek, the duration, the bit rate and the delivered format (the rate as stored,
// the channels as delivered; 8 bits for unsigned 8-bit PCM, else 16).
//
// The bit rate of uncompressed samples is rate x channels x stored bits. For compressed
// data it is the average over the track, from the bytes after the data offset and the
// duration; FLAC, Vorbis and Opus report it negative (their rate varies).
void DescribeSoundFile(const SndfileFile& file, const char* path, TrackInfo& info);

}  // namespace verdin::sndfile
