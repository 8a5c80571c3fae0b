#pragma once
// Adding a directory: its files of every type the input modules read, grouped by
// extension in the modules' order inside each directory, with the subdirectories walked
// breadth first when the scan is recursive (the directory, then its subdirectories, then
// theirs). Within one extension the files come in the directory's listing order.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// The files to add, in order. extensions: ";"-separated (".mp3;.wav").
std::vector<std::string> ScanDirectory(const std::string& directory, bool recursive, std::string_view extensions);

// The directory and, when recursive, every directory below it, breadth first.
std::vector<std::string> DirectoriesBreadthFirst(const std::string& directory, bool recursive);

}  // namespace verdin
