#include "playlist/random/SampleSpaceScan.h"

#include "base/DirectoryListing.h"
#include "base/SearchPath.h"
#include "base/Text.h"

#include <cstdlib>
#include <memory>
#include <unordered_set>

namespace verdin {
namespace {

// The directory's canonical name (links resolved, "." and ".." removed); empty when it
// does not exist.
std::string CanonicalDirectory(const std::string& directory) {
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(directory.c_str(), nullptr), &std::free);
    if (!resolved || !IsDirectory(resolved.get())) return {};
    return resolved.get();
}

}  // namespace

std::vector<std::string> SampleSpaceDirectories(std::string_view searchPath, bool recurse) {
    std::vector<std::string> directories;
    std::unordered_set<std::string> seen;
    const auto add = [&](std::string directory) {
        const std::string canonical = CanonicalDirectory(directory);
        if (!canonical.empty() && seen.insert(canonical).second) directories.push_back(std::move(directory));
    };
    for (std::string& piece : SplitSearchPath(searchPath)) add(std::move(piece));
    if (recurse) {
        // The list grows while it is walked: index, not iterators.
        for (std::size_t i = 0; i < directories.size(); ++i) {
            const std::string directory = directories[i];
            for (const std::string& name : ListSubdirectories(directory)) add(JoinPath(directory, name));
        }
    }
    return directories;
}

std::vector<std::string> SampleSpaceFiles(const std::vector<std::string>& directories, std::string_view extensions) {
    const std::vector<std::string> extensionList = SplitSearchPath(extensions);
    std::vector<std::string> files;
    for (const std::string& directory : directories) {
        const std::vector<DirectoryEntry> entries = ListDirectory(directory);
        for (const std::string& extension : extensionList)
            for (const DirectoryEntry& entry : entries)
                if (!entry.isDirectory && HasExtension(entry.name, extension))
                    files.push_back(JoinPath(directory, entry.name));
    }
    return files;
}

}  // namespace verdin
