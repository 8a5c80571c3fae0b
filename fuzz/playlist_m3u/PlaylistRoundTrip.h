#pragma once
// The harness of the playlist file fuzzers (playlist_m3u, playlist_pls, playlist_vdp):
// arbitrary bytes become a playlist file in a private directory that also holds a few
// tracks and playlists the bytes may name. The file is loaded with retrieval skipped,
// saved in its own format over itself, and loaded again; the second load must hold the
// same items: kinds, names and expressions. Anything else aborts.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/files/PlaylistLoader.h"
#include "playlist/files/PlaylistWriter.h"
#include "settings/Settings.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace verdin::fuzz {

// Made once per process; left behind in /dev/shm (or /tmp) when the fuzzer ends.
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
    return directory;
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
