#include "PlaylistLoader.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/TrackItem.h"
#include "playlist/files/CueTrackPath.h"
#include "playlist/files/EntryPath.h"
#include "playlist/files/FileLookup.h"
#include "playlist/files/IniSectionIndex.h"
#include "playlist/files/M3uReader.h"
#include "playlist/files/RetrievalRule.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace verdin {

namespace {

// What each playlist file extension is read as.
struct PlaylistFileKind {
    std::string_view extension;
    bool m3u;                    // lines (else an INI section of numbered keys)
    bool utf8;                   // M3U: skip a byte-order mark
    std::string_view section;    // INI: the section
    std::string_view keyPrefix;  // INI: the numbered keys
    bool randomEntries;          // INI: ";expression" values are random entries
};

constexpr std::array<PlaylistFileKind, 4> kPlaylistFileKinds{{
    {".m3u", true, false, {}, {}, false},
    {".m3u8", true, true, {}, {}, false},
    {".pls", false, false, "playlist", "file", false},
    {".vdp", false, false, "entries", "entry", true},
}};

// An INI value is read into a buffer of the same size as an M3U line.
constexpr size_t kIniValueLength = kM3uLineLength;

const PlaylistFileKind* KindOf(std::string_view extension) {
    for (const PlaylistFileKind& kind : kPlaylistFileKinds)
        if (EqualsIgnoreCase(kind.extension, extension)) return &kind;
    return nullptr;
}

// Which file a playlist is, however its path is spelled.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

// The identity of a regular file; nothing for anything else (a directory, a FIFO that
// would block the reading, a missing file).
std::optional<FileIdentity> RegularFileIdentity(const std::string& path) {
    struct stat st;
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    return FileIdentity{st.st_dev, st.st_ino};
}

bool ReadWholeFile(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

// A value as the fixed buffer of a C string held it.
std::string_view AsBufferValue(std::string_view value) {
    value = value.substr(0, value.find('\0'));
    return value.substr(0, kIniValueLength);
}

void MergeSlashes(std::string& path) {
    path.erase(std::unique(path.begin(), path.end(), [](char a, char b) { return a == '/' && b == '/'; }), path.end());
}

class Loader {
public:
    explicit Loader(const LoadContext& context) : context_(context) {}

    bool Load(Playlist& parent, std::string_view path) {
        if (path.find("://") != std::string_view::npos) {
            AppendTrack(parent, path);
            return true;
        }
        return LoadLocal(parent, std::string(path));
    }

    bool LoadLocal(Playlist& parent, std::string path) {
        // Repeated slashes are one on this system, and merging them keeps names that would
        // be misread when written back: "\\x.mp3" in a playlist names ".../x.mp3", not
        // ".../" + "/x.mp3" (which would be written as the absolute "/x.mp3"), and
        // "http:\\\\x" names ".../http:/x", not an address.
        MergeSlashes(path);
        if (const std::optional<CueTrackName> cue = SplitCueTrackPath(path)) {
            const std::optional<std::string> sheet = lookup_.Find(cue->sheet);
            if (!sheet) return false;
            AppendTrack(parent, CueTrackPath(*sheet, cue->number));
            return true;
        }
        const std::optional<std::string> found = lookup_.Find(path);
        if (!found) return false;
        const TrackName name = SplitTrackName(*found);
        if (IsCueSheetName(*found)) {
            AppendCueTracks(parent, *found);
            return true;
        }
        const PlaylistFileKind* kind = KindOf(name.extension);
        if (!kind) {
            AppendTrack(parent, *found);
            return true;
        }
        const std::optional<FileIdentity> identity = RegularFileIdentity(*found);
        if (identity && !MayRead(*identity)) return false;
        auto nested = std::make_unique<Playlist>(*found);
        Playlist& playlist = *nested;
        parent.AppendItem(std::move(nested));
        if (identity) ReadEntries(playlist, *found, name.path, *kind, *identity);
        playlist.SetModified(false);
        return true;
    }

    bool LoadInto(Playlist& playlist, const std::string& fileName) {
        const TrackName name = SplitTrackName(fileName);
        const PlaylistFileKind* kind = KindOf(name.extension);
        const std::optional<FileIdentity> identity = RegularFileIdentity(fileName);
        if (!kind || !identity) return false;
        if (!ReadEntries(playlist, fileName, name.path, *kind, *identity)) return false;
        playlist.SetModified(false);
        return true;
    }

private:
    bool TakeEntry() { return entries_ < kMaxPlaylistEntries && ++entries_ > 0; }

    bool MayRead(const FileIdentity& identity) const {
        if (chain_.size() >= static_cast<size_t>(kMaxPlaylistNesting) || reads_ >= kMaxPlaylistReads) return false;
        return std::find(chain_.begin(), chain_.end(), identity) == chain_.end();
    }

    void AppendTrack(Playlist& parent, std::string_view fullName) {
        auto track = std::make_unique<TrackRecord>(fullName);
        RetrieveOnAdd(*track, context_.settings, context_.modules);
        parent.AppendItem(std::make_unique<TrackItem>(std::move(track)));
    }

    // A cue sheet stands for its audio tracks, each an entry of its own. A sheet that cannot
    // be read still gets one entry (its first track's name), so playing it says why.
    void AppendCueTracks(Playlist& parent, const std::string& sheet) {
        const CueSheetParse parse = ReadCueSheet(sheet);
        if (!parse.ok) {
            AppendTrack(parent, CueTrackPath(sheet, 1));
            return;
        }
        for (const CueTrack& track : parse.sheet.tracks)
            if (track.audio) AppendTrack(parent, CueTrackPath(sheet, track.number));
    }

    // Whether an entry is an address is decided on the entry as written.
    void LoadEntry(Playlist& playlist, std::string_view entry, std::string_view directory) {
        if (entry.empty()) return;
        if (IsAbsoluteEntry(entry)) Load(playlist, entry);
        else LoadLocal(playlist, EntryToPath(entry, directory));
    }

    // Reads the file's entries into playlist with the file on the chain of nesting.
    bool ReadEntries(Playlist& playlist, const std::string& fileName, std::string_view directory,
                     const PlaylistFileKind& kind, const FileIdentity& identity) {
        chain_.push_back(identity);
        ++reads_;
        const bool read = kind.m3u ? ReadM3u(playlist, fileName, directory, kind)
                                   : ReadIni(playlist, fileName, directory, kind);
        chain_.pop_back();
        return read;
    }

    bool ReadM3u(Playlist& playlist, const std::string& fileName, std::string_view directory,
                 const PlaylistFileKind& kind) {
        std::ifstream in(fileName, std::ios::binary);
        if (!in) return false;
        M3uReader reader(in, kind.utf8);
        while (const std::optional<std::string> entry = reader.Next()) {
            // Extended M3U's "#EXTINF:...,Title" may hold an address; it is no entry.
            if (!entry->empty() && entry->front() == '#' && entry->find("://") != std::string::npos) continue;
            if (!TakeEntry()) break;
            LoadEntry(playlist, *entry, directory);
        }
        return true;
    }

    bool ReadIni(Playlist& playlist, const std::string& fileName, std::string_view directory,
                 const PlaylistFileKind& kind) {
        std::string text;
        if (!ReadWholeFile(fileName, text)) return false;
        const IniSectionIndex section = IniSectionIndex::Parse(text, kind.section);
        const int count = section.GetInt("numberofentries", 0);
        // Keys missing between 1 and the count would be read as empty texts, which name
        // nothing: only the keys present are visited.
        for (const std::string_view stored : section.NumberedValues(kind.keyPrefix, count)) {
            const std::string_view value = AsBufferValue(stored);
            if (!TakeEntry()) break;
            if (kind.randomEntries && !value.empty() && value.front() == ';')
                playlist.AppendItem(std::make_unique<RandomEntry>(value.substr(1)));
            else
                LoadEntry(playlist, value, directory);
        }
        return true;
    }

    const LoadContext& context_;
    FileLookup lookup_;
    std::vector<FileIdentity> chain_;  // the playlist files being read, outermost first
    int reads_ = 0;                    // playlist files read so far
    int entries_ = 0;                  // entries of playlist files taken so far
};

}  // namespace

bool LoadItem(Playlist& parent, std::string_view path, const LoadContext& context) {
    return Loader(context).Load(parent, path);
}

bool IsPlaylistFileName(std::string_view path) { return KindOf(SplitTrackName(path).extension) != nullptr; }

bool LoadPlaylistEntries(Playlist& playlist, const std::string& fileName, const LoadContext& context) {
    return Loader(context).LoadInto(playlist, fileName);
}

}  // namespace verdin
