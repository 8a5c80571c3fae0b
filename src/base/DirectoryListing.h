#pragma once
// Enumerating a directory the way the player's scans need it.
//
// The order is stable and matches what users see in a file manager: names sorted
// without regard to case (ties byte-wise). A plain readdir() order depends on the file
// system's hashing and would make "the module found first" or "the files in the order
// listed" change from one disk to the next.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

struct DirectoryEntry {
    std::string name;       // the name as the file system spells it
    bool isDirectory = false;  // symbolic links are followed
};

// Every entry of the directory except "." and "..", sorted as above. A directory that
// does not exist or cannot be read gives an empty list.
std::vector<DirectoryEntry> ListDirectory(const std::string& directory);

// The names of the entries that are not directories and whose name ends in
// extension (compared without regard to case), sorted as above: the "dir\*.ext" search.
std::vector<std::string> ListFilesWithExtension(const std::string& directory,
                                                std::string_view extension);

// The names of the subdirectories (other than "." and ".."), sorted as above.
std::vector<std::string> ListSubdirectories(const std::string& directory);

bool IsDirectory(const std::string& path);
bool IsRegularFile(const std::string& path);

}  // namespace verdin
