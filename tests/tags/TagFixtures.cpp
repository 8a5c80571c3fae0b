#include "TagFixtures.h"

#include "Files.h"
#include "PcmFixtures.h"
#include "Process.h"

#include <stdexcept>

namespace verdin::test {

void MakeWav(const std::string& path, double seconds) {
    const int frames = static_cast<int>(seconds * 44100);
    WriteWav(path, 2, 44100, 16, Bytes16(Sine16(frames, 2, 44100, {440.0, 660.0})));
}

void Run(const std::vector<std::string>& argv) {
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error(argv[0] + " failed: " + result.output);
}

void MakeMp3(const std::string& path, const std::vector<std::string>& lameOptions) {
    const std::string wav = path + ".source.wav";
    MakeWav(wav);
    std::vector<std::string> argv{"lame", "--quiet"};
    argv.insert(argv.end(), lameOptions.begin(), lameOptions.end());
    argv.push_back(wav);
    argv.push_back(path);
    Run(argv);
}

std::string Latin1(std::string_view text) { return std::string(1, '\0') + std::string(text); }
std::string Utf8Body(std::string_view text) { return std::string(1, '\3') + std::string(text); }

namespace {

void PutSynchsafe(std::vector<std::uint8_t>& out, std::size_t value) {
    for (int shift = 21; shift >= 0; shift -= 7) out.push_back(static_cast<std::uint8_t>((value >> shift) & 0x7F));
}

void PutBigEndian(std::vector<std::uint8_t>& out, std::size_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

}  // namespace

std::vector<std::uint8_t> RawId3v2(int major, const std::vector<RawFrame>& frames, std::size_t padding, bool footer) {
    std::vector<std::uint8_t> body;
    for (const RawFrame& frame : frames) {
        body.insert(body.end(), frame.id.begin(), frame.id.end());
        if (major == 2) {
            PutBigEndian(body, frame.body.size(), 3);
        } else {
            if (major == 4) PutSynchsafe(body, frame.body.size());
            else PutBigEndian(body, frame.body.size(), 4);
            body.push_back(0);
            body.push_back(0);
        }
        body.insert(body.end(), frame.body.begin(), frame.body.end());
    }
    body.resize(body.size() + padding, 0);

    const std::uint8_t flags = footer ? 0x10 : 0;
    std::vector<std::uint8_t> tag{'I', 'D', '3', static_cast<std::uint8_t>(major), 0, flags};
    PutSynchsafe(tag, body.size());
    tag.insert(tag.end(), body.begin(), body.end());
    if (footer) {
        tag.insert(tag.end(), {'3', 'D', 'I', static_cast<std::uint8_t>(major), 0, flags});
        PutSynchsafe(tag, body.size());
    }
    return tag;
}

std::vector<std::uint8_t> RawId3v1(std::string_view title, std::string_view artist, std::string_view album,
                                   std::string_view year, std::string_view comment, int track, int genre) {
    std::vector<std::uint8_t> out{'T', 'A', 'G'};
    auto put = [&out](std::string_view text, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) out.push_back(i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0);
    };
    put(title, 30);
    put(artist, 30);
    put(album, 30);
    put(year, 4);
    if (track < 0) {
        put(comment, 30);
    } else {
        put(comment, 28);
        out.push_back(0);
        out.push_back(static_cast<std::uint8_t>(track));
    }
    out.push_back(static_cast<std::uint8_t>(genre));
    return out;
}

std::vector<std::uint8_t> OggPage(std::uint32_t serial, std::uint32_t sequence, std::uint8_t flags,
                                  std::string_view packet) {
    std::vector<std::uint8_t> page{'O', 'g', 'g', 'S', 0, flags};
    auto putLittle = [&page](std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) page.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    };
    putLittle(0, 8);  // granule position
    putLittle(serial, 4);
    putLittle(sequence, 4);
    putLittle(0, 4);  // checksum, filled in below
    std::vector<std::uint8_t> lacing(packet.size() / 255, 255);
    lacing.push_back(static_cast<std::uint8_t>(packet.size() % 255));
    page.push_back(static_cast<std::uint8_t>(lacing.size()));
    page.insert(page.end(), lacing.begin(), lacing.end());
    page.insert(page.end(), packet.begin(), packet.end());

    std::uint32_t crc = 0;  // polynomial 0x04C11DB7, unreflected, over the whole page
    for (std::uint8_t byte : page) {
        crc ^= static_cast<std::uint32_t>(byte) << 24;
        for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x80000000u) ? (crc << 1) ^ 0x04C11DB7u : crc << 1;
    }
    for (int i = 0; i < 4; ++i) page[22 + i] = static_cast<std::uint8_t>(crc >> (8 * i));
    return page;
}

std::vector<std::uint8_t> Concat(std::vector<std::uint8_t> a, const std::vector<std::uint8_t>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace verdin::test
