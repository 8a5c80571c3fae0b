#include "tags/Id3v2Import.h"

#include "tags/GenreTable.h"
#include "tags/TaglibText.h"

#include <taglib/attachedpictureframe.h>
#include <taglib/commentsframe.h>
#include <taglib/generalencapsulatedobjectframe.h>
#include <taglib/popularimeterframe.h>
#include <taglib/textidentificationframe.h>
#include <taglib/uniquefileidentifierframe.h>
#include <taglib/unknownframe.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <taglib/urllinkframe.h>

#include <array>
#include <cstdint>
#include <vector>

namespace verdin {
namespace {

using F = FrameId;
namespace Id3 = TagLib::ID3v2;

struct Id3v2Row {
    std::string_view frameId;
    FrameId frame;
};

// ID3v2.3 identifiers with the 2.4 ones that replaced them, and the 2.2 identifiers
// TagLib leaves unconverted.
constexpr std::array<Id3v2Row, 58> kId3v2Frames{{
    {"TOAL", F::OrigAlbum},      {"TPUB", F::Publisher},     {"TENC", F::EncodedBy},
    {"TSSE", F::EncoderSettings}, {"TOFN", F::OrigFileName},  {"TLAN", F::Language},
    {"TPOS", F::PartInSet},      {"TDAT", F::Date},          {"TDA", F::Date},
    {"TIME", F::Time},           {"TIM", F::Time},           {"TRDA", F::RecordingDates},
    {"TMED", F::MediaType},      {"TFLT", F::FileType},      {"TRSN", F::NetRadioStation},
    {"TRSO", F::NetRadioOwner},  {"TEXT", F::Lyricist},      {"TOPE", F::OrigArtist},
    {"TOLY", F::OrigLyricist},   {"TIT3", F::Subtitle},      {"TPE4", F::MixArtist},
    {"TXXX", F::UserText},       {"TIT1", F::ContentGroup},  {"TIT2", F::Title},
    {"TPE1", F::LeadArtist},     {"TPE2", F::Band},          {"TALB", F::Album},
    {"TYER", F::Year},           {"TDRC", F::Year},          {"TPE3", F::Conductor},
    {"TCOM", F::Composer},       {"TCOP", F::Copyright},     {"TCON", F::ContentType},
    {"TRCK", F::TrackNum},       {"COMM", F::Comment},       {"WOAF", F::WwwAudioFile},
    {"WOAR", F::WwwArtist},      {"WOAS", F::WwwAudioSource}, {"WCOM", F::WwwCommercialInfo},
    {"WCOP", F::WwwCopyright},   {"WPUB", F::WwwPublisher},  {"WPAY", F::WwwPayment},
    {"WORS", F::WwwRadioPage},   {"WXXX", F::WwwUser},       {"IPLS", F::InvolvedPeople},
    {"TIPL", F::InvolvedPeople}, {"TMCL", F::InvolvedPeople}, {"USLT", F::UnsyncedLyrics},
    {"APIC", F::Picture},        {"PIC", F::Picture},        {"GEOB", F::GeneralObject},
    {"UFID", F::UniqueFileId},   {"PCNT", F::PlayCounter},   {"POPM", F::Popularimeter},
    {"GRID", F::GroupingReg},    {"ENCR", F::CryptoReg},     {"TXT", F::Lyricist},
    {"TRD", F::RecordingDates},
}};

// An identifier of 3 or 4 bytes as one number, so that a lookup compares numbers rather
// than texts: a scan of a library looks up every frame of every file. The top byte tells
// the lengths apart (0 for 3 bytes, the first byte for 4, never 0 in a 4-byte key); 0
// stands for no identifier at all.
constexpr uint32_t PackedFrameId(std::string_view id) {
    if (id.size() < 3 || id.size() > 4 || (id.size() == 4 && id[0] == '\0')) return 0;
    uint32_t key = 0;
    for (char c : id) key = key << 8 | static_cast<unsigned char>(c);
    return key;
}

constexpr std::array<uint32_t, kId3v2Frames.size()> kId3v2Keys = [] {
    std::array<uint32_t, kId3v2Frames.size()> keys{};
    for (size_t i = 0; i < keys.size(); ++i) keys[i] = PackedFrameId(kId3v2Frames[i].frameId);
    return keys;
}();
static_assert([] {
    for (uint32_t key : kId3v2Keys)
        if (key == 0) return false;
    return true;
}());

bool IsPrintable(std::string_view bytes) {
    for (char c : bytes)
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7E) return false;
    return true;
}

// A language code as stored: up to three bytes, cut at a NUL.
std::string_view LanguageOf(const TagLib::ByteVector& bytes) {
    std::string_view code = BytesOf(bytes).substr(0, 3);
    const std::size_t nul = code.find('\0');
    return nul == std::string_view::npos ? code : code.substr(0, nul);
}

// Text of a frame TagLib keeps as raw bytes: an encoding byte, then the text.
std::string EncodedText(const TagLib::ByteVector& data) {
    if (data.isEmpty()) return {};
    const auto encoding = static_cast<unsigned char>(data[0]);
    const auto type = encoding <= TagLib::String::UTF8 ? static_cast<TagLib::String::Type>(encoding)
                                                       : TagLib::String::Latin1;
    std::string text = Utf8(TagLib::String(data.mid(1), type));
    const std::size_t nul = text.find('\0');
    if (nul != std::string::npos) text.resize(nul);
    return text;
}

std::string Decimal(unsigned long long value) { return std::to_string(value); }

void ImportText(const Id3::TextIdentificationFrame& frame, FrameId id, unsigned major, TagBuilder& b) {
    const TagLib::StringList values = frame.fieldList();
    if (id == F::ContentType) {
        std::vector<std::string> list;
        for (const TagLib::String& value : values) list.push_back(Utf8(value));
        b.AddText(id, ContentTypeFromValues(list));
        return;
    }
    if (id == F::InvolvedPeople) {
        std::string people;
        for (auto it = values.begin(); it != values.end(); ++it) {
            if (!people.empty()) people += ", ";
            people += Utf8(*it);
            if (++it == values.end()) break;
            people += ": ";
            people += Utf8(*it);
        }
        b.AddText(id, people);
        return;
    }
    std::string text = JoinUtf8(values, "/");
    if (id == F::Year && major < 4 && frame.frameID() == "TDRC") {
        const std::size_t dash = text.find('-');
        if (dash != std::string::npos) text.resize(dash);
    }
    b.AddText(id, text);
}

void ImportUnknown(const Id3::UnknownFrame& frame, FrameId id, TagBuilder& b) {
    const TagLib::ByteVector data = frame.data();
    switch (id) {
        case F::Date:
        case F::Time:
        case F::RecordingDates:
            b.AddText(id, EncodedText(data));
            return;
        case F::PlayCounter: {
            unsigned long long count = 0;
            for (unsigned i = 0; i < data.size(); ++i) {
                if (count > (~0ULL >> 8)) break;  // longer than 64 bits: keep what fits
                count = (count << 8) | static_cast<unsigned char>(data[i]);
            }
            if (!data.isEmpty()) b.AddText(id, Decimal(count));
            return;
        }
        case F::GroupingReg:
        case F::CryptoReg: {
            // Owner identifier (a NUL-terminated address), then the registration data.
            const std::string_view bytes = BytesOf(data);
            const std::size_t nul = bytes.find('\0');
            FrameView view;
            view.id = id;
            view.text = bytes.substr(0, nul);
            if (nul != std::string_view::npos) view.data = bytes.substr(nul + 1);
            view.dataSize = static_cast<std::uint32_t>(view.data.size());
            b.Add(view);
            return;
        }
        default:
            return;  // an encrypted or unreadable frame of a known kind: nothing usable
    }
}

void ImportFrame(const Id3::Frame& frame, FrameId id, unsigned major, TagBuilder& b) {
    if (const auto* user = dynamic_cast<const Id3::UserTextIdentificationFrame*>(&frame)) {
        TagLib::StringList values = user->fieldList();
        if (!values.isEmpty()) values.erase(values.begin());  // the first field is the description
        const std::string description = Utf8(user->description());
        const std::string text = JoinUtf8(values, "/");
        FrameView view;
        view.id = id;
        view.description = description;
        view.text = text;
        b.Add(view);
    } else if (const auto* text = dynamic_cast<const Id3::TextIdentificationFrame*>(&frame)) {
        ImportText(*text, id, major, b);
    } else if (const auto* comment = dynamic_cast<const Id3::CommentsFrame*>(&frame)) {
        const std::string description = Utf8(comment->description());
        const std::string body = Utf8(comment->text());
        const TagLib::ByteVector language = comment->language();
        FrameView view;
        view.id = id;
        view.language = LanguageOf(language);
        view.description = description;
        view.text = body;
        b.Add(view);
    } else if (const auto* lyrics = dynamic_cast<const Id3::UnsynchronizedLyricsFrame*>(&frame)) {
        const std::string description = Utf8(lyrics->description());
        const std::string body = Utf8(lyrics->text());
        const TagLib::ByteVector language = lyrics->language();
        FrameView view;
        view.id = id;
        view.language = LanguageOf(language);
        view.description = description;
        view.text = body;
        b.Add(view);
    } else if (const auto* userUrl = dynamic_cast<const Id3::UserUrlLinkFrame*>(&frame)) {
        const std::string description = Utf8(userUrl->description());
        const std::string url = Utf8(userUrl->url());
        FrameView view;
        view.id = id;
        view.description = description;
        view.text = url;
        b.Add(view);
    } else if (const auto* url = dynamic_cast<const Id3::UrlLinkFrame*>(&frame)) {
        b.AddText(id, Utf8(url->url()));
    } else if (const auto* picture = dynamic_cast<const Id3::AttachedPictureFrame*>(&frame)) {
        const std::string mime = Utf8(picture->mimeType());
        const std::string description = Utf8(picture->description());
        const TagLib::ByteVector bytes = picture->picture();
        FrameView view;
        view.id = id;
        view.mimeType = mime;
        view.description = description;
        view.pictureType = static_cast<std::uint8_t>(picture->type());
        view.data = BytesOf(bytes);
        view.dataSize = bytes.size();
        b.Add(view);
    } else if (const auto* object = dynamic_cast<const Id3::GeneralEncapsulatedObjectFrame*>(&frame)) {
        const std::string mime = Utf8(object->mimeType());
        const std::string fileName = Utf8(object->fileName());
        const std::string description = Utf8(object->description());
        const TagLib::ByteVector bytes = object->object();
        FrameView view;
        view.id = id;
        view.mimeType = mime;
        view.fileName = fileName;
        view.description = description;
        view.data = BytesOf(bytes);
        view.dataSize = bytes.size();
        b.Add(view);
    } else if (const auto* ufid = dynamic_cast<const Id3::UniqueFileIdentifierFrame*>(&frame)) {
        const std::string owner = Utf8(ufid->owner());
        const TagLib::ByteVector identifier = ufid->identifier();
        FrameView view;
        view.id = id;
        view.description = owner;
        view.data = BytesOf(identifier);
        view.dataSize = identifier.size();
        if (IsPrintable(view.data)) view.text = view.data;
        b.Add(view);
    } else if (const auto* popm = dynamic_cast<const Id3::PopularimeterFrame*>(&frame)) {
        const std::string email = Utf8(popm->email());
        const std::string rating = Decimal(static_cast<unsigned>(popm->rating()));
        FrameView view;
        view.id = id;
        view.description = email;
        view.text = rating;
        b.Add(view);
    } else if (const auto* unknown = dynamic_cast<const Id3::UnknownFrame*>(&frame)) {
        ImportUnknown(*unknown, id, b);
    }
}

}  // namespace

std::optional<FrameId> FrameForId3v2(std::string_view frameId) {
    const uint32_t key = PackedFrameId(frameId);
    if (key == 0) return std::nullopt;
    for (size_t i = 0; i < kId3v2Keys.size(); ++i)
        if (kId3v2Keys[i] == key) return kId3v2Frames[i].frame;
    return std::nullopt;
}

void ImportId3v2(const TagLib::ID3v2::Tag& tag, TagBuilder& builder) {
    const unsigned major = tag.header() ? tag.header()->majorVersion() : 4;
    for (const Id3::Frame* frame : tag.frameList()) {
        if (!frame) continue;
        const auto id = FrameForId3v2(BytesOf(frame->frameID()));
        if (id) ImportFrame(*frame, *id, major, builder);
    }
}

}  // namespace verdin
