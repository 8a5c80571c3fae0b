#include "SndfileSource.h"

#include <cerrno>
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
    const SndfileSource* source = SourceOf(data);
    const off_t at = ::lseek(source->fd, 0, SEEK_CUR);
    return at < 0 ? -1 : at - source->dataOffset;
}

sf_count_t Seek(sf_count_t offset, int whence, void* data) {
    const SndfileSource* source = SourceOf(data);
    sf_count_t target = offset;
    if (whence == SEEK_CUR) target += Tell(data);
    else if (whence == SEEK_END) target += source->length;
    else if (whence != SEEK_SET) return -1;
    if (target < 0) return -1;
    const off_t reached = ::lseek(source->fd, target + source->dataOffset, SEEK_SET);
    return reached < 0 ? -1 : reached - source->dataOffset;
}

sf_count_t Read(void* buffer, sf_count_t bytes, void* data) {
    const SndfileSource* source = SourceOf(data);
    for (;;) {
        const ssize_t n = ::read(source->fd, buffer, static_cast<size_t>(bytes));
        if (n >= 0) return n;
        if (errno != EINTR) return 0;
    }
}

sf_count_t Write(const void*, sf_count_t, void*) {
    return 0;
}

}  // namespace

SF_VIRTUAL_IO kSndfileSourceIo = {Length, Seek, Read, Write, Tell};

}  // namespace verdin::sndfile
