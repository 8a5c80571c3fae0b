#pragma once
// The bytes libsndfile reads: a file from its data offset on.
//
// Tag data in front of the audio (an ID3v2 tag before a FLAC stream, as the player's tag
// reader measured it) is hidden by shifting every position by the offset: libsndfile sees
// a file that starts with the audio and is that much shorter. The position is kept here
// and every read is a pread(), so seeking costs no system call.
#include <cstdint>

#include <sndfile.h>

namespace verdin::sndfile {

struct SndfileSource {
    int fd = -1;
    sf_count_t dataOffset = 0;
    sf_count_t length = 0;    // bytes from the data offset to the end of the file
    sf_count_t position = 0;  // where libsndfile reads next, from the data offset
};

// Callbacks for sf_open_virtual; their user data is a SndfileSource*. Writing is refused.
extern SF_VIRTUAL_IO kSndfileSourceIo;

}  // namespace verdin::sndfile
