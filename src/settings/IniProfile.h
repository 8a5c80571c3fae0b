#pragma once
// An INI profile file ("[section]" lines, "key=value" lines) read and written the way the
// player's preset and playlist files need it:
//
//   - section and key names compare without regard to case, and the FIRST matching
//     section and the first matching key in it win (later duplicates are kept, unread);
//   - a missing key gives the caller's default; numbers are read like atoi (leading
//     digits, 0 when there are none);
//   - names and values are trimmed of blanks; a value wholly in double or single quotes
//     loses them; nothing else is special: a value may begin with ";";
//   - lines end at LF, one CR before it is dropped; written files use CR LF.
//
// The lines are scanned by IniLineScanner (base/IniLineScanner.h), as the playlist files'
// section index scans them.
//
// The whole file is parsed once into memory; reading many keys costs no further I/O.
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class IniProfile {
public:
    IniProfile() = default;
    // Parses text; anything that is not a section header or a key line is ignored.
    static IniProfile Parse(std::string_view text);
    // Parses a file; a missing or unreadable file gives an empty profile.
    static IniProfile Load(const std::string& path);

    // The section names in file order, duplicates included.
    std::vector<std::string> SectionNames() const;

    // The value of key in the first section named section, at most maxChars characters
    // (a longer value is cut), or fallback when there is no such key.
    std::string GetString(std::string_view section, std::string_view key,
                          std::string_view fallback = {}, size_t maxChars = 255) const;
    // The value as a signed decimal (leading digits; 0 when none), or fallback when missing.
    int GetInt(std::string_view section, std::string_view key, int fallback = 0) const;

    // Sets key in the first section named section (appending the section and the key when
    // missing); the section keeps its place in the file.
    void SetString(std::string_view section, std::string_view key, std::string_view value);
    // Replaces every section named section (ignoring case) by one empty section at the
    // place of the first, or appends it at the end.
    void ClearSection(std::string_view section);
    // Removes every section named section.
    void RemoveSection(std::string_view section);

    std::string Serialize() const;
    // Writes the file atomically (a temporary file renamed over it), so a crash never
    // leaves a half-written file; false when it cannot be written.
    bool Save(const std::string& path) const;

private:
    struct Entry {
        std::string key;
        std::string value;
    };
    struct Section {
        std::string name;
        std::vector<Entry> entries;
    };
    const Section* FindSection(std::string_view name) const;
    const Entry* Find(std::string_view section, std::string_view key) const;

    std::vector<Section> sections_;
};

// Writes data to path atomically: a temporary file in the same directory, flushed to
// disk, then renamed over path. False (and path untouched) when anything fails.
bool WriteFileAtomically(const std::string& path, std::string_view data);

}  // namespace verdin
