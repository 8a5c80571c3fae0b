#include "tags/DescriptorStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <unistd.h>

namespace verdin {

DescriptorStream::DescriptorStream(int fd, std::int64_t size) : fd_(fd), size_(size < 0 ? 0 : size) {}

void DescriptorStream::seek(long offset, Position p) {
    std::int64_t base = 0;
    if (p == Current) base = position_;
    else if (p == End) base = size_;
    const std::int64_t target = base + offset;
    if (target >= 0) position_ = target;  // a seek before the start is refused, as lseek does
}

std::size_t DescriptorStream::ReadFully(char* into, std::int64_t offset, std::size_t length) {
    std::size_t done = 0;
    while (done < length) {
        ++readCalls_;
        const ssize_t n = ::pread(fd_, into + done, length - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    return done;
}

// Copies [offset, offset+length) from the block, reading the block first, if that range
// lies inside the block's place in the file (which starts at blockOffset).
template <std::size_t N>
bool DescriptorStream::ServeFrom(Block<N>& block, std::int64_t blockOffset, std::int64_t offset, std::size_t length,
                                 TagLib::ByteVector& out) {
    const std::int64_t blockSize = std::min<std::int64_t>(static_cast<std::int64_t>(N), size_ - blockOffset);
    if (offset < blockOffset || offset + static_cast<std::int64_t>(length) > blockOffset + blockSize) return false;
    if (!block.loaded) {
        block.loaded = true;
        block.offset = blockOffset;
        block.size = ReadFully(block.bytes, blockOffset, static_cast<std::size_t>(blockSize));
    }
    const std::int64_t from = offset - block.offset;
    const std::int64_t available = static_cast<std::int64_t>(block.size) - from;
    const std::size_t n = available <= 0 ? 0 : std::min(length, static_cast<std::size_t>(available));
    out = TagLib::ByteVector(block.bytes + from, static_cast<unsigned int>(n));
    return true;
}

TagLib::ByteVector DescriptorStream::ReadAt(std::int64_t offset, std::size_t length) {
    TagLib::ByteVector out;
    if (fd_ < 0 || offset < 0 || offset >= size_ || length == 0) return out;
    length = static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(length), size_ - offset));
    length = std::min<std::size_t>(length, std::numeric_limits<unsigned int>::max());  // ByteVector's limit

    if (ServeFrom(head_, 0, offset, length, out)) return out;
    const std::int64_t tailOffset = std::max<std::int64_t>(0, size_ - static_cast<std::int64_t>(kTailBlock));
    if (ServeFrom(tail_, tailOffset, offset, length, out)) return out;

    out.resize(static_cast<unsigned int>(length));
    out.resize(static_cast<unsigned int>(ReadFully(out.data(), offset, length)));
    return out;
}

TagLib::ByteVector DescriptorStream::readBlock(unsigned long length) {
    TagLib::ByteVector out = ReadAt(position_, length);
    position_ += out.size();
    return out;
}

}  // namespace verdin
