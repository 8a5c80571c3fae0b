#include "tags/TagReader.h"

#include "tags/DescriptorStream.h"
#include "tags/FormatReaders.h"
#include "tags/LeadingTag.h"
#include "tags/TagBuilder.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {
namespace {

constexpr std::size_t kId3v2HeaderSize = 10;

LeadingTag LeadingTagOf(DescriptorStream& stream) {
    const TagLib::ByteVector head = stream.ReadAt(0, kId3v2HeaderSize);
    return ParseLeadingTag({reinterpret_cast<const std::uint8_t*>(head.data()), head.size()});
}

// Frames are gathered in a per-thread scratch tag, which keeps its capacity from file to
// file, and copied once at their final size into the track's tag.
TrackTag& ScratchTag() {
    thread_local TrackTag scratch;
    return scratch;
}

}  // namespace

TagReadResult ReadTrackTag(int fd, TagFileKind kind, const TagReadOptions& options, TrackTag& tag) {
    TagReadResult result;
    tag.Clear();
    struct stat info {};
    if (fd < 0 || ::fstat(fd, &info) != 0) {
        result.error = std::strerror(fd < 0 ? EBADF : errno);
        return result;
    }
    if (!S_ISREG(info.st_mode)) {
        result.error = "Not a regular file";
        return result;
    }
    result.opened = true;
    result.fileSize = static_cast<std::uint64_t>(info.st_size);

    DescriptorStream stream(fd, info.st_size);
    const LeadingTag leading = LeadingTagOf(stream);
    if (leading.found) {
        result.audioStart = leading.completeSize;
        if (leading.completeSize > result.fileSize) {
            // The decoder is pointed at the end rather than past it; the frames that
            // are there are still read.
            result.audioStart = static_cast<std::uint32_t>(result.fileSize);
            result.error = "ID3v2 tag is larger than the file";
        }
    }
    if (options.mode == TagMode::Ignore) return result;

    TrackTag& scratch = ScratchTag();
    scratch.Clear();
    try {
        TagBuilder builder(scratch, options.keepAttachments);
        FormatReadResult read = ReadFormatTags(kind, stream, leading.found, builder);
        result.version = read.version;
        if (result.error.empty()) result.error = std::move(read.error);
    } catch (const std::exception& e) {
        // TagLib itself does not throw; running out of memory on a hostile size can.
        result.error = e.what();
    }
    tag = scratch;
    constexpr std::size_t kScratchLimit = 1 << 20;  // don't hold on to a big picture's memory
    if (scratch.HeapBytes() > kScratchLimit) scratch = TrackTag();
    return result;
}

TagReadResult ReadTrackTag(const std::string& path, const TagReadOptions& options, TrackTag& tag) {
    tag.Clear();
    // Non-blocking so that a FIFO does not hang the open; regular files ignore the flag.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        TagReadResult result;
        result.error = std::strerror(errno);
        return result;
    }
    TagReadResult result = ReadTrackTag(fd, TagFileKindFor(path), options, tag);
    ::close(fd);
    return result;
}

}  // namespace verdin
