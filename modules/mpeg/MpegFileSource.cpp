#include "MpegFileSource.h"

#include <cerrno>
#include <unistd.h>

namespace verdin::mpeg {

ssize_t ReadMpegFileSource(void* handle, void* buffer, size_t bytes) {
    const auto* source = static_cast<const MpegFileSource*>(handle);
    for (;;) {
        const ssize_t n = ::read(source->fd, buffer, bytes);
        if (n >= 0 || errno != EINTR) return n;
    }
}

off_t SeekMpegFileSource(void* handle, off_t offset, int whence) {
    const auto* source = static_cast<const MpegFileSource*>(handle);
    if (whence == SEEK_SET) {
        if (offset < 0) {
            errno = EINVAL;
            return -1;
        }
        offset += source->dataOffset;
    }
    const off_t reached = ::lseek(source->fd, offset, whence);
    if (reached < 0) return reached;
    if (reached < source->dataOffset) {
        // Never hand the decoder a position inside the tag it is not meant to see.
        ::lseek(source->fd, source->dataOffset, SEEK_SET);
        errno = EINVAL;
        return -1;
    }
    return reached - source->dataOffset;
}

}  // namespace verdin::mpeg
