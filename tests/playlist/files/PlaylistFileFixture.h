#pragma once
// A private directory to load playlists from and save them to, with retrieval skipped
// unless a test asks for it, and the tree written as text for comparing: "$/a.mp3" a track
// ("$" the private directory), "?expr" a random entry, "$/l.m3u[ ... ]" a nested playlist
// and its items; items are separated by " | ", so names may hold blanks.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/RandomEntry.h"
#include "playlist/files/PlaylistLoader.h"
#include "settings/Settings.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace verdin::test {

class PlaylistFileTest : public ::testing::Test {
protected:
    PlaylistFileTest() { settings_.skipInfoForAnyFile = 1; }

    std::string PathOf(const std::string& relative) const { return dir_.str() + "/" + relative; }
    // Creates a file (and its directories) holding contents; returns its path.
    std::string Write(const std::string& relative, const std::string& contents = {}) const {
        std::filesystem::create_directories((dir_.path() / relative).parent_path());
        WriteFile(PathOf(relative), contents);
        return PathOf(relative);
    }
    bool Load(const std::string& path) { return LoadItem(main_, path, Context()); }
    LoadContext Context() const { return LoadContext{settings_, modules_}; }

    std::string Tree() const { return Describe(main_); }
    std::string Describe(const Playlist& playlist) const {
        std::string out;
        for (size_t i = 0; i < playlist.ItemCount(); ++i) {
            const PlaylistItem& item = *playlist.ItemAt(i);
            out += out.empty() ? "" : " | ";
            if (item.Kind() == ItemKind::kRandomEntry) {
                out += "?" + static_cast<const RandomEntry&>(item).Expression();
                continue;
            }
            const std::string name = item.Path() + item.Body() + item.Extension();
            out += name.starts_with(dir_.str()) ? "$" + name.substr(dir_.str().size()) : name;
            if (item.Kind() != ItemKind::kPlaylist) continue;
            const std::string inner = Describe(static_cast<const Playlist&>(item));
            out += inner.empty() ? "[ ]" : "[ " + inner + " ]";
        }
        return out;
    }
    // The nested playlist that is the main playlist's item at index.
    Playlist& NestedAt(size_t index) {
        EXPECT_EQ(main_.ItemAt(index)->Kind(), ItemKind::kPlaylist) << "item " << index;
        return static_cast<Playlist&>(*main_.ItemAt(index));
    }

    TempDir dir_;
    Settings settings_;
    InputModuleList modules_;  // empty: the tests read no audio
    Playlist main_;
};

}  // namespace verdin::test
