#include "FfmpegSource.h"

#include <cerrno>
#include <unistd.h>

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

namespace verdin::ffmpeg {

namespace {

// The demuxer's read buffer; 64 KiB keeps system calls few for the larger containers.
constexpr int kBufferBytes = 64 * 1024;

}  // namespace

FfmpegSource::~FfmpegSource() {
    if (io_) av_freep(&io_->buffer);
    avio_context_free(&io_);
}

bool FfmpegSource::Open(const char* path, uint32_t dataOffset) {
    file_ = RegularFile::Open(path);
    if (!file_ || dataOffset >= file_->size()) return false;
    dataOffset_ = dataOffset;
    length_ = static_cast<int64_t>(file_->size() - dataOffset);
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (!buffer) return false;
    io_ = avio_alloc_context(buffer, kBufferBytes, 0, this, &FfmpegSource::Read, nullptr, &FfmpegSource::Seek);
    if (!io_) av_free(buffer);
    return io_ != nullptr;
}

int FfmpegSource::Read(void* self, uint8_t* buffer, int size) {
    auto* source = static_cast<FfmpegSource*>(self);
    if (size <= 0) return 0;
    for (;;) {
        const ssize_t n = ::pread(source->file_->fd(), buffer, static_cast<size_t>(size),
                                  static_cast<off_t>(source->dataOffset_) + source->position_);
        if (n > 0) {
            source->position_ += n;
            return static_cast<int>(n);
        }
        if (n == 0) return AVERROR_EOF;
        if (errno != EINTR) return AVERROR(errno);
    }
}

int64_t FfmpegSource::Seek(void* self, int64_t offset, int whence) {
    auto* source = static_cast<FfmpegSource*>(self);
    if (whence & AVSEEK_SIZE) return source->length_;
    int64_t target = offset;
    switch (whence & ~AVSEEK_FORCE) {
    case SEEK_SET: break;
    case SEEK_CUR: target += source->position_; break;
    case SEEK_END: target += source->length_; break;
    default: return AVERROR(EINVAL);
    }
    if (target < 0) return AVERROR(EINVAL);
    source->position_ = target;
    return target;
}

}  // namespace verdin::ffmpeg
