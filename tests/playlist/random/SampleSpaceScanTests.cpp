// Which files a sample space is built from, in which order: directory trees made by the
// test, scanned through the real directory listing.
#include "playlist/random/SampleSpaceScan.h"

#include "Files.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace verdin {
namespace {

namespace fs = std::filesystem;

class SampleSpaceScan : public ::testing::Test {
protected:
    // Makes the file (and its directories) with a few bytes in it.
    void Touch(const std::string& relative) {
        const fs::path path = dir_.path() / relative;
        fs::create_directories(path.parent_path());
        test::WriteFile(path.string(), "x");
    }
    std::string Path(const std::string& relative) const { return dir_.file(relative); }
    // The found files relative to the test directory.
    std::vector<std::string> Relative(const std::vector<std::string>& files) const {
        std::vector<std::string> out;
        for (const std::string& f : files)
            out.push_back(fs::path(f).lexically_normal().lexically_relative(dir_.path()).string());
        return out;
    }

    test::TempDir dir_;
};

using Strings = std::vector<std::string>;

TEST_F(SampleSpaceScan, SearchPathPieces) {
    Touch("a/1.mp3");
    Touch("b/2.mp3");
    const std::string a = Path("a");
    const std::string b = Path("b");
    const struct {
        std::string searchPath;
        Strings expected;
    } cases[] = {
        {"", {}},
        {";;;", {}},
        {a, {"a/1.mp3"}},
        {a + ";;" + b, {"a/1.mp3", "b/2.mp3"}},
        {";" + b + ";" + a + ";", {"b/2.mp3", "a/1.mp3"}},
        {a + ";" + a + "/", {"a/1.mp3"}},                      // the same directory twice
        {a + ";" + b + "/../a", {"a/1.mp3"}},                  // another spelling of it
        {a + "/../b;" + b, {"b/2.mp3"}},                       // the first spelling is kept
        {Path("missing") + ";" + a, {"a/1.mp3"}},              // left out silently
        {" " + a, {}},                                         // pieces are used as written
    };
    for (const auto& c : cases)
        EXPECT_EQ(Relative(SampleSpaceFiles(SampleSpaceDirectories(c.searchPath, false), ".mp3")), c.expected)
            << c.searchPath;
}

TEST_F(SampleSpaceScan, FilesKeepTheDirectoryAsWritten) {
    Touch("a/1.mp3");
    const std::string piece = Path("b") + "/../a";
    fs::create_directories(Path("b"));
    EXPECT_EQ(SampleSpaceFiles(SampleSpaceDirectories(piece, false), ".mp3"), Strings{piece + "/1.mp3"});
}

TEST_F(SampleSpaceScan, RecursionIsBreadthFirst) {
    Touch("root/top.mp3");
    Touch("root/B/b.mp3");
    Touch("root/a/a.mp3");
    Touch("root/a/deep/deep.mp3");
    Touch("root/a/deep/deeper/deepest.mp3");
    Touch("root/c/c.mp3");
    const Strings expected{"root/top.mp3", "root/a/a.mp3", "root/B/b.mp3", "root/c/c.mp3",
                           "root/a/deep/deep.mp3", "root/a/deep/deeper/deepest.mp3"};
    EXPECT_EQ(Relative(SampleSpaceFiles(SampleSpaceDirectories(Path("root"), true), ".mp3")), expected);
    EXPECT_EQ(Relative(SampleSpaceFiles(SampleSpaceDirectories(Path("root"), false), ".mp3")),
              Strings{"root/top.mp3"});
}

TEST_F(SampleSpaceScan, LinkedDirectoriesCountOnce) {
    Touch("root/a/a.mp3");
    Touch("root/b/b.mp3");
    fs::create_directory_symlink(Path("root"), Path("root/a/up"));     // a loop back to the top
    fs::create_directory_symlink(Path("root/b"), Path("root/a/to-b"));  // b reached twice
    fs::create_directory_symlink(Path("root/a"), Path("alias"));
    // The alias is a piece of the path, so it comes before the subdirectories of root,
    // and root/a, reached later under its own name, is the repeat that goes.
    const Strings directories = SampleSpaceDirectories(Path("root") + ";" + Path("alias"), true);
    const Strings expected{"root", "alias", "root/b"};
    Strings relative;
    for (const std::string& d : directories) relative.push_back(fs::path(d).lexically_relative(dir_.path()).string());
    EXPECT_EQ(relative, expected);
    EXPECT_EQ(Relative(SampleSpaceFiles(directories, ".mp3")), (Strings{"alias/a.mp3", "root/b/b.mp3"}));
}

TEST_F(SampleSpaceScan, FilesAreGroupedByExtensionInsideEachDirectory) {
    for (const char* name : {"d/b.wav", "d/a.mp3", "d/C.WAV", "d/d.Mp3", "d/e.txt", "d/f.mp3x", "d/g.flac",
                             "d/sub.mp3/inner.wav", "e/z.wav", "e/y.mp3"})
        Touch(name);
    const Strings directories = SampleSpaceDirectories(Path("d") + ";" + Path("e"), false);
    const struct {
        std::string extensions;
        Strings expected;
    } cases[] = {
        {".mp3;.wav", {"d/a.mp3", "d/d.Mp3", "d/b.wav", "d/C.WAV", "e/y.mp3", "e/z.wav"}},
        {".wav;.mp3", {"d/b.wav", "d/C.WAV", "d/a.mp3", "d/d.Mp3", "e/z.wav", "e/y.mp3"}},
        {".flac;;.txt", {"d/g.flac", "d/e.txt"}},
        {"", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(Relative(SampleSpaceFiles(directories, c.extensions)), c.expected) << c.extensions;
}

}  // namespace
}  // namespace verdin
