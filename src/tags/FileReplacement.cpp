#include "tags/FileReplacement.h"

#include "base/Text.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace verdin {
namespace {

std::string Describe(std::string_view what, int error) {
    std::string text(what);
    text += ": ";
    text += std::strerror(error);
    return text;
}

// Writes all of data, retrying short writes and interruptions.
bool WriteAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, data, size);
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

// Copies everything from one descriptor to the other; 0 or the errno of the failure.
int CopyContents(int from, int to) {
    std::vector<char> buffer(1 << 20);
    for (;;) {
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        if (got == 0) return 0;
        if (!WriteAll(to, buffer.data(), static_cast<size_t>(got))) return errno;
    }
}

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Makes the rename itself durable; a directory that cannot be synced is not an error.
void SyncDirectory(const std::string& directory) {
    const int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    (void)::fsync(fd);
    ::close(fd);
}

}  // namespace

FileReplacement::FileReplacement(const std::string& path) : path_(path) {
    const int source = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (source < 0) {
        error_ = Describe("Cannot open the file", errno);
        return;
    }
    struct stat info {};
    if (::fstat(source, &info) != 0 || !S_ISREG(info.st_mode)) {
        error_ = "Not a regular file";
        ::close(source);
        return;
    }
    const std::string name = NameOf(path);
    const std::string extension(ExtensionOf(name));
    std::string pattern = DirectoryOf(path) + "/." + name + ".XXXXXX" + extension;
    const int copy = ::mkstemps(pattern.data(), static_cast<int>(extension.size()));
    if (copy < 0) {
        error_ = Describe("Cannot create a file beside it", errno);
        ::close(source);
        return;
    }
    copyPath_ = pattern;
    const int copied = CopyContents(source, copy);
    ::close(source);
    if (copied != 0) {
        error_ = Describe("Cannot copy the file", copied);
    } else if (::fchmod(copy, info.st_mode & 07777) != 0) {
        error_ = Describe("Cannot keep the file's permissions", errno);
    }
    // The owner can only be kept by a process allowed to give files away; others
    // create files they own, which is the best they can do.
    if (error_.empty()) (void)::fchown(copy, info.st_uid, info.st_gid);
    if (::close(copy) != 0 && error_.empty()) error_ = Describe("Cannot copy the file", errno);
    if (!error_.empty()) Discard();
}

FileReplacement::~FileReplacement() {
    if (!committed_) Discard();
}

void FileReplacement::Discard() {
    if (!copyPath_.empty()) ::unlink(copyPath_.c_str());
    copyPath_.clear();
}

std::string FileReplacement::Commit() {
    if (!ok()) return error_;
    const int fd = ::open(copyPath_.c_str(), O_RDONLY | O_CLOEXEC);
    int failure = 0;
    if (fd < 0) {
        failure = errno;
    } else {
        if (::fsync(fd) != 0) failure = errno;
        ::close(fd);
    }
    if (failure == 0 && ::rename(copyPath_.c_str(), path_.c_str()) != 0) failure = errno;
    if (failure != 0) {
        Discard();
        return Describe("Cannot replace the file", failure);
    }
    committed_ = true;
    SyncDirectory(DirectoryOf(path_));
    return {};
}

}  // namespace verdin
