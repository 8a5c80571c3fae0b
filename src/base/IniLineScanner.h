#pragma once
// The lines of an INI text, read the way the player's preset and playlist files are read.
// Both INI readers (settings/IniProfile, playlist/files/IniSectionIndex) scan with it, so
// they cannot disagree about a line:
//
//   - lines end at LF; one CR before the LF is dropped;
//   - a line is trimmed of blanks and tabs at both ends; an empty line is skipped;
//   - a line beginning with "[" is a section header: the name is what lies between the
//     "[" and the first "]" (or the line's end, when there is no "]"), trimmed;
//   - any other line holding "=" is a key line: the key is what comes before the first
//     "=", the value what follows it, both trimmed, and a value wholly in double or
//     single quotes loses them;
//   - every other line is skipped. Nothing else is special: there is no comment syntax,
//     so ";x=1" is the key ";x" and a value may begin with ";".
//
// Section and key names compare without regard to case (IniNamesMatch, IniNameKey).
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace verdin {

struct IniLine {
    enum class Kind : uint8_t { kSection, kKey };
    Kind kind = Kind::kSection;
    std::string_view name;   // the section's name, or the key
    std::string_view value;  // the key's value; empty for a section header
};

class IniLineScanner {
public:
    // The views handed out point into text, which must outlive them.
    explicit IniLineScanner(std::string_view text) : text_(text) {}

    // The next section header or key line; false at the end of the text.
    bool Next(IniLine* line);

private:
    std::string_view text_;
    size_t at_ = 0;
};

// Whether two section or key names are the same name.
bool IniNamesMatch(std::string_view a, std::string_view b);
// A name folded so that names that match have equal keys (for hashing).
std::string IniNameKey(std::string_view name);

}  // namespace verdin
