#pragma once
// Which files a sample space is built from, and in which order.
//
// Directories: the pieces of the search path in order (empty pieces skipped, each used as
// written); with recursion, widened breadth first: every directory's subdirectories, in
// listing order, are appended to the end of the list and visited in turn. A directory
// that is reached again (the same directory under another spelling, "a/../a", a link, or
// a link back up the tree) is kept only where it first appears, so that links cannot make
// the walk endless. Directories that do not exist are left out.
//
// Files: for each directory in list order, for each extension in the extension list's
// order, the files of that directory whose names end in it (without regard to case), in
// listing order (settings/DirectoryListing.h); paths are the directory as written, "/",
// the name.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

std::vector<std::string> SampleSpaceDirectories(std::string_view searchPath, bool recurse);

// extensions: ";"-separated (".mp3;.mp2;.wav"), as the input modules list them.
std::vector<std::string> SampleSpaceFiles(const std::vector<std::string>& directories, std::string_view extensions);

}  // namespace verdin
