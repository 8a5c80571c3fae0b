#include "tags/TagWriter.h"

#include "tags/FileReplacement.h"
#include "tags/TagFileKind.h"

#include <taglib/aifffile.h>
#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/xiphcomment.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {
namespace {

// Each writable frame and the name TagLib's common property map gives it in every
// container (ID3v2 TIT2, Vorbis TITLE, APE Title, RIFF INAM...).
struct WritableRow {
    FrameId frame;
    const char* property;
};

constexpr std::array<WritableRow, 9> kWritable{{
    {FrameId::Title, "TITLE"},
    {FrameId::LeadArtist, "ARTIST"},
    {FrameId::Album, "ALBUM"},
    {FrameId::Band, "ALBUMARTIST"},
    {FrameId::Year, "DATE"},
    {FrameId::TrackNum, "TRACKNUMBER"},
    {FrameId::ContentType, "GENRE"},
    {FrameId::Composer, "COMPOSER"},
    {FrameId::Comment, "COMMENT"},
}};

constexpr std::array<FrameId, kWritable.size()> kWritableFrames = [] {
    std::array<FrameId, kWritable.size()> frames{};
    for (size_t i = 0; i < kWritable.size(); ++i) frames[i] = kWritable[i].frame;
    return frames;
}();

const char* PropertyOf(FrameId id) {
    for (const WritableRow& row : kWritable)
        if (row.frame == id) return row.property;
    return nullptr;
}

// Applies the edits to one tag container through its property map. Properties the edits
// do not name are handed back as they were read, so nothing else of the tag changes.
// The container's own type is used: TagLib::Tag's property functions are not virtual,
// and through the base class a container knows only the few fields every tag has.
template <typename Container>
void Edit(Container* tag, std::span<const FrameEdit> edits) {
    if (!tag) return;
    TagLib::PropertyMap properties = tag->properties();
    for (const FrameEdit& edit : edits) {
        const TagLib::String key(PropertyOf(edit.id));
        if (edit.text.empty()) {
            properties.erase(key);
        } else {
            properties.replace(key, TagLib::StringList(TagLib::String(edit.text, TagLib::String::UTF8)));
        }
    }
    tag->setProperties(properties);
}

// An existing ID3v2.4 tag stays 2.4; everything else is written as 2.3, which every
// player reads.
TagLib::ID3v2::Version VersionToWrite(const TagLib::ID3v2::Tag* tag, bool present) {
    if (present && tag && tag->header() && tag->header()->majorVersion() == 4) return TagLib::ID3v2::v4;
    return TagLib::ID3v2::v3;
}

struct Outcome {
    bool valid = false;
    bool saved = false;
};

Outcome WriteMpeg(const char* path, std::span<const FrameEdit> edits) {
    TagLib::MPEG::File file(path, false);
    // Read without audio properties, TagLib takes any file for MPEG audio; one without
    // a single MPEG frame is not, and gets no tag put in front of it.
    if (!file.isValid() || file.firstFrameOffset() < 0) return {};
    const auto version = VersionToWrite(file.ID3v2Tag(), file.hasID3v2Tag());
    Edit(file.ID3v2Tag(true), edits);
    if (file.hasID3v1Tag()) Edit(file.ID3v1Tag(), edits);
    if (file.hasAPETag()) Edit(file.APETag(), edits);
    return {true, file.save(TagLib::MPEG::File::AllTags, TagLib::File::StripNone, version, TagLib::File::DoNotDuplicate)};
}

Outcome WriteFlac(const char* path, std::span<const FrameEdit> edits) {
    TagLib::FLAC::File file(path, false);
    if (!file.isValid()) return {};
    Edit(file.xiphComment(true), edits);
    return {true, file.save()};
}

template <typename OggFile>
Outcome WriteOggFile(const char* path, std::span<const FrameEdit> edits) {
    OggFile file(path, false);
    if (!file.isValid()) return {};
    Edit(file.tag(), edits);
    return {true, file.save()};
}

// An Ogg stream's first packet starts 28 bytes into the file and names the codec.
Outcome WriteOgg(const char* path, std::span<const FrameEdit> edits) {
    char codec[8] = {};
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return {};
    const ssize_t got = ::pread(fd, codec, sizeof codec, 28);
    ::close(fd);
    if (got == static_cast<ssize_t>(sizeof codec) && std::memcmp(codec, "OpusHead", 8) == 0)
        return WriteOggFile<TagLib::Ogg::Opus::File>(path, edits);
    if (got >= 5 && std::memcmp(codec, "\x7F" "FLAC", 5) == 0) return WriteOggFile<TagLib::Ogg::FLAC::File>(path, edits);
    return WriteOggFile<TagLib::Ogg::Vorbis::File>(path, edits);
}

Outcome WriteWav(const char* path, std::span<const FrameEdit> edits) {
    TagLib::RIFF::WAV::File file(path, false);
    if (!file.isValid()) return {};
    const auto version = VersionToWrite(file.ID3v2Tag(), file.hasID3v2Tag());
    Edit(file.ID3v2Tag(), edits);
    if (file.hasInfoTag()) Edit(file.InfoTag(), edits);
    return {true, file.save(TagLib::RIFF::WAV::File::AllTags, TagLib::File::StripNone, version)};
}

Outcome WriteAiff(const char* path, std::span<const FrameEdit> edits) {
    TagLib::RIFF::AIFF::File file(path, false);
    if (!file.isValid()) return {};
    const auto version = VersionToWrite(file.tag(), file.hasID3v2Tag());
    Edit(file.tag(), edits);
    return {true, file.save(version)};
}

using Writer = Outcome (*)(const char*, std::span<const FrameEdit>);

// Indexed by TagFileKind; files of no known layout are not written.
constexpr std::array<Writer, kTagFileKindCount> kWriters{nullptr, WriteMpeg, WriteFlac, WriteOgg, WriteWav, WriteAiff};

// The file a path names, links followed; empty with error set when there is none.
std::string ResolvedPath(const std::string& path, std::string& error) {
    char resolved[PATH_MAX];
    if (!::realpath(path.c_str(), resolved)) {
        error = std::string("Cannot open the file: ") + std::strerror(errno);
        return {};
    }
    return resolved;
}

// Why the file may not be written, or empty.
std::string WritePermissionProblem(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) return std::string("Cannot open the file: ") + std::strerror(errno);
    if (!S_ISREG(info.st_mode)) return "Not a regular file";
    if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return "The file is read-only";
    if (::access(path.c_str(), W_OK) != 0) return std::string("The file cannot be written: ") + std::strerror(errno);
    return {};
}

}  // namespace

std::span<const FrameId> WritableFrames() { return kWritableFrames; }

bool IsWritableFrame(FrameId id) { return PropertyOf(id) != nullptr; }

bool CanWriteTags(const std::string& path) { return kWriters[static_cast<size_t>(TagFileKindFor(path))] != nullptr; }

std::string WriteTagFrames(const std::string& path, std::span<const FrameEdit> edits) {
    for (const FrameEdit& edit : edits)
        if (!IsWritableFrame(edit.id)) return "This frame cannot be edited";
    if (edits.empty()) return {};
    std::string error;
    const std::string target = ResolvedPath(path, error);
    if (target.empty()) return error;
    if (std::string problem = WritePermissionProblem(target); !problem.empty()) return problem;
    const TagFileKind kind = TagFileKindFor(target);
    const Writer writer = kWriters[static_cast<size_t>(kind)];
    if (!writer) return "Tags cannot be written to files of this type";

    FileReplacement replacement(target);
    if (!replacement.ok()) return replacement.error();
    Outcome outcome;
    try {
        outcome = writer(replacement.copyPath().c_str(), edits);
    } catch (const std::exception& e) {
        return std::string("The tag could not be written: ") + e.what();
    }
    if (!outcome.valid) return "Not a valid " + std::string(TagFileKindName(kind)) + " file";
    if (!outcome.saved) return "The tag could not be written";
    return replacement.Commit();
}

}  // namespace verdin
