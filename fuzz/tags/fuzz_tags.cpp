// Arbitrary bytes as a file of each layout the tag layer reads (the first byte picks the
// layout, bit 7 whether attachments are kept), through the whole fill path in both modes
// and every query the templates, expressions and properties page make.
#include "tags/FrameDisplay.h"
#include "tags/FrameTable.h"
#include "tags/FrameValues.h"
#include "tags/GenreTable.h"
#include "tags/TagReader.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace verdin;
    static const int fd = ::memfd_create("fuzz_tags", MFD_CLOEXEC);  // one file, rewritten for each input
    if (size < 1 || fd < 0 || ::ftruncate(fd, 0) != 0) return 0;
    if (::pwrite(fd, data + 1, size - 1, 0) != static_cast<ssize_t>(size - 1)) return 0;
    const auto kind = static_cast<TagFileKind>((data[0] & 0x7F) % kTagFileKindCount);
    const bool keepAttachments = (data[0] & 0x80) != 0;
    TrackTag tag;
    const TagReadResult read = ReadTrackTag(fd, kind, {TagMode::Read, keepAttachments}, tag);
    if (!read.opened || read.fileSize != size - 1 || read.audioStart > read.fileSize) std::abort();
    std::string value;
    for (const FrameInfo& frame : FrameTable()) {
        FrameStringValue(tag, frame.id, value);
        if (value.size() > kFrameValueLimit) std::abort();
        (void)FrameIntegerValue(tag, frame.id);
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
