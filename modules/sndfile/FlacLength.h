#pragma once
// The length of a FLAC stream whose STREAMINFO block leaves it out.
//
// An encoder writing to a pipe cannot go back to fill in the total sample count, and
// leaves it 0; libsndfile then reports the length as unknown. Every FLAC frame header
// carries the number of its first sample (or, in a fixed-block-size stream, its frame
// number) and its block size, so the last frame's header gives the length. The tail of
// the file is searched backwards for a frame header whose CRC-8 holds and whose frame,
// ending where the stream ends (or where a last frame cut short begins), passes its
// CRC-16: nothing is decoded.
#include <cstdint>

namespace verdin::sndfile {

// Samples per channel of the FLAC stream held by the bytes [start, start + length) of the
// file open as fd (an ID3v1 tag after the stream is allowed); 0 when no last frame is
// found in the last 4 MiB.
int64_t FlacLengthFromLastFrame(int fd, int64_t start, int64_t length);

}  // namespace verdin::sndfile
