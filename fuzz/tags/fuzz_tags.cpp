// Arbitrary bytes as a file of each layout the tag layer reads (the first byte picks the
// layout, bit 7 whether attachments are kept), through the whole fill path in both modes
// and every query the templates, expressions and properties dialog make.
#include "tags/FrameDisplay.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"
#include "tags/GenreTable.h"
#include "tags/TagReader.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// One in-memory file for the whole run, rewritten for each input.
int MemoryFile() {
    static const int fd = ::memfd_create("fuzz_tags", MFD_CLOEXEC);
    return fd;
}

bool Fill(int fd, const std::uint8_t* data, std::size_t size) {
    if (::ftruncate(fd, 0) != 0) return false;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pwrite(fd, data + done, size - done, static_cast<off_t>(done));
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace verdin;
    if (size < 1) return 0;
    const auto kind = static_cast<TagFileKind>((data[0] & 0x7F) % kTagFileKindCount);
    const bool keepAttachments = (data[0] & 0x80) != 0;
    const int fd = MemoryFile();
    if (fd < 0 || !Fill(fd, data + 1, size - 1)) std::abort();

    TrackTag tag;
    const TagReadResult read = ReadTrackTag(fd, kind, {TagMode::Read, keepAttachments}, tag);
    if (!read.opened || read.fileSize != size - 1 || read.audioStart > read.fileSize) std::abort();

    std::string value;
    for (const FrameInfo& frame : FrameTable()) {
        FrameStringValue(tag, frame.id, value);
        if (value.size() > kFrameValueLimit) std::abort();
        (void)FrameIntegerValue(tag, frame.id);
        if (FindFrameName(frame.name) != frame.id) std::abort();
    }
    for (std::size_t i = 0; i < tag.size(); ++i) {
        const FrameView frame = tag[i];
        (void)JoinFrameDetails(FrameDetails(frame));
        if (!keepAttachments && !frame.data.empty()) std::abort();
        if (frame.id == FrameId::ContentType) (void)ResolveContentType(frame.text);
        (void)FindFrameNameIgnoreCase(frame.text);
    }

    TrackTag ignored;
    const TagReadResult skipped = ReadTrackTag(fd, kind, {TagMode::Ignore}, ignored);
    if (!ignored.empty() || skipped.audioStart != read.audioStart || skipped.version.found()) std::abort();
    return 0;
}
