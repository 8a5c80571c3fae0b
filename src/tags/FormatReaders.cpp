#include "tags/FormatReaders.h"

#include "tags/FieldImport.h"
#include "tags/Id3v1Import.h"
#include "tags/Id3v2Import.h"
#include "tags/PlainTaggedFile.h"
#include "tags/TaglibText.h"

#include <taglib/aifffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2header.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>

#include <array>

namespace verdin {
namespace {

TagVersion Id3v2Version(const TagLib::ID3v2::Tag& tag) {
    const TagLib::ID3v2::Header* header = tag.header();
    return TagVersion{2, static_cast<std::uint8_t>(header->majorVersion()),
                      static_cast<std::uint8_t>(header->revisionNumber())};
}

void TakeId3v2(const TagLib::ID3v2::Tag* tag, TagBuilder& b, FormatReadResult& result) {
    // TagLib reports a tag wherever it saw "ID3"; one whose header did not even parse
    // (size 0, no frames) is no tag.
    if (!tag || !tag->header() || (tag->header()->tagSize() == 0 && tag->frameList().isEmpty())) return;
    b.BeginSource(kSourceId3v2);
    ImportId3v2(*tag, b);
    if (!result.version.found()) result.version = Id3v2Version(*tag);
}

void TakeId3v1(const TagLib::ID3v1::Tag* tag, TagBuilder& b, FormatReadResult& result) {
    if (!tag) return;
    b.BeginSource(kSourceId3v1);
    const TagVersion version = ImportId3v1(*tag, b);
    if (!result.version.found()) result.version = version;
}

void TakeApe(const TagLib::APE::Tag* tag, TagBuilder& b) {
    if (!tag) return;
    b.BeginSource(kSourceApe);
    ImportApe(*tag, b);
}

void TakeXiph(TagLib::Ogg::XiphComment* comment, TagBuilder& b) {
    if (!comment) return;
    b.BeginSource(kSourceXiph);
    ImportXiph(*comment, b);
    ImportPictures(comment->pictureList(), b);
}

std::string Invalid(TagFileKind kind) { return "Not a valid " + std::string(TagFileKindName(kind)) + " file"; }

void ReadPlain(DescriptorStream& stream, bool leadingTag, TagBuilder& b, FormatReadResult& r) {
    PlainTaggedFile file(&stream, leadingTag);
    TakeId3v2(file.id3v2Tag(), b, r);
    TakeApe(file.apeTag(), b);
    TakeId3v1(file.id3v1Tag(), b, r);
}

void ReadMpeg(DescriptorStream& stream, bool, TagBuilder& b, FormatReadResult& r) {
    TagLib::MPEG::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    if (!file.isValid()) {
        r.error = Invalid(TagFileKind::Mpeg);
        return;
    }
    if (file.hasID3v2Tag()) TakeId3v2(file.ID3v2Tag(), b, r);
    if (file.hasAPETag()) TakeApe(file.APETag(), b);
    if (file.hasID3v1Tag()) TakeId3v1(file.ID3v1Tag(), b, r);
}

void ReadFlac(DescriptorStream& stream, bool, TagBuilder& b, FormatReadResult& r) {
    TagLib::FLAC::File file(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
    if (!file.isValid()) {
        r.error = Invalid(TagFileKind::Flac);
        return;
    }
    // The Vorbis comment is FLAC's own tag; ID3 tags on FLAC files are leftovers.
    if (file.hasXiphComment()) {
        b.BeginSource(kSourceXiph);
        ImportXiph(*file.xiphComment(), b);
    }
    ImportPictures(file.pictureList(), b);
    if (file.hasID3v2Tag()) TakeId3v2(file.ID3v2Tag(), b, r);
    if (file.hasID3v1Tag()) TakeId3v1(file.ID3v1Tag(), b, r);
}

// An Ogg stream's first packet starts 28 bytes into the file (after a page header
// with one segment) and names the codec.
void ReadOgg(DescriptorStream& stream, bool, TagBuilder& b, FormatReadResult& r) {
    const TagLib::ByteVector codec = stream.ReadAt(28, 8);
    stream.seek(0);
    auto read = [&](auto& file) {
        if (!file.isValid()) r.error = Invalid(TagFileKind::Ogg);
        else TakeXiph(file.tag(), b);
    };
    if (codec.startsWith("OpusHead")) {
        TagLib::Ogg::Opus::File file(&stream, false);
        read(file);
    } else if (codec.startsWith("\x7F" "FLAC")) {
        TagLib::Ogg::FLAC::File file(&stream, false);
        read(file);
    } else {
        TagLib::Ogg::Vorbis::File file(&stream, false);
        read(file);
    }
}

// TagLib's RIFF reader accepts files that are no RIFF files at all when it is not asked
// for audio properties; the form type is checked here.
bool HasForm(DescriptorStream& stream, std::string_view container, std::initializer_list<std::string_view> forms) {
    const TagLib::ByteVector head = stream.ReadAt(0, 12);
    if (head.size() < 12 || BytesOf(head.mid(0, 4)) != container) return false;
    const TagLib::ByteVector form = head.mid(8, 4);
    for (std::string_view f : forms)
        if (BytesOf(form) == f) return true;
    return false;
}

void ReadWav(DescriptorStream& stream, bool, TagBuilder& b, FormatReadResult& r) {
    if (!HasForm(stream, "RIFF", {"WAVE"}) && !HasForm(stream, "RF64", {"WAVE"})) {
        r.error = Invalid(TagFileKind::Wav);
        return;
    }
    TagLib::RIFF::WAV::File file(&stream, false);
    if (!file.isValid()) {
        r.error = Invalid(TagFileKind::Wav);
        return;
    }
    if (file.hasID3v2Tag()) TakeId3v2(file.ID3v2Tag(), b, r);
    if (file.hasInfoTag()) {
        b.BeginSource(kSourceRiffInfo);
        ImportRiffInfo(*file.InfoTag(), b);
    }
}

void ReadAiff(DescriptorStream& stream, bool, TagBuilder& b, FormatReadResult& r) {
    TagLib::RIFF::AIFF::File file(&stream, false);
    if (!HasForm(stream, "FORM", {"AIFF", "AIFC"}) || !file.isValid()) {
        r.error = Invalid(TagFileKind::Aiff);
        return;
    }
    if (file.hasID3v2Tag()) TakeId3v2(file.tag(), b, r);
}

using Reader = void (*)(DescriptorStream&, bool, TagBuilder&, FormatReadResult&);

// Indexed by TagFileKind.
constexpr std::array<Reader, kTagFileKindCount> kReaders{ReadPlain, ReadMpeg, ReadFlac, ReadOgg, ReadWav, ReadAiff};

}  // namespace

FormatReadResult ReadFormatTags(TagFileKind kind, DescriptorStream& stream, bool leadingTag, TagBuilder& builder) {
    FormatReadResult result;
    const auto index = static_cast<std::size_t>(kind);
    kReaders[index < kReaders.size() ? index : 0](stream, leadingTag, builder, result);
    return result;
}

}  // namespace verdin
