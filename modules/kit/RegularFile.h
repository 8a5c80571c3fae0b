#pragma once
// A read-only file descriptor for a decoder, open only when the path names a regular file.
//
// Opening is non-blocking so that a named pipe or a device that happens to carry an audio
// extension cannot stall the caller; anything that is not a regular file is refused before
// a byte is read. Directories are refused too (open() would succeed on them).
#include <cstdint>
#include <optional>

namespace verdin {

class RegularFile {
public:
    // The opened file, or none when the path cannot be opened or is not a regular file.
    static std::optional<RegularFile> Open(const char* path);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&& other) noexcept;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    int fd() const { return fd_; }
    // The size in bytes at the time the file was opened.
    uint64_t size() const { return size_; }

private:
    RegularFile(int fd, uint64_t size) : fd_(fd), size_(size) {}

    int fd_ = -1;
    uint64_t size_ = 0;
};

}  // namespace verdin
