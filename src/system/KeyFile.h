#pragma once
// A desktop key file (mimeapps.list, the player's own backup list) edited line by line, so
// that everything the player does not touch (other groups, comments, other programs'
// keys, blank lines) is written back exactly as it was read.
//
// A group starts at a line "[name]"; a key line is "key=value" inside a group, the key and
// value taken as they stand (mimeapps.list writes no blanks around "="). Lines are
// written back with LF endings, whatever carriage returns ended them. Lines before the
// first group, comments ("#") and anything else are kept and never matched.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class KeyFile {
public:
    KeyFile() = default;
    explicit KeyFile(std::string_view text);

    // The text to write back: the lines joined with LF, ending with one.
    std::string Text() const;

    // The value of the first such key in the first such group; empty when there is none.
    std::string Get(std::string_view group, std::string_view key) const;
    // Replaces the first such key of the group, or adds it at the group's end; a missing
    // group is added at the file's end.
    void Set(std::string_view group, std::string_view key, std::string_view value);
    // Removes every such key of the group.
    void Remove(std::string_view group, std::string_view key);
    // The keys of a group, in file order.
    std::vector<std::string> Keys(std::string_view group) const;

private:
    // The group's first line after its header, and the end of its lines (the next
    // header, or the file's end); both npos when the file has no such group.
    std::pair<size_t, size_t> GroupLines(std::string_view group) const;

    std::vector<std::string> lines_;
};

// Reads a key file; a file that cannot be read counts as empty. Writes one atomically,
// making its directory when missing; false when it cannot be written.
KeyFile ReadKeyFile(const std::string& path);
bool WriteKeyFile(const std::string& path, const KeyFile& file);

}  // namespace verdin
