#pragma once
// The bytes libavformat reads: a regular file from its data offset on, through an
// AVIOContext of our own.
//
// Tag data in front of the audio (an ID3v2 tag before an AAC stream, as the player's tag
// reader measured it) is hidden by shifting every position by the offset, so the demuxer
// sees a file that starts with the audio. Every read is a pread() on the descriptor that
// RegularFile opened, which refuses pipes and devices before a byte is read.
#include "kit/RegularFile.h"

#include <cstdint>
#include <optional>

struct AVIOContext;

namespace verdin::ffmpeg {

class FfmpegSource {
public:
    FfmpegSource() = default;
    ~FfmpegSource();
    FfmpegSource(const FfmpegSource&) = delete;
    FfmpegSource& operator=(const FfmpegSource&) = delete;

    // False when the path is not a readable regular file or the offset leaves no data.
    bool Open(const char* path, uint32_t dataOffset);

    // The context to hand to avformat_open_input; owned here and valid while this lives.
    AVIOContext* io() const { return io_; }
    uint64_t fileSize() const { return file_ ? file_->size() : 0; }
    uint64_t dataOffset() const { return dataOffset_; }

private:
    static int Read(void* self, uint8_t* buffer, int size);
    static int64_t Seek(void* self, int64_t offset, int whence);

    std::optional<RegularFile> file_;
    uint64_t dataOffset_ = 0;
    int64_t length_ = 0;    // bytes from the data offset to the end of the file
    int64_t position_ = 0;  // where the demuxer reads next, from the data offset
    AVIOContext* io_ = nullptr;
};

}  // namespace verdin::ffmpeg
