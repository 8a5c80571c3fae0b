#include "MpegFileSource.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace verdin::mpeg {

ssize_t ReadMpegFileSource(void* handle, void* buffer, size_t bytes) {
    auto* source = static_cast<MpegFileSource*>(handle);
    for (;;) {
        const ssize_t n = ::pread(source->fd, buffer, bytes, source->dataOffset + source->position);
        if (n > 0) source->position += n;
        if (n >= 0 || errno != EINTR) return n;
    }
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
