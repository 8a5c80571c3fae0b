#pragma once
// Small facts about a track's path that every input module reports the same way.
#include <verdin/input.h>

#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace verdin {

// A URL contains "://"; the bundled modules read local files only.
bool IsUrl(std::string_view path);

// The file's name without its directory and without its extension (from the name's last
// "."): "/music/Song.v2.mp3" gives "Song.v2".
std::string_view FileBodyOf(std::string_view path);

// Whether the file's name (not its directory) ends in one of the extensions (".mp3"),
// compared without regard to case.
bool HasOneOfExtensions(std::string_view path, std::initializer_list<std::string_view> extensions);

// Writes the title into the record's 256-byte field, cut to fit and NUL-terminated.
void SetSuggestedTitle(TrackInfo& info, std::string_view title);

// The record's 32-bit file size: sizes from 4 GiB on are reported as the largest value.
uint32_t TrackFileSize(uint64_t bytes);

}  // namespace verdin
