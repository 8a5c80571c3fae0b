#include "IniSectionIndex.h"

#include "base/IniLineScanner.h"
#include "base/Text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace verdin {

namespace {

// The number n when digits is exactly how "%d" prints a positive n.
int PositiveDecimal(std::string_view digits) {
    if (digits.empty() || digits.front() < '1' || digits.front() > '9') return 0;
    int value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && end == digits.data() + digits.size() ? value : 0;
}

}  // namespace

IniSectionIndex IniSectionIndex::Parse(std::string_view text, std::string_view section) {
    IniSectionIndex index;
    bool inside = false;  // lines now belong to the first section of that name
    IniLineScanner scanner(text);
    IniLine line;
    while (scanner.Next(&line)) {
        if (line.kind == IniLine::Kind::kSection) {
            if (inside) break;  // its section has ended
            inside = IniNamesMatch(line.name, section);
        } else if (inside) {
            index.values_.try_emplace(IniNameKey(line.name), line.value);
        }
    }
    return index;
}

const std::string* IniSectionIndex::Find(std::string_view key) const {
    const auto it = values_.find(IniNameKey(key));
    return it == values_.end() ? nullptr : &it->second;
}

int IniSectionIndex::GetInt(std::string_view key, int fallback) const {
    const std::string* value = Find(key);
    return value ? ParseDecimal(*value) : fallback;
}

std::vector<std::string_view> IniSectionIndex::NumberedValues(std::string_view prefix, int count) const {
    const std::string prefixKey = IniNameKey(prefix);
    std::vector<std::pair<int, std::string_view>> numbered;
    for (const auto& [key, value] : values_) {
        if (key.size() <= prefixKey.size() || key.compare(0, prefixKey.size(), prefixKey) != 0) continue;
        const int n = PositiveDecimal(std::string_view(key).substr(prefixKey.size()));
        if (n >= 1 && n <= count) numbered.emplace_back(n, value);
    }
    std::sort(numbered.begin(), numbered.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string_view> values;
    values.reserve(numbered.size());
    for (const auto& entry : numbered) values.push_back(entry.second);
    return values;
}

}  // namespace verdin
