#pragma once
// One section of an INI text, indexed for reading thousands of numbered keys.
//
// It reads exactly as IniProfile does (settings/IniProfile.h): the same line scanner
// (base/IniLineScanner.h) and its case rule, the first section of that name, the first
// key of a name; but it looks keys up by hash instead of by a walk over the section, so
// reading "Entry1".."Entry100000" stays linear.
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace verdin {

class IniSectionIndex {
public:
    // The first section named `section` in text (none: an empty index).
    static IniSectionIndex Parse(std::string_view text, std::string_view section);

    // The value of the first key of that name, or null when there is none.
    const std::string* Find(std::string_view key) const;
    // The value as a decimal number (like atoi), or fallback when the key is missing.
    int GetInt(std::string_view key, int fallback) const;

    // The values of the keys prefix1, prefix2 ... prefix<count> ("%s%d" spelling: no
    // sign, no leading zeros) that are present, in number order. A missing key is left
    // out rather than read as an empty text.
    std::vector<std::string_view> NumberedValues(std::string_view prefix, int count) const;

private:
    // Lower-cased key -> value of its first occurrence.
    std::unordered_map<std::string, std::string> values_;
};

}  // namespace verdin
