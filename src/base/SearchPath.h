#pragma once
// Search paths are lists of directories, each followed by ";" ("a;b;"). Empty pieces
// (";;", a leading or trailing ";") are skipped; a piece is used as written.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

std::vector<std::string> SplitSearchPath(std::string_view path);

// Joins a directory and a name with one "/" between them ("dir" + "a.so" -> "dir/a.so");
// a directory that already ends in "/" gets none added.
std::string JoinPath(std::string_view directory, std::string_view name);

}  // namespace verdin
