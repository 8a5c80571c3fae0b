#include "SndfileSource.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace verdin::sndfile {

namespace {

SndfileSource* SourceOf(void* data) {
    return static_cast<SndfileSource*>(data);
}

sf_count_t Length(void* data) {
    return SourceOf(data)->length;
}

sf_count_t Tell(void* data) {
    return SourceOf(data)->position;
}

sf_count_t Seek(sf_count_t offset, int whence, void* data) {
    SndfileSource* source = SourceOf(data);
    sf_count_t target = offset;
    if (whence == SEEK_CUR) target += source->position;
    else if (whence == SEEK_END) target += source->length;
    else if (whence != SEEK_SET) return -1;
    if (target < 0) return -1;
    source->position = target;
    return target;
}

sf_count_t Read(void* buffer, sf_count_t bytes, void* data) {
    SndfileSource* source = SourceOf(data);
    if (bytes <= 0) return 0;
    for (;;) {
        const ssize_t n = ::pread(source->fd, buffer, static_cast<size_t>(bytes), source->dataOffset + source->position);
        if (n >= 0) {
            source->position += n;
            return n;
        }
        if (errno != EINTR) return 0;  // libsndfile takes a short read as the end
    }
}

sf_count_t Write(const void*, sf_count_t, void*) {
    return 0;
}

}  // namespace

SF_VIRTUAL_IO kSndfileSourceIo = {Length, Seek, Read, Write, Tell};

}  // namespace verdin::sndfile
