#pragma once
// One playing MPEG track: 16-bit PCM, one MPEG frame per block, straight out of
// libmpg123's own output buffer (no copy on the way).
#include "Mpg123Handle.h"
#include "MpegFile.h"

#include <verdin/input.h>

#include <cstdint>

namespace verdin::mpeg {

class MpegDecoder : public InputDecoder {
public:
    // A decoder positioned at the start of the track, or null when the file cannot be
    // read or holds no MPEG audio at dataOffset.
    static MpegDecoder* Open(const char* path, uint32_t dataOffset);

    MpegDecoder(const MpegDecoder&) = delete;
    MpegDecoder& operator=(const MpegDecoder&) = delete;

private:
    explicit MpegDecoder(Mpg123Handle handle);

    uint32_t Decode(const void** block);
    uint32_t Seek(uint32_t milliseconds);

    static const InputDecoderOps kOps;

    Mpg123Handle handle_;  // declared before file_: the file is closed on it first
    MpegFile file_;
    size_t frameBytes_ = 4;  // 16-bit samples x channels
};

}  // namespace verdin::mpeg
