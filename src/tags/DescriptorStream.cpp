#include "tags/DescriptorStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <unistd.h>

namespace verdin {
namespace {

// An ID3v2 tag of a few text frames, lame's padding included, fits the head block; the
// tail block covers an ID3v1 trailer (128 bytes) with an APE footer (32) before it.
constexpr std::size_t kHeadBlock = 4096;
constexpr std::size_t kTailBlock = 512;

}  // namespace

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

void DescriptorStream::Load(Block& block, std::int64_t offset, std::size_t size) {
    block.loaded = true;
    block.offset = offset;
    block.bytes.resize(size);
    block.bytes.resize(ReadFully(block.bytes.data(), offset, size));
}

bool DescriptorStream::ServeFrom(Block& block, std::int64_t blockOffset, std::size_t blockSize,
                                 std::int64_t offset, std::size_t length, TagLib::ByteVector& out) {
    const std::int64_t blockEnd = blockOffset + static_cast<std::int64_t>(blockSize);
    if (offset < blockOffset || offset + static_cast<std::int64_t>(length) > blockEnd) return false;
    if (!block.loaded) Load(block, blockOffset, blockSize);
    const std::int64_t from = offset - block.offset;
    const std::int64_t available = static_cast<std::int64_t>(block.bytes.size()) - from;
    const std::size_t n = available <= 0 ? 0 : std::min(length, static_cast<std::size_t>(available));
    out = TagLib::ByteVector(block.bytes.data() + from, static_cast<unsigned int>(n));
    return true;
}

TagLib::ByteVector DescriptorStream::ReadAt(std::int64_t offset, std::size_t length) {
    TagLib::ByteVector out;
    if (fd_ < 0 || offset < 0 || offset >= size_ || length == 0) return out;
    length = static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(length), size_ - offset));
    length = std::min<std::size_t>(length, std::numeric_limits<unsigned int>::max());  // ByteVector's limit

    const std::size_t headSize = static_cast<std::size_t>(std::min<std::int64_t>(size_, kHeadBlock));
    if (ServeFrom(head_, 0, headSize, offset, length, out)) return out;
    const std::int64_t tailOffset = std::max<std::int64_t>(0, size_ - static_cast<std::int64_t>(kTailBlock));
    if (ServeFrom(tail_, tailOffset, static_cast<std::size_t>(size_ - tailOffset), offset, length, out)) return out;

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
