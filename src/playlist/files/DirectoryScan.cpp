#include "DirectoryScan.h"

#include "base/DirectoryListing.h"
#include "base/SearchPath.h"

#include <filesystem>
#include <set>

namespace verdin {

std::vector<std::string> DirectoriesBreadthFirst(const std::string& directory, bool recursive) {
    std::vector<std::string> directories{directory};
    if (!recursive) return directories;
    // A link back up the tree would make the walk endless: each directory is entered once,
    // by its real path.
    std::set<std::string> seen;
    const auto firstVisit = [&](const std::string& path) {
        std::error_code error;
        const auto real = std::filesystem::canonical(path, error);
        return seen.insert(error ? path : real.string()).second;
    };
    firstVisit(directory);
    for (size_t i = 0; i < directories.size(); ++i) {
        const std::string current = directories[i];
        for (const std::string& sub : ListSubdirectories(current)) {
            std::string path = JoinPath(current, sub);
            if (firstVisit(path)) directories.push_back(std::move(path));
        }
    }
    return directories;
}

std::vector<std::string> ScanDirectory(const std::string& directory, bool recursive, std::string_view extensions) {
    const std::vector<std::string> types = SplitSearchPath(extensions);
    std::vector<std::string> files;
    for (const std::string& dir : DirectoriesBreadthFirst(directory, recursive)) {
        for (const std::string& extension : types)
            for (const std::string& name : ListFilesWithExtension(dir, extension)) files.push_back(JoinPath(dir, name));
    }
    return files;
}

}  // namespace verdin
