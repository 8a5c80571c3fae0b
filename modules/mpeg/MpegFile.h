#pragma once
// A file's MPEG audio opened on an mpg123 handle, with the output format its first frame
// announced.
//
// The handle is borrowed, and can open the next file once this object has gone. The file
// is not closed on the handle when this object goes: the handle's next open (or its
// deletion) closes it anyway, and every close clears the decoder's buffers, which costs
// about a sixth of reading a file's information. Until then the handle keeps a pointer
// to the gone source but never reads through it: closing only forgets it. mpg123 keeps
// that pointer while the file is open, so the object neither copies nor moves.
#include "MpegFileSource.h"

#include "kit/RegularFile.h"

#include <cstdint>
#include <optional>

#include <mpg123.h>

namespace verdin::mpeg {

class MpegFile {
public:
    explicit MpegFile(mpg123_handle* handle) : handle_(handle) {}
    ~MpegFile() = default;
    MpegFile(const MpegFile&) = delete;
    MpegFile& operator=(const MpegFile&) = delete;

    // Opens the audio of path that starts dataOffset bytes into the file and reads up to
    // its first frame. False when the file cannot be read or no MPEG audio is found there.
    bool Open(const char* path, uint32_t dataOffset);

    // Reads ahead in blocks of that size from now on (for decoding the whole file).
    void EnableReadAhead(size_t bytes) { source_.EnableReadAhead(bytes); }

    mpg123_handle* handle() const { return handle_; }
    long sampleRate() const { return sampleRate_; }
    int channels() const { return channels_; }
    uint64_t fileSize() const { return file_ ? file_->size() : 0; }
    uint32_t dataOffset() const { return static_cast<uint32_t>(source_.dataOffset); }

    // The track's length in output samples per channel, gapless trimming applied: exact
    // when the file carries a Xing/Info frame count, otherwise estimated from the data
    // size (exact for a constant bit rate to within a frame). The file is not scanned.
    // -1 when unknown.
    int64_t LengthInSamples() const;

private:
    void Close();

    mpg123_handle* handle_;
    std::optional<RegularFile> file_;
    MpegFileSource source_;
    bool open_ = false;
    long sampleRate_ = 0;
    int channels_ = 0;
};

}  // namespace verdin::mpeg
