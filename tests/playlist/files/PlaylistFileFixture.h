#pragma once
// A private directory to load playlists from and save them to, with retrieval skipped
// unless a test asks for it, and the tree written as text for comparing:
//
//   $/a.mp3            a track ("$" stands for the private directory)
//   ?expr              a random entry
//   $/l.m3u[ ... ]     a nested playlist and its items
//
// Items are separated by " | ", so names may hold blanks.
#include "engine/input/InputModuleList.h"
#include "playlist/Playlist.h"
#include "playlist/files/PlaylistLoader.h"
#include "settings/Settings.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <string>

namespace verdin::test {

class PlaylistFileTest : public ::testing::Test {
protected:
    PlaylistFileTest();

    // dir_ with a final "/".
    std::string Root() const { return dir_.str() + "/"; }
    std::string PathOf(const std::string& relative) const { return Root() + relative; }
    // Creates a file (and its directories) holding contents; returns its path.
    std::string Write(const std::string& relative, const std::string& contents = {}) const;
    void MakeDirectory(const std::string& relative) const;

    // Loads a path into main_ and returns LoadItem's answer.
    bool Load(const std::string& path) { return LoadItem(main_, path, Context()); }
    LoadContext Context() const { return LoadContext{settings_, modules_}; }

    // main_ (or any playlist) in the notation above.
    std::string Tree() const { return Describe(main_); }
    std::string Describe(const Playlist& playlist) const;
    // The nested playlist that is the main playlist's item at index.
    Playlist& NestedAt(size_t index);

    TempDir dir_;
    Settings settings_;
    InputModuleList modules_;  // empty unless a test loads the bundled plug-ins
    Playlist main_;
};

}  // namespace verdin::test
