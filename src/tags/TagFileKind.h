#pragma once
// Which tag layout a file has, chosen by its extension like the decoders choose theirs.
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace verdin {

enum class TagFileKind : std::uint8_t {
    Plain,  // any other file: a leading ID3v2 tag and ID3v1/APE trailers, as on MPEG audio
    Mpeg,   // .mp3 .mp2 .mp1 .mpa .mpga: ID3v2, APE, ID3v1
    Flac,   // .flac .fla: Vorbis comment and pictures, ID3v2, ID3v1
    Ogg,    // .ogg .oga .opus: Vorbis, Opus or FLAC streams, told apart by their first packet
    Wav,    // .wav .wave: ID3v2 chunk, RIFF INFO
    Aiff,   // .aif .aiff .aifc: ID3v2 chunk
};
inline constexpr std::size_t kTagFileKindCount = 6;

TagFileKind TagFileKindFor(std::string_view fileName);

// "MPEG audio", "FLAC"... for error texts.
std::string_view TagFileKindName(TagFileKind kind);

}  // namespace verdin
