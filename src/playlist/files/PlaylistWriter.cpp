#include "PlaylistWriter.h"

#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/files/EntryPath.h"
#include "settings/IniProfile.h"

#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Whether reading the value back would change it: the INI reader trims blanks around a
// value and takes the quotes off a value wholly in quotes.
bool ReaderWouldAlter(std::string_view value) {
    if (value.empty()) return false;
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    if (blank(value.front()) || blank(value.back())) return true;
    return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
}

// "<key><number>=<value>"; a value the reader would alter is put in quotes, which the
// reader takes off again, so every name survives the trip.
void AppendLine(std::string& out, std::string_view key, size_t number, std::string_view value) {
    out.append(key);
    out.append(std::to_string(number));
    out.push_back('=');
    const bool quote = ReaderWouldAlter(value);
    if (quote) out.push_back('"');
    out.append(value);
    if (quote) out.push_back('"');
    out.append(kLineEnd);
}

void AppendLine(std::string& out, std::string_view line) {
    out.append(line);
    out.append(kLineEnd);
}

// Where the bytes go: the file a symbolic link names rather than the link, so that
// replacing the file keeps the link.
std::string WriteTarget(const std::string& name) {
    struct stat st;
    if (::lstat(name.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return name;
    char resolved[PATH_MAX];
    return ::realpath(name.c_str(), resolved) ? std::string(resolved) : name;
}

// Whether the file could be opened for writing: a new file in a directory we may write
// to, or an existing file we may write to (not a directory).
bool MayCreate(const std::string& name) {
    struct stat st;
    if (::stat(name.c_str(), &st) == 0) return !S_ISDIR(st.st_mode) && ::access(name.c_str(), W_OK) == 0;
    const size_t slash = name.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : slash == 0 ? "/" : name.substr(0, slash);
    return ::access(directory.c_str(), W_OK) == 0;
}

}  // namespace

std::string PlaylistFileText(const Playlist& playlist, PlaylistFormat format) {
    if (!IsPlaylistFormat(format)) return {};
    const std::string directory = playlist.Path();
    std::string out;
    out.reserve(64 + playlist.ItemCount() * 64);
    if (format == PlaylistFormat::kPls) AppendLine(out, "[playlist]");
    if (format == PlaylistFormat::kVdp) {
        AppendLine(out, "[Verdin Advanced Playlist]");
        AppendLine(out, "Version=1.00");
        AppendLine(out, "[Entries]");
    }
    size_t written = 0;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        const bool random = item.Kind() == ItemKind::kRandomEntry;
        if (random && format != PlaylistFormat::kVdp) continue;  // no file form there
        ++written;
        switch (format) {
        case PlaylistFormat::kM3u:
            AppendLine(out, EntryText(item, directory));
            break;
        case PlaylistFormat::kPls:
            AppendLine(out, "File", written, EntryText(item, directory));
            break;
        case PlaylistFormat::kVdp:
            AppendLine(out, "Entry", written,
                       random ? ";" + static_cast<const RandomEntry&>(item).Expression() : EntryText(item, directory));
            break;
        }
    }
    if (format != PlaylistFormat::kM3u) AppendLine(out, "NumberOfEntries=" + std::to_string(written));
    return out;
}

bool SavePlaylist(Playlist& playlist, std::string_view fileName, PlaylistFormat format) {
    if (!IsPlaylistFormat(format)) return false;
    const std::string name = NameWithFormatExtension(fileName, format);
    if (name != playlist.FileName()) {
        if (Playlist* parent = playlist.Parent()) parent->SetModified(true);
        playlist.SetFileName(name);
    }
    playlist.SetModified(false);
    const std::string target = WriteTarget(name);
    if (!MayCreate(target)) return false;
    return WriteFileAtomically(target, PlaylistFileText(playlist, format));
}

}  // namespace verdin
