#pragma once
// Named-field tags (Vorbis comments of FLAC, Ogg Vorbis and Opus; APE tags; RIFF INFO
// chunks of WAV files) carry the same facts as ID3 frames under other names. This maps
// them onto the player's vocabulary so templates and random entries work on every
// format: ARTIST is LEADARTIST, DATE or YEAR is YEAR, GENRE is CONTENTTYPE, ALBUMARTIST
// is BAND, DISCNUMBER is PARTINSET, and so on (the table is in FieldImport.cpp).
//
// Repeated values of one field are joined with "/", as ID3v2.3 writes several artists;
// comments and lyrics become one frame each. A track or disc total ("TRACKTOTAL") is
// appended the ID3 way: TRACKNUMBER 3 with TRACKTOTAL 12 reads "3/12". Genres are kept in
// the ID3v2.3 content-type form (GenreTable.h), so a genre "17" reads "Rock ".
#include "tags/TagBuilder.h"

#include <taglib/apetag.h>
#include <taglib/flacpicture.h>
#include <taglib/infotag.h>
#include <taglib/xiphcomment.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// The names a container gives its fields.
enum class FieldNaming {
    Vorbis,    // Vorbis comments and APE items: "ARTIST", "TRACKNUMBER"...
    RiffInfo,  // RIFF INFO chunks: "IART", "INAM"...
};

class FieldImporter {
public:
    FieldImporter(TagBuilder& builder, FieldNaming naming) : builder_(builder), naming_(naming) {}
    // One value of a field; keys compare without regard to case.
    void Take(std::string_view key, std::string value);
    // Adds the frames gathered from the fields.
    void Finish();

private:
    TagBuilder& builder_;
    FieldNaming naming_;
    std::array<std::string, kFrameCount> joined_;
    std::vector<std::string> genres_;
    std::string trackTotal_;
    std::string discTotal_;
};

void ImportXiph(const TagLib::Ogg::XiphComment& comment, TagBuilder& builder);
void ImportApe(const TagLib::APE::Tag& tag, TagBuilder& builder);
void ImportRiffInfo(const TagLib::RIFF::Info::Tag& tag, TagBuilder& builder);
// FLAC picture blocks and the pictures of Vorbis comments.
void ImportPictures(const TagLib::List<TagLib::FLAC::Picture*>& pictures, TagBuilder& builder);

}  // namespace verdin
