// Finding files as the file system spells them.
#include "playlist/files/FileLookup.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace verdin {
namespace {

class FileLookupTest : public ::testing::Test {
protected:
    std::string Make(const std::string& relative) {
        const std::filesystem::path path = dir_.path() / relative;
        std::filesystem::create_directories(path.parent_path());
        test::WriteFile(path.string(), "");
        return path.string();
    }
    std::string At(const std::string& relative) const { return dir_.str() + "/" + relative; }

    test::TempDir dir_;
    FileLookup lookup_;
};

TEST_F(FileLookupTest, FindsFilesAsTheDiskSpellsThemAndKeepsItsListings) {
    Make("Music/Rock/Track One.MP3");
    Make("plain.mp3");
    Make("twins/ab.mp3");
    Make("twins/AB.mp3");
    std::filesystem::create_directories(dir_.path() / "Folder.mp3");
    const struct {
        std::string asked;
        std::optional<std::string> found;
    } cases[] = {
        {At("plain.mp3"), At("plain.mp3")},
        {At("PLAIN.Mp3"), At("plain.mp3")},
        {At("Music/Rock/Track One.MP3"), At("Music/Rock/Track One.MP3")},
        {At("music/ROCK/track one.mp3"), At("Music/Rock/Track One.MP3")},
        {At("music/./rock/track one.mp3"), At("Music/./Rock/Track One.MP3")},
        {At("Music/Rock/../rock/track one.mp3"), At("Music/Rock/../Rock/Track One.MP3")},
        {At("twins/aB.mp3"), At("twins/AB.mp3")},   // the first in listing order
        {At("twins/ab.mp3"), At("twins/ab.mp3")},   // an exact name is taken as it is
        {At("missing.mp3"), std::nullopt},
        {At("nothere/plain.mp3"), std::nullopt},
        {At("plain.mp3/x"), std::nullopt},
        {At("Music"), std::nullopt},                // a directory is no file
        {At("folder.MP3"), std::nullopt},
        {At("Music/"), std::nullopt},
        {At("plain.mp3/"), std::nullopt},
        {"", std::nullopt},
        {At("plain.mp3") + std::string("\0junk", 5), std::nullopt},
        {At("."), std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(lookup_.Find(c.asked), c.found) << c.asked;
    // Listings are kept, but a new file is still found by its exact name, which needs none.
    const std::string added = Make("Music/Rock/Two.mp3");
    EXPECT_EQ(lookup_.Find(added), added);
}

}  // namespace
}  // namespace verdin
