#pragma once
// Fixture files for the tag tests: short encodes made with lame, flac and sox, and tag
// bytes put together by hand where a test needs an exact layout. Helpers throw
// std::runtime_error when a tool fails, so a broken fixture fails its test loudly.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdin::test {

// A 16-bit stereo 44.1 kHz sine of `seconds` as a canonical WAV file.
void MakeWav(const std::string& path, double seconds = 0.2);

// Runs a tool; throws with its output when it fails.
void Run(const std::vector<std::string>& argv);

// An MP3 made by lame from a fresh sine, with extra options (tag options).
void MakeMp3(const std::string& path, const std::vector<std::string>& lameOptions);

struct RawFrame {
    std::string id;    // "TIT2" (or "TT2" in a version 2 tag)
    std::string body;  // the frame's content bytes
};

// A Latin-1 text frame body: encoding byte 0, then the text.
std::string Latin1(std::string_view text);
// A UTF-8 text frame body (encoding byte 3, ID3v2.4 only).
std::string Utf8Body(std::string_view text);

// An ID3v2 tag of the given major version (2, 3 or 4) with the frames in order, then
// `padding` zero bytes, then a footer when asked (version 4).
std::vector<std::uint8_t> RawId3v2(int major, const std::vector<RawFrame>& frames, std::size_t padding = 0,
                                   bool footer = false);

// An ID3v1 trailer; track < 0 writes the 1.0 layout (30-byte comment).
std::vector<std::uint8_t> RawId3v1(std::string_view title, std::string_view artist, std::string_view album,
                                   std::string_view year, std::string_view comment, int track, int genre);

// One Ogg page holding one whole packet (flags: 2 first page, 4 last page).
std::vector<std::uint8_t> OggPage(std::uint32_t serial, std::uint32_t sequence, std::uint8_t flags,
                                  std::string_view packet);

std::vector<std::uint8_t> Concat(std::vector<std::uint8_t> a, const std::vector<std::uint8_t>& b);

}  // namespace verdin::test
