#pragma once
// The player's tag vocabulary: one identifier per frame kind. The numbering is fixed:
// an identifier is the frame's position in the frame-name table (FrameTable.h), and
// settings, templates and menus refer to frames through these positions and names.
#include <cstddef>
#include <cstdint>

namespace verdin {

enum class FrameId : std::uint8_t {
    NoFrame,
    OrigAlbum,
    Publisher,
    EncodedBy,
    EncoderSettings,
    OrigFileName,
    Language,
    PartInSet,
    Date,
    Time,
    RecordingDates,
    MediaType,
    FileType,
    NetRadioStation,
    NetRadioOwner,
    Lyricist,
    OrigArtist,
    OrigLyricist,
    Subtitle,
    MixArtist,
    UserText,
    ContentGroup,
    Title,
    LeadArtist,
    Band,
    Album,
    Year,
    Conductor,
    Composer,
    Copyright,
    ContentType,
    TrackNum,
    Comment,
    WwwAudioFile,
    WwwArtist,
    WwwAudioSource,
    WwwCommercialInfo,
    WwwCopyright,
    WwwPublisher,
    WwwPayment,
    WwwRadioPage,
    WwwUser,
    InvolvedPeople,
    UnsyncedLyrics,
    Picture,
    GeneralObject,
    UniqueFileId,
    PlayCounter,
    Popularimeter,
    GroupingReg,
    CryptoReg,
};

inline constexpr std::size_t kFrameCount = 51;
static_assert(static_cast<std::size_t>(FrameId::CryptoReg) + 1 == kFrameCount);

constexpr std::size_t FrameIndex(FrameId id) { return static_cast<std::size_t>(id); }

}  // namespace verdin
