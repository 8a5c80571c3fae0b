#pragma once
// The genre names of ID3v1 genre numbers 0..125 and the ID3v2 content-type refinements.
// Most names carry one trailing blank ("Blues "); the blank is part of the text a genre
// reference expands to, so templates that put a genre before other text read naturally.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr std::size_t kGenreCount = 126;

const std::array<std::string_view, kGenreCount>& GenreTable();

// The name of genre number `number`, or nothing outside 0..125.
std::optional<std::string_view> GenreName(int number);

inline constexpr std::string_view kRemixRefinement = "Remix ";  // "(RX)"
inline constexpr std::string_view kCoverRefinement = "Cover ";  // "(CR)"

// Content types are kept in the ID3v2.3 textual form: genre references "(17)",
// refinements "(RX)" and "(CR)", then free text; free text that itself begins with
// "(" is escaped as "((". This builds that form from a list of values as ID3v2.4 and
// Xiph comments carry them: decimal numbers become "(n)", "RX" and "CR" become
// refinements, other values are free text joined with "/".
std::string ContentTypeFromValues(const std::vector<std::string>& values);

// How a content type reads: each "(n)" becomes the genre name (with its blank),
// "(RX)" and "(CR)" become "Remix " and "Cover ", an unknown reference stays as written,
// and the free text follows. Free text that merely repeats the last genre name
// ("(17)Rock") is not written twice. "((" at the start of the free text is one "(".
void ResolveContentType(std::string_view raw, std::string& out);
std::string ResolveContentType(std::string_view raw);

}  // namespace verdin
