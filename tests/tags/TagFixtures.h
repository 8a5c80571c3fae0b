#pragma once
// Fixture files for the tag tests: short encodes made with lame, flac and sox, and tag
// bytes put together by hand where a test needs an exact layout.
#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"

#include <stdexcept>
#include <string_view>

namespace verdin::test {

// Runs a tool; throws with its output when it fails, so a broken fixture fails loudly.
inline void Run(const std::vector<std::string>& argv) {
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error(argv[0] + " failed: " + result.output);
}

// 0.2 s of a 16-bit stereo 44.1 kHz sine, as a canonical WAV file.
inline void MakeWav(const std::string& path) { WriteWav(path, 2, 44100, 16, Bytes16(Sine16(8820, 2, 44100, {440.0, 660.0}))); }

// An MP3 made by lame from a fresh sine, with its options (tag options).
inline void MakeMp3(const std::string& path, std::vector<std::string> lameOptions = {}) {
    MakeWav(path + ".wav");
    lameOptions.insert(lameOptions.begin(), {"lame", "--quiet"});
    lameOptions.insert(lameOptions.end(), {path + ".wav", path});
    Run(lameOptions);
}

inline std::vector<uint8_t> Concat(std::vector<uint8_t> a, const std::vector<uint8_t>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Text frame bodies: an encoding byte (0 Latin-1, 3 UTF-8), then the text.
inline std::string Latin1(std::string_view text) { return '\0' + std::string(text); }
inline std::string Utf8(std::string_view text) { return '\3' + std::string(text); }

// An ID3v2 tag of version 2.major with the frames (id, body) in order, then padding, then
// a footer when asked (version 2.4).
inline std::vector<uint8_t> RawId3v2(int major, const std::vector<std::pair<std::string, std::string>>& frames,
                                     size_t padding = 0, bool footer = false) {
    const auto put = [](std::vector<uint8_t>& out, size_t value, int bytes, int bits) {
        for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<uint8_t>((value >> (bits * i)) & ((1u << bits) - 1)));
    };
    std::vector<uint8_t> body;
    for (const auto& [id, content] : frames) {
        body.insert(body.end(), id.begin(), id.end());
        put(body, content.size(), major == 2 ? 3 : 4, major == 4 ? 7 : 8);
        if (major > 2) body.insert(body.end(), {0, 0});
        body.insert(body.end(), content.begin(), content.end());
    }
    body.resize(body.size() + padding, 0);
    std::vector<uint8_t> tag{'I', 'D', '3', static_cast<uint8_t>(major), 0, static_cast<uint8_t>(footer ? 0x10 : 0)};
    put(tag, body.size(), 4, 7);
    tag = Concat(tag, body);
    if (footer) tag = Concat(tag, {'3', 'D', 'I', static_cast<uint8_t>(major), 0, 0x10, tag[6], tag[7], tag[8], tag[9]});
    return tag;
}

// An ID3v1 trailer; track < 0 writes the 1.0 layout (a 30-byte comment).
inline std::vector<uint8_t> RawId3v1(std::string_view title, std::string_view artist, std::string_view year,
                                     std::string_view comment, int track, int genre) {
    std::vector<uint8_t> out{'T', 'A', 'G'};
    const auto put = [&out](std::string_view text, size_t width) {
        for (size_t i = 0; i < width; ++i) out.push_back(i < text.size() ? static_cast<uint8_t>(text[i]) : 0);
    };
    put(title, 30), put(artist, 30), put("", 30), put(year, 4), put(comment, track < 0 ? 30 : 28);
    if (track >= 0) out.insert(out.end(), {0, static_cast<uint8_t>(track)});
    out.push_back(static_cast<uint8_t>(genre));
    return out;
}

// One Ogg page holding one whole packet (flags: 2 first page, 4 last page), its checksum set.
inline std::vector<uint8_t> OggPage(uint32_t sequence, uint8_t flags, std::string_view packet) {
    std::vector<uint8_t> page{'O', 'g', 'g', 'S', 0, flags, 0, 0, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0};  // serial 7
    for (int i = 0; i < 4; ++i) page.push_back(static_cast<uint8_t>(sequence >> (8 * i)));
    page.insert(page.end(), {0, 0, 0, 0, static_cast<uint8_t>(packet.size() / 255 + 1)});
    page.insert(page.end(), packet.size() / 255, 255);
    page.push_back(static_cast<uint8_t>(packet.size() % 255));
    page.insert(page.end(), packet.begin(), packet.end());
    uint32_t crc = 0;  // polynomial 0x04C11DB7, unreflected, over the whole page
    for (uint8_t byte : page) {
        crc ^= uint32_t{byte} << 24;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x80000000u) ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
    }
    for (int i = 0; i < 4; ++i) page[22 + i] = static_cast<uint8_t>(crc >> (8 * i));
    return page;
}

}  // namespace verdin::test
