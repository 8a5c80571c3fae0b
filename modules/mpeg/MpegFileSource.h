#pragma once
// The bytes mpg123 reads: a file from its data offset on.
//
// Tag data in front of the audio (an ID3v2 tag whose size the player's tag reader
// measured) is hidden from the decoder by shifting every position by the offset: mpg123
// sees a file that starts with the audio and is that much shorter.
//
// The position is kept here and every read is a pread(): seeking costs no system call,
// which matters when thousands of files are opened just to read their first frame. A
// decoder that plays the file through turns on a read-ahead buffer, so that mpg123's
// small reads (a frame header, then a frame of a few hundred bytes) cost one system call
// per 64 KiB rather than two per frame.
#include <sys/types.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace verdin::mpeg {

struct MpegFileSource {
    int fd = -1;
    int64_t dataOffset = 0;
    int64_t length = 0;    // bytes from the data offset to the end of the file
    int64_t position = 0;  // where mpg123 reads next, from the data offset
    // Read-ahead (empty: off): bytes [bufferStart, bufferStart + bufferFill) of the source.
    std::vector<uint8_t> buffer;
    int64_t bufferStart = 0;
    size_t bufferFill = 0;

    void EnableReadAhead(size_t bytes) {
        buffer.assign(bytes, 0);
        bufferFill = 0;
    }
};

// Reader callbacks for mpg123_replace_reader_handle; the handle is a MpegFileSource*.
ssize_t ReadMpegFileSource(void* source, void* buffer, size_t bytes);
off_t SeekMpegFileSource(void* source, off_t offset, int whence);

}  // namespace verdin::mpeg
