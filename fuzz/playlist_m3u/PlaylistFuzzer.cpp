// The playlist file fuzzers, this file built once per format (playlist_m3u, playlist_pls,
// playlist_vdp): arbitrary bytes become a playlist file in a private directory that also
// holds a few tracks and playlists the bytes may name. The file is loaded with retrieval
// skipped, saved in its own format over itself and loaded again: the second load must hold
// the same items (kinds, names, expressions). For PLS and .vdp, the indexed key reader must
// also read what the profile reader reads. Anything else aborts.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/files/IniSectionIndex.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "settings/IniProfile.h"
#include "settings/Settings.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace verdin::fuzz {

// Made once per process and removed when it exits normally (a crash leaves it to look at).
const std::string& FixtureDirectory() {
    static const std::string directory = [] {
        std::string pattern = std::string(std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp") + "/verdin-playlist-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) std::abort();
        const std::pair<const char*, const char*> files[] = {
            {"a.mp3", ""}, {"B.wav", ""}, {"sub/c.mp3", ""}, {"Mixed Case/Track.MP3", ""}, {" padded .ogg", ""},
            {"inner.vdp", "[Entries]\nEntry1=a.mp3\nEntry2=;GENRE = \"Rock\"\nNumberOfEntries=2\n"},
            {"sub/back.m3u", "../list.m3u\n../list.pls\n../list.vdp\n../a.mp3\n"},
            {"x.pls", "[playlist]\nFile1=sub/c.mp3\nFile2=inner.vdp\nNumberOfEntries=2\n"},
        };
        for (const auto& [name, text] : files) {
            std::filesystem::create_directories(std::filesystem::path(pattern + "/" + name).parent_path());
            std::ofstream(pattern + "/" + name, std::ios::binary) << text;
        }
        return pattern + "/";
    }();
    static const int cleanup = std::atexit([] { std::filesystem::remove_all(directory); });  // after it is made
    (void)cleanup;
    return directory;
}

void CheckIniAgreement(std::string_view text, std::string_view section, std::string_view prefix) {
    const IniProfile profile = IniProfile::Parse(text);
    const IniSectionIndex index = IniSectionIndex::Parse(text, section);
    const int count = profile.GetInt(section, "numberofentries", 0);
    if (index.GetInt("numberofentries", 0) != count) std::abort();
    std::vector<std::string_view> present;
    for (int i = 1; i <= count && i <= 1000; ++i) {
        const std::string key = std::string(prefix) + std::to_string(i);
        const std::string* value = index.Find(key);
        if ((value ? *value : "\x01missing") != profile.GetString(section, key, "\x01missing", std::string::npos)) std::abort();
        if (value) present.push_back(*value);
    }
    if (count <= 1000 && index.NumberedValues(prefix, count) != present) std::abort();
}

// Loads the file into a fresh tree, where it must be one nested playlist without unsaved
// changes; its items as (kind, full name or expression).
std::vector<std::pair<ItemKind, std::string>> Load(const std::string& file, Playlist& main) {
    static Settings settings = [] {
        Settings s;
        s.skipInfoForAnyFile = 1;
        return s;
    }();
    static InputModuleList modules;
    if (!LoadItem(main, file, LoadContext{settings, modules}) || main.ItemCount() != 1 || main.ItemAt(0)->Kind() != ItemKind::kPlaylist) std::abort();
    const auto& nested = static_cast<const Playlist&>(*main.ItemAt(0));
    if (nested.Modified() || nested.FileName() != file || nested.RowCount() < int(nested.ItemCount())) std::abort();
    std::vector<std::pair<ItemKind, std::string>> items;
    for (size_t i = 0; i < nested.ItemCount(); ++i) {
        const PlaylistItem& item = *nested.ItemAt(i);
        items.emplace_back(item.Kind(), item.Kind() == ItemKind::kRandomEntry ? static_cast<const RandomEntry&>(item).Expression()
                                                                               : item.Path() + item.Body() + item.Extension());
    }
    return items;
}

}  // namespace verdin::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace verdin;
    constexpr PlaylistFormat kFormat = PlaylistFormat::PLAYLIST_FORMAT;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (kFormat == PlaylistFormat::kPls) fuzz::CheckIniAgreement(bytes, "playlist", "file");
    if (kFormat == PlaylistFormat::kVdp) fuzz::CheckIniAgreement(bytes, "entries", "entry");
    const std::string file = fuzz::FixtureDirectory() + "list" + PLAYLIST_EXTENSION;
    if (!(std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes)) std::abort();
    Playlist first, second;
    const auto loaded = fuzz::Load(file, first);
    if (!SavePlaylist(static_cast<Playlist&>(*first.ItemAt(0)), file, kFormat) ||
        fuzz::Load(file, second) != loaded)
        std::abort();
    return 0;
}
