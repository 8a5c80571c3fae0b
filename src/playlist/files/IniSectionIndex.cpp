#include "IniSectionIndex.h"

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
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        line = TrimBlanks(line);
        if (line.empty()) continue;
        if (line.front() == '[') {
            if (inside) break;  // its section has ended
            const size_t close = line.find(']');
            const std::string_view name =
                line.substr(1, close == std::string_view::npos ? std::string_view::npos : close - 1);
            inside = EqualsIgnoreCase(TrimBlanks(name), section);
            continue;
        }
        if (!inside) continue;
        const size_t eq = line.find('=');
        if (eq == std::string_view::npos) continue;
        index.values_.try_emplace(ToLower(TrimBlanks(line.substr(0, eq))), Unquote(TrimBlanks(line.substr(eq + 1))));
    }
    return index;
}

const std::string* IniSectionIndex::Find(std::string_view key) const {
    const auto it = values_.find(ToLower(key));
    return it == values_.end() ? nullptr : &it->second;
}

int IniSectionIndex::GetInt(std::string_view key, int fallback) const {
    const std::string* value = Find(key);
    return value ? ParseDecimal(*value) : fallback;
}

std::vector<std::string_view> IniSectionIndex::NumberedValues(std::string_view prefix, int count) const {
    const std::string lowerPrefix = ToLower(prefix);
    std::vector<std::pair<int, std::string_view>> numbered;
    for (const auto& [key, value] : values_) {
        if (key.size() <= lowerPrefix.size() || key.compare(0, lowerPrefix.size(), lowerPrefix) != 0) continue;
        const int n = PositiveDecimal(std::string_view(key).substr(lowerPrefix.size()));
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
