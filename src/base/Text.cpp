#include "Text.h"

#include <climits>

namespace verdin {

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (AsciiUpper(a[i]) != AsciiUpper(b[i])) return false;
    return true;
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

bool LessIgnoreCase(std::string_view a, std::string_view b) {
    const size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        const auto x = static_cast<unsigned char>(AsciiUpper(a[i]));
        const auto y = static_cast<unsigned char>(AsciiUpper(b[i]));
        if (x != y) return x < y;
    }
    if (a.size() != b.size()) return a.size() < b.size();
    return a < b;
}

std::string ToUpper(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = AsciiUpper(c);
    return out;
}

std::string ToLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = AsciiLower(c);
    return out;
}

std::string_view TrimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

std::string_view Unquote(std::string_view s) {
    if (s.size() >= 2 && (s.front() == '"' || s.front() == '\'') && s.back() == s.front())
        return s.substr(1, s.size() - 2);
    return s;
}

std::string_view ExtensionOf(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot);
}

bool HasExtension(std::string_view name, std::string_view extension) {
    return name.size() >= extension.size() &&
           EqualsIgnoreCase(name.substr(name.size() - extension.size()), extension);
}

int ParseDecimal(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > static_cast<long long>(INT_MAX) + 1) value = static_cast<long long>(INT_MAX) + 1;
    }
    if (negative) value = -value;
    if (value > INT_MAX) value = INT_MAX;
    return static_cast<int>(value);
}

}  // namespace verdin
