#pragma once
// The harness of the playlist file fuzzers (playlist_m3u, playlist_pls, playlist_vdp):
// arbitrary bytes become a playlist file in a private directory that also holds a few
// tracks and playlists the bytes may name. The file is loaded with retrieval skipped,
// saved in its own format over itself, and loaded again; the second load must hold the
// same items: kinds, names and expressions. For PLS and .vdp, the indexed key reader must
// also agree with the profile reader on the bytes. Anything else aborts.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/IniSectionIndex.h"
#include "playlist/files/PlaylistWriter.h"
#include "settings/IniProfile.h"
#include "settings/Settings.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace verdin::fuzz {

// Made once per process and removed when it exits normally (a crash leaves it to look at).
inline const std::string& FixtureDirectory() {
    static const std::string directory = [] {
        const char* base = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
        std::string pattern = std::string(base) + "/verdin-playlist-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) std::abort();
        const std::filesystem::path dir(pattern);
        const auto write = [&](const std::string& name, const std::string& text) {
            std::filesystem::create_directories((dir / name).parent_path());
            std::ofstream(dir / name, std::ios::binary) << text;
        };
        write("a.mp3", "");
        write("B.wav", "");
        write("sub/c.mp3", "");
        write("Mixed Case/Track.MP3", "");
        write(" padded .ogg", "");
        write("inner.vdp", "[Entries]\nEntry1=a.mp3\nEntry2=;GENRE = \"Rock\"\nNumberOfEntries=2\n");
        write("sub/back.m3u", "../list.m3u\n../list.pls\n../list.vdp\n../a.mp3\n");
        write("x.pls", "[playlist]\nFile1=sub/c.mp3\nFile2=inner.vdp\nNumberOfEntries=2\n");
        return dir.string() + "/";
    }();
    static const bool cleanup = [] { return std::atexit([] { std::filesystem::remove_all(directory); }) == 0; }();
    (void)cleanup;
    return directory;
}

// The indexed section reader must read exactly what the profile reader reads.
inline void CheckIniAgreement(std::string_view text, std::string_view section, std::string_view prefix) {
    const IniProfile profile = IniProfile::Parse(text);
    const IniSectionIndex index = IniSectionIndex::Parse(text, section);
    const int count = profile.GetInt(section, "numberofentries", 0);
    if (index.GetInt("numberofentries", 0) != count) std::abort();
    std::vector<std::string_view> present;
    for (int i = 1; i <= count && i <= 1000; ++i) {
        const std::string key = std::string(prefix) + std::to_string(i);
        const std::string* value = index.Find(key);
        const std::string expected = profile.GetString(section, key, "\x01missing", std::string::npos);
        if ((value ? *value : std::string("\x01missing")) != expected) std::abort();
        if (value) present.push_back(*value);
    }
    if (count <= 1000 && index.NumberedValues(prefix, count) != present) std::abort();
}

struct ItemFacts {
    ItemKind kind;
    std::string text;  // full name, or a random entry's expression
    bool operator==(const ItemFacts&) const = default;
};

inline std::vector<ItemFacts> Facts(const Playlist& playlist) {
    std::vector<ItemFacts> facts;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (item.Kind() == ItemKind::kRandomEntry)
            facts.push_back({item.Kind(), static_cast<const RandomEntry&>(item).Expression()});
        else
            facts.push_back({item.Kind(), item.Path() + item.Body() + item.Extension()});
    }
    return facts;
}

// Loads the file into a fresh tree; the file must load as one nested playlist without
// unsaved changes.
inline std::vector<ItemFacts> LoadFacts(const std::string& file, const LoadContext& context, Playlist& main) {
    if (!LoadItem(main, file, context) || main.ItemCount() != 1) std::abort();
    const PlaylistItem& item = *main.ItemAt(0);
    if (item.Kind() != ItemKind::kPlaylist) std::abort();
    const auto& nested = static_cast<const Playlist&>(item);
    if (nested.Modified() || nested.FileName() != file) std::abort();
    if (nested.RowCount() < static_cast<int>(nested.ItemCount())) std::abort();
    return Facts(nested);
}

inline int RoundTrip(const uint8_t* data, size_t size, const char* extension, PlaylistFormat format) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (format == PlaylistFormat::kPls) CheckIniAgreement(bytes, "playlist", "file");
    if (format == PlaylistFormat::kVdp) CheckIniAgreement(bytes, "entries", "entry");
    static Settings settings = [] {
        Settings s;
        s.skipInfoForAnyFile = 1;
        return s;
    }();
    static InputModuleList modules;
    const LoadContext context{settings, modules};
    const std::string file = FixtureDirectory() + "list" + extension;
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        if (!out) std::abort();
    }
    Playlist first;
    const std::vector<ItemFacts> loaded = LoadFacts(file, context, first);
    if (!SavePlaylist(static_cast<Playlist&>(*first.ItemAt(0)), file, format)) std::abort();
    Playlist second;
    const std::vector<ItemFacts> reloaded = LoadFacts(file, context, second);
    if (reloaded != loaded) {
        std::fprintf(stderr, "round trip changed %zu items into %zu\n", loaded.size(), reloaded.size());
        for (size_t i = 0; i < loaded.size() || i < reloaded.size(); ++i)
            std::fprintf(stderr, "  [%zu] %s  |  %s\n", i, i < loaded.size() ? loaded[i].text.c_str() : "-",
                         i < reloaded.size() ? reloaded[i].text.c_str() : "-");
        std::abort();
    }
    return 0;
}

}  // namespace verdin::fuzz
