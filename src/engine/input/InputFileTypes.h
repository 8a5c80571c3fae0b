#pragma once
// The file types an input module announces through GetFileTypes.
//
// A module hands out a run of NUL-terminated texts ended by an empty text, in pairs:
// a description ("MPEG audio") and a ";"-separated list of wildcard patterns
// ("*.mp3;*.mp2"). The open-file dialogs show one entry per pair; directory scans and the
// sample space want the extensions behind the patterns (".mp3").
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

// One entry of an open-file dialog's filter: what the user reads and what it matches.
struct FileTypeFilter {
    std::string description;  // as the module wrote it
    std::string patterns;     // ";"-separated wildcards, as the module wrote them

    bool operator==(const FileTypeFilter&) const = default;
};

// The pairs of a module's list, in its order. NULL gives none; a description without
// a pattern list (the list ends right after it) is dropped. A list that never ends is
// read no further than a generous bound, so a broken module cannot run the reader away.
std::vector<FileTypeFilter> ParseFileTypeList(const char* list);

// The extension a wildcard pattern stands for: "*.mp3" gives ".mp3". Blanks around the
// pattern are ignored. Patterns that are not of the form "*.ext" with a plain extension
// ("*.*", "name.txt", "*") give none.
std::optional<std::string> ExtensionOfPattern(std::string_view pattern);

// Appends the extensions of a ";"-separated pattern list to extensions, skipping any
// already present (compared without regard to case, as file names are): a scan must not
// list the same file twice because two modules both claim ".mp3".
void AppendPatternExtensions(std::string_view patterns, std::vector<std::string>& extensions);

}  // namespace verdin
