#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace verdin {

std::optional<RegularFile> RegularFile::Open(const char* path) {
    if (!path) return std::nullopt;
    const int fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return std::nullopt;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return std::nullopt;
    }
    // O_NONBLOCK stays set: it has no effect on a regular file.
    return RegularFile(fd, static_cast<uint64_t>(st.st_size));
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), size_(other.size_) {}

RegularFile& RegularFile::operator=(RegularFile&& other) noexcept {
    if (this != &other) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = std::exchange(other.fd_, -1);
        size_ = other.size_;
    }
    return *this;
}

RegularFile::~RegularFile() {
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace verdin
