#include "MpegFileSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <cstdio>
#include <unistd.h>

namespace verdin::mpeg {

namespace {

ssize_t ReadAt(const MpegFileSource& source, void* buffer, size_t bytes, int64_t position) {
    for (;;) {
        const ssize_t n = ::pread(source.fd, buffer, bytes, source.dataOffset + position);
        if (n >= 0 || errno != EINTR) return n;
    }
}

}  // namespace

ssize_t ReadMpegFileSource(void* handle, void* buffer, size_t bytes) {
    auto* source = static_cast<MpegFileSource*>(handle);
    const int64_t at = source->position;
    if (source->buffer.empty() || bytes >= source->buffer.size()) {
        const ssize_t n = ReadAt(*source, buffer, bytes, at);
        if (n > 0) source->position += n;
        return n;
    }
    const bool inside = at >= source->bufferStart &&
                        at + static_cast<int64_t>(bytes) <= source->bufferStart + static_cast<int64_t>(source->bufferFill);
    if (!inside) {
        const ssize_t n = ReadAt(*source, source->buffer.data(), source->buffer.size(), at);
        if (n < 0) return n;
        source->bufferStart = at;
        source->bufferFill = static_cast<size_t>(n);
    }
    const size_t offset = static_cast<size_t>(at - source->bufferStart);
    const size_t n = std::min(bytes, source->bufferFill - std::min(offset, source->bufferFill));
    std::memcpy(buffer, source->buffer.data() + offset, n);
    source->position += static_cast<int64_t>(n);
    return static_cast<ssize_t>(n);
}

off_t SeekMpegFileSource(void* handle, off_t offset, int whence) {
    auto* source = static_cast<MpegFileSource*>(handle);
    int64_t target = offset;
    if (whence == SEEK_CUR) target += source->position;
    else if (whence == SEEK_END) target += source->length;
    else if (whence != SEEK_SET) target = -1;
    if (target < 0) {
        // Never a position inside the tag the decoder is not meant to see.
        errno = EINVAL;
        return -1;
    }
    source->position = target;
    return static_cast<off_t>(target);
}

}  // namespace verdin::mpeg
