#pragma once
// A read-only TagLib stream over a file descriptor the caller opened, so a file is
// opened once for tags and everything else. Tag reading touches the first and last
// few hundred bytes many times in small reads (headers, trailers, footers); the first
// read in each of those regions fetches a whole block and later reads are served from
// it, so a typical tagged file costs two system calls.
#include <taglib/tiostream.h>

#include <cstdint>

namespace verdin {

class DescriptorStream final : public TagLib::IOStream {
public:
    // fd stays the caller's; size is the file's size in bytes.
    DescriptorStream(int fd, std::int64_t size);

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return fd_ >= 0; }
    void seek(long offset, Position p = Beginning) override;
    long tell() const override { return static_cast<long>(position_); }
    long length() override { return static_cast<long>(size_); }
    void truncate(long) override {}

    // Up to `length` bytes from `offset` without moving the read position.
    TagLib::ByteVector ReadAt(std::int64_t offset, std::size_t length);
    // System calls made for reading so far (for tests and measurements).
    int readCalls() const { return readCalls_; }

private:
    // Blocks live inside the stream (on the caller's stack), not on the heap.
    static constexpr std::size_t kHeadBlock = 4096;
    static constexpr std::size_t kTailBlock = 512;
    template <std::size_t N>
    struct Block {
        std::int64_t offset = 0;
        std::size_t size = 0;  // bytes actually read
        bool loaded = false;
        char bytes[N];
    };
    // Copies [offset, offset+length) from the block if it lies inside it.
    template <std::size_t N>
    bool ServeFrom(Block<N>& block, std::int64_t blockOffset, std::int64_t offset, std::size_t length,
                   TagLib::ByteVector& out);
    std::size_t ReadFully(char* into, std::int64_t offset, std::size_t length);

    int fd_;
    std::int64_t size_;
    std::int64_t position_ = 0;
    Block<kHeadBlock> head_;
    Block<kTailBlock> tail_;
    int readCalls_ = 0;
};

}  // namespace verdin
