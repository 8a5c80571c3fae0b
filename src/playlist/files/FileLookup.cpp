#include "FileLookup.h"

#include "base/Text.h"

#include <sys/stat.h>

namespace verdin {

namespace {

// Deeper paths than this are not searched case-insensitively (each level costs a stat).
constexpr int kMaxDepth = 128;

bool IsFile(const std::string& path) {
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

std::string Join(const std::string& directory, const std::string& name) {
    if (directory.empty()) return name;
    if (directory.back() == '/') return directory + name;
    return directory + '/' + name;
}

}  // namespace

std::optional<std::string> FileLookup::Find(const std::string& path) {
    if (path.empty() || path.back() == '/' || path.find('\0') != std::string::npos) return std::nullopt;
    if (IsFile(path)) return path;
    const size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (name == "." || name == "..") return std::nullopt;
    std::optional<std::string> directory;
    if (slash == std::string::npos) directory = std::string();
    else if (slash == 0) directory = std::string("/");
    else directory = FindDirectory(path.substr(0, slash), 0);
    if (!directory) return std::nullopt;
    const std::string* match = MatchInDirectory(*directory, name, false);
    if (!match) return std::nullopt;
    return Join(*directory, *match);
}

std::optional<std::string> FileLookup::FindDirectory(const std::string& directory, int depth) {
    if (IsDirectory(directory)) return directory;
    if (depth >= kMaxDepth) return std::nullopt;
    const size_t slash = directory.rfind('/');
    const std::string name = slash == std::string::npos ? directory : directory.substr(slash + 1);
    std::optional<std::string> parent;
    if (slash == std::string::npos) parent = std::string();
    else if (slash == 0) parent = std::string("/");
    else parent = FindDirectory(directory.substr(0, slash), depth + 1);
    if (!parent) return std::nullopt;
    // "a//b", "a/./b", "a/../b": nothing to match, the component is kept as written.
    if (name.empty() || name == "." || name == "..") {
        const std::string joined = name.empty() ? *parent : Join(*parent, name);
        return IsDirectory(joined.empty() ? "." : joined) ? std::optional(joined) : std::nullopt;
    }
    const std::string* match = MatchInDirectory(*parent, name, true);
    if (!match) return std::nullopt;
    return Join(*parent, *match);
}

const std::string* FileLookup::MatchInDirectory(const std::string& directory, const std::string& name,
                                                bool wantDirectory) {
    auto [it, inserted] = listings_.try_emplace(directory);
    if (inserted) {
        // Sorted without regard to case, ties byte-wise: each group keeps that order.
        for (DirectoryEntry& entry : ListDirectory(directory.empty() ? "." : directory))
            it->second[ToLower(entry.name)].push_back(std::move(entry));
    }
    const auto group = it->second.find(ToLower(name));
    if (group == it->second.end()) return nullptr;
    for (const DirectoryEntry& entry : group->second)
        if (entry.isDirectory == wantDirectory) return &entry.name;
    return nullptr;
}

}  // namespace verdin
