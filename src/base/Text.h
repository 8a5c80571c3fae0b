#pragma once
// Text helpers for the player's 8-bit texts. File names, extensions, INI keys and
// random-entry variables compare without regard to case; only ASCII letters fold,
// as in the system code page's upper-casing of plain letters.
#include <string>
#include <string_view>

namespace verdin {

inline char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }
inline char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

bool EqualsIgnoreCase(std::string_view a, std::string_view b);
// Whether text begins with prefix, ignoring case.
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);
// Orders a before b ignoring case; equal-ignoring-case texts are ordered byte-wise.
bool LessIgnoreCase(std::string_view a, std::string_view b);
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

// Without the blanks and tabs at either end.
std::string_view TrimBlanks(std::string_view text);
// Without the double or single quotes that wholly enclose it ("\"x\"" gives x).
std::string_view Unquote(std::string_view text);

// The extension of a name: from its last "." to the end, or empty.
std::string_view ExtensionOf(std::string_view name);
// Whether name ends in extension (".mp3"), ignoring case.
bool HasExtension(std::string_view name, std::string_view extension);

// The C library's decimal conversion (atoi): optional blanks and sign, leading digits,
// 0 when there are none. Never overflows: the value saturates at the int range.
int ParseDecimal(std::string_view text);

}  // namespace verdin
