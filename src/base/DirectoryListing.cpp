#include "DirectoryListing.h"

#include "SearchPath.h"
#include "Text.h"

#include <algorithm>
#include <dirent.h>
#include <sys/stat.h>

namespace verdin {

std::vector<DirectoryEntry> ListDirectory(const std::string& directory) {
    std::vector<DirectoryEntry> out;
    DIR* dir = opendir(directory.empty() ? "." : directory.c_str());
    if (!dir) return out;
    while (dirent* e = readdir(dir)) {
        std::string_view name = e->d_name;
        if (name == "." || name == "..") continue;
        DirectoryEntry entry{std::string(name), false};
        if (e->d_type == DT_DIR) {
            entry.isDirectory = true;
        } else if (e->d_type == DT_LNK || e->d_type == DT_UNKNOWN) {
            entry.isDirectory = IsDirectory(JoinPath(directory, name));
        }
        out.push_back(std::move(entry));
    }
    closedir(dir);
    std::sort(out.begin(), out.end(), [](const DirectoryEntry& a, const DirectoryEntry& b) {
        return LessIgnoreCase(a.name, b.name);
    });
    return out;
}

std::vector<std::string> ListFilesWithExtension(const std::string& directory,
                                                std::string_view extension) {
    std::vector<std::string> out;
    for (auto& e : ListDirectory(directory))
        if (!e.isDirectory && HasExtension(e.name, extension)) out.push_back(std::move(e.name));
    return out;
}

std::vector<std::string> ListSubdirectories(const std::string& directory) {
    std::vector<std::string> out;
    for (auto& e : ListDirectory(directory))
        if (e.isDirectory) out.push_back(std::move(e.name));
    return out;
}

bool IsDirectory(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool IsRegularFile(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace verdin
