#include "tags/FieldImport.h"

#include "base/Text.h"
#include "tags/GenreTable.h"
#include "tags/TaglibText.h"

namespace verdin {
namespace {

using F = FrameId;

enum class Role {
    Join,        // values joined with "/"
    First,       // the first value only (several names for one fact: DATE and YEAR)
    Each,        // one frame per value
    Genre,       // content type
    TrackTotal,  // appended to TRACKNUM
    DiscTotal,   // appended to PARTINSET
};

struct FieldRow {
    std::string_view key;
    FrameId frame;
    Role role;
};

// Vorbis comment names (and the common unofficial ones) with APE item keys.
constexpr std::array<FieldRow, 47> kFields{{
    {"TITLE", F::Title, Role::Join},
    {"VERSION", F::Subtitle, Role::Join},
    {"SUBTITLE", F::Subtitle, Role::Join},
    {"ALBUM", F::Album, Role::Join},
    {"ARTIST", F::LeadArtist, Role::Join},
    {"ALBUMARTIST", F::Band, Role::Join},
    {"ALBUM ARTIST", F::Band, Role::Join},
    {"ENSEMBLE", F::Band, Role::Join},
    {"CONDUCTOR", F::Conductor, Role::Join},
    {"COMPOSER", F::Composer, Role::Join},
    {"LYRICIST", F::Lyricist, Role::Join},
    {"REMIXER", F::MixArtist, Role::Join},
    {"MIXARTIST", F::MixArtist, Role::Join},
    {"ORIGINALARTIST", F::OrigArtist, Role::Join},
    {"ORIGINALALBUM", F::OrigAlbum, Role::Join},
    {"ORIGINALLYRICIST", F::OrigLyricist, Role::Join},
    {"ORIGINALFILENAME", F::OrigFileName, Role::Join},
    {"DATE", F::Year, Role::First},
    {"YEAR", F::Year, Role::First},
    {"GENRE", F::ContentType, Role::Genre},
    {"TRACKNUMBER", F::TrackNum, Role::First},
    {"TRACK", F::TrackNum, Role::First},
    {"TRACKTOTAL", F::TrackNum, Role::TrackTotal},
    {"TOTALTRACKS", F::TrackNum, Role::TrackTotal},
    {"DISCNUMBER", F::PartInSet, Role::First},
    {"DISC", F::PartInSet, Role::First},
    {"DISCTOTAL", F::PartInSet, Role::DiscTotal},
    {"TOTALDISCS", F::PartInSet, Role::DiscTotal},
    {"COMMENT", F::Comment, Role::Each},
    {"DESCRIPTION", F::Comment, Role::Each},
    {"LYRICS", F::UnsyncedLyrics, Role::Each},
    {"UNSYNCEDLYRICS", F::UnsyncedLyrics, Role::Each},
    {"COPYRIGHT", F::Copyright, Role::Join},
    {"PUBLISHER", F::Publisher, Role::Join},
    {"ORGANIZATION", F::Publisher, Role::Join},
    {"LABEL", F::Publisher, Role::Join},
    {"ENCODEDBY", F::EncodedBy, Role::Join},
    {"ENCODED-BY", F::EncodedBy, Role::Join},
    {"ENCODER", F::EncoderSettings, Role::Join},
    {"ENCODERSETTINGS", F::EncoderSettings, Role::Join},
    {"ENCODING", F::EncoderSettings, Role::Join},
    {"LANGUAGE", F::Language, Role::Join},
    {"GROUPING", F::ContentGroup, Role::Join},
    {"MEDIA", F::MediaType, Role::Join},
    {"RADIOSTATION", F::NetRadioStation, Role::Join},
    {"RADIOSTATIONOWNER", F::NetRadioOwner, Role::Join},
    {"FILETYPE", F::FileType, Role::Join},
}};

// RIFF INFO chunk identifiers of WAV files.
constexpr std::array<FieldRow, 11> kInfoFields{{
    {"INAM", F::Title, Role::Join},
    {"IART", F::LeadArtist, Role::Join},
    {"IPRD", F::Album, Role::Join},
    {"ICRD", F::Year, Role::First},
    {"IGNR", F::ContentType, Role::Genre},
    {"ICMT", F::Comment, Role::Each},
    {"IPRT", F::TrackNum, Role::First},
    {"ITRK", F::TrackNum, Role::First},
    {"ICOP", F::Copyright, Role::Join},
    {"ISFT", F::EncoderSettings, Role::Join},
    {"ILNG", F::Language, Role::Join},
}};

template <std::size_t N>
const FieldRow* FindRow(const std::array<FieldRow, N>& rows, std::string_view key) {
    for (const FieldRow& row : rows)
        if (EqualsIgnoreCase(row.key, key)) return &row;
    return nullptr;
}

void AppendTotal(std::string& number, const std::string& total) {
    if (!number.empty() && !total.empty() && number.find('/') == std::string::npos) number += "/" + total;
}

}  // namespace

void FieldImporter::Take(std::string_view key, std::string value) {
    const FieldRow* row = naming_ == FieldNaming::Vorbis ? FindRow(kFields, key) : FindRow(kInfoFields, key);
    if (!row || value.empty()) return;
    std::string& slot = joined_[FrameIndex(row->frame)];
    switch (row->role) {
        case Role::Join:
            if (!slot.empty()) slot += '/';
            slot += value;
            break;
        case Role::First:
            if (slot.empty()) slot = std::move(value);
            break;
        case Role::Each:
            builder_.AddText(row->frame, value);
            break;
        case Role::Genre:
            genres_.push_back(std::move(value));
            break;
        case Role::TrackTotal:
            if (trackTotal_.empty()) trackTotal_ = std::move(value);
            break;
        case Role::DiscTotal:
            if (discTotal_.empty()) discTotal_ = std::move(value);
            break;
    }
}

void FieldImporter::Finish() {
    if (!genres_.empty()) joined_[FrameIndex(F::ContentType)] = ContentTypeFromValues(genres_);
    AppendTotal(joined_[FrameIndex(F::TrackNum)], trackTotal_);
    AppendTotal(joined_[FrameIndex(F::PartInSet)], discTotal_);
    for (std::size_t i = 0; i < kFrameCount; ++i) builder_.AddText(static_cast<FrameId>(i), joined_[i]);
}

void ImportXiph(const TagLib::Ogg::XiphComment& comment, TagBuilder& builder) {
    FieldImporter importer(builder, FieldNaming::Vorbis);
    for (const auto& [key, values] : comment.fieldListMap()) {
        const std::string name = Utf8(key);
        for (const TagLib::String& value : values) importer.Take(name, Utf8(value));
    }
    importer.Finish();
}

void ImportApe(const TagLib::APE::Tag& tag, TagBuilder& builder) {
    FieldImporter importer(builder, FieldNaming::Vorbis);
    for (const auto& [key, item] : tag.itemListMap()) {
        const std::string name = Utf8(key);
        if (item.type() == TagLib::APE::Item::Binary) {
            // Cover art items hold a file name, a NUL and the picture.
            const bool front = EqualsIgnoreCase(name, "COVER ART (FRONT)");
            if (!front && !EqualsIgnoreCase(name, "COVER ART (BACK)")) continue;
            const TagLib::ByteVector bytes = item.binaryData();
            const std::string_view all = BytesOf(bytes);
            const std::size_t nul = all.find('\0');
            FrameView picture;
            picture.id = FrameId::Picture;
            picture.pictureType = front ? 3 : 4;
            picture.description = all.substr(0, nul);
            if (nul != std::string_view::npos) picture.data = all.substr(nul + 1);
            picture.dataSize = static_cast<std::uint32_t>(picture.data.size());
            builder.Add(picture);
            continue;
        }
        for (const TagLib::String& value : item.values()) importer.Take(name, Utf8(value));
    }
    importer.Finish();
}

void ImportRiffInfo(const TagLib::RIFF::Info::Tag& tag, TagBuilder& builder) {
    FieldImporter importer(builder, FieldNaming::RiffInfo);
    for (const auto& [key, value] : tag.fieldListMap()) importer.Take(BytesOf(key), Utf8(value));
    importer.Finish();
}

void ImportPictures(const TagLib::List<TagLib::FLAC::Picture*>& pictures, TagBuilder& builder) {
    for (const TagLib::FLAC::Picture* picture : pictures) {
        if (!picture) continue;
        const std::string mime = Utf8(picture->mimeType());
        const std::string description = Utf8(picture->description());
        const TagLib::ByteVector bytes = picture->data();
        FrameView view;
        view.id = FrameId::Picture;
        view.mimeType = mime;
        view.description = description;
        view.pictureType = static_cast<std::uint8_t>(picture->type());
        view.data = BytesOf(bytes);
        view.dataSize = bytes.size();
        builder.Add(view);
    }
}

}  // namespace verdin
