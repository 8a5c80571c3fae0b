#pragma once
// The tag of one track in the player's own vocabulary: the frames found in the file,
// each with its identifier and fields. A track record owns one; a music library holds
// tens of thousands, so a tag keeps all its texts in one pool and its frames in one
// small array (two allocations per tag, none for a track without frames).
//
// Large binary payloads (attached pictures and objects) are normally not kept: a frame
// records their size, and the properties dialog reads the file again with the payloads
// kept when the user wants to save one (TagReadOptions::keepAttachments).
//
// Editing is by frame: SetText replaces or adds, Remove drops; which containers the
// frames came from (sources()) tells a later writer what the file carries.
#include "tags/FrameId.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// One frame's fields, not owning them. Frames from a tag point into the tag's pool and
// stay valid until the tag is changed.
struct FrameView {
    FrameId id = FrameId::NoFrame;
    std::string_view text;         // the value; for pictures and objects usually empty
    std::string_view language;     // COMMENT, UNSYNCEDLYRICS: three letters ("eng")
    std::string_view description;  // COMMENT, USERTEXT, WWWUSER, PICTURE, GENERALOBJECT...
    std::string_view mimeType;     // PICTURE, GENERALOBJECT
    std::string_view fileName;     // GENERALOBJECT
    std::string_view data;         // binary payload bytes, when kept
    std::uint32_t dataSize = 0;    // payload size in the file, kept or not
    std::uint8_t pictureType = 0;  // PICTURE: 0..20 (PictureTypes.h)

    bool dataKept() const { return data.size() == dataSize; }
};

// The tag containers a file carries (whether or not they supplied frames).
enum TagSource : std::uint8_t {
    kSourceId3v2 = 1,
    kSourceId3v1 = 2,
    kSourceXiph = 4,  // Vorbis comments of FLAC, Ogg Vorbis, Opus
    kSourceApe = 8,
    kSourceRiffInfo = 16,
};

class TrackTag {
public:
    bool empty() const { return frames_.empty(); }
    std::size_t size() const { return frames_.size(); }
    FrameView operator[](std::size_t index) const;

    // The frame that stands for `id`: the first one without a description (so a plain
    // comment wins over a player's private "iTunNORM"-style comment), else the first.
    std::optional<FrameView> Find(FrameId id) const;
    bool Has(FrameId id) const;

    // Appends a copy of the frame. Payloads over 4 GiB are not representable and are
    // dropped (the size stays).
    void Add(const FrameView& frame);
    void AddText(FrameId id, std::string_view text);
    // Replaces the text of the frame Find(id) would return, or adds a frame.
    void SetText(FrameId id, std::string_view text);
    void Remove(std::size_t index);
    void RemoveAll(FrameId id);
    void Clear();

    std::uint8_t sources() const { return sources_; }
    void AddSource(TagSource source) { sources_ = static_cast<std::uint8_t>(sources_ | source); }

    // Drops spare capacity and texts no frame refers to any more.
    void Compact();
    // Bytes held on the heap (for measuring what a library of tags costs).
    std::size_t HeapBytes() const;

    friend bool operator==(const TrackTag& a, const TrackTag& b);

private:
    struct Span {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
    };
    enum Field { kText, kLanguage, kDescription, kMimeType, kFileName, kData, kFieldCount };
    struct Frame {
        FrameId id = FrameId::NoFrame;
        std::uint8_t pictureType = 0;
        std::uint32_t dataSize = 0;
        Span fields[kFieldCount];
    };

    Span Store(std::string_view bytes);
    std::string_view Load(Span span) const { return {pool_.data() + span.offset, span.size}; }
    std::optional<std::size_t> FindIndex(FrameId id) const;

    std::vector<Frame> frames_;
    std::string pool_;
    std::uint8_t sources_ = 0;
};

}  // namespace verdin
