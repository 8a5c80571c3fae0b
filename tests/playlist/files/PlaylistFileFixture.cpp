#include "PlaylistFileFixture.h"

#include "Files.h"
#include "playlist/RandomEntry.h"

#include <filesystem>

namespace verdin::test {

PlaylistFileTest::PlaylistFileTest() { settings_.skipInfoForAnyFile = 1; }

std::string PlaylistFileTest::Write(const std::string& relative, const std::string& contents) const {
    const std::filesystem::path path = dir_.path() / relative;
    std::filesystem::create_directories(path.parent_path());
    WriteFile(path.string(), contents);
    return path.string();
}

void PlaylistFileTest::MakeDirectory(const std::string& relative) const {
    std::filesystem::create_directories(dir_.path() / relative);
}

std::string PlaylistFileTest::Describe(const Playlist& playlist) const {
    const std::string root = dir_.str();
    std::string out;
    for (size_t i = 0; i < playlist.ItemCount(); ++i) {
        const PlaylistItem& item = *playlist.ItemAt(i);
        if (!out.empty()) out += " | ";
        if (item.Kind() == ItemKind::kRandomEntry) {
            out += "?" + static_cast<const RandomEntry&>(item).Expression();
            continue;
        }
        std::string name = item.Path() + item.Body() + item.Extension();
        if (name.compare(0, root.size(), root) == 0) name = "$" + name.substr(root.size());
        out += name;
        if (item.Kind() == ItemKind::kPlaylist) {
            const std::string inner = Describe(static_cast<const Playlist&>(item));
            out += inner.empty() ? "[ ]" : "[ " + inner + " ]";
        }
    }
    return out;
}

Playlist& PlaylistFileTest::NestedAt(size_t index) {
    PlaylistItem* item = main_.ItemAt(index);
    EXPECT_TRUE(item && item->Kind() == ItemKind::kPlaylist) << "item " << index;
    return static_cast<Playlist&>(*item);
}

}  // namespace verdin::test
