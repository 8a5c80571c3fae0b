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

    // The bytes of MPEG data: the file after the data offset, without an ID3v1 trailer.
    uint64_t audioBytes() const;

    // The track's length in output samples per channel, gapless trimming applied; -1 when
    // unknown. A Xing/Info frame count is taken as it is, unless the file's bytes could
    // not hold that many frames (a file cut short keeps the header of the whole). Without
    // a usable count every frame header is read once (mpg123_scan, no decoding): an
    // estimate from the first frame's bit rate is several times off for a variable rate.
    // The scan is done on the first call only and keeps the handle's position.
    int64_t LengthInSamples();
    // True once LengthInSamples has counted the frames instead of trusting a header.
    bool lengthScanned() const { return scanned_; }

private:
    void Close();
    bool HeaderGivesLength() const;

    mpg123_handle* handle_;
    std::optional<RegularFile> file_;
    MpegFileSource source_;
    bool open_ = false;
    bool lengthChecked_ = false;
    bool scanned_ = false;
    long sampleRate_ = 0;
    int channels_ = 0;
};

}  // namespace verdin::mpeg
