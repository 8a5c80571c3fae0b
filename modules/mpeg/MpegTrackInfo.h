#pragma once
// What the player learns about an MPEG track before playing it.
#include "MpegFile.h"

#include <verdin/input.h>

namespace verdin::mpeg {

// Fills the record from an opened file: the file's body as title, its size, seekable,
// the duration (from a frame count, see MpegFile::LengthInSamples), the bit rate
// (negative: the average of a variable-rate file, from its audio bytes and duration),
// and the output format: the stream's own rate and channels at 16 bits.
void DescribeMpegTrack(MpegFile& file, const char* path, TrackInfo& info);

}  // namespace verdin::mpeg
