#include "AudioFiles.h"

#include "Files.h"
#include "Process.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <stdexcept>

namespace verdin::test {

void RunOrThrow(const std::vector<std::string>& argv) {
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) {
        std::string command;
        for (const auto& a : argv) command += a + " ";
        throw std::runtime_error(command + "failed (" + std::to_string(result.exitCode) + "): " + result.output);
    }
}

std::vector<uint8_t> Id3v2Tag(size_t totalBytes) {
    if (totalBytes < 64) throw std::invalid_argument("an ID3v2 tag needs at least 64 bytes here");
    const std::string title = "A title in a tag";
    std::vector<uint8_t> tag = {'I', 'D', '3', 3, 0, 0};
    const size_t body = totalBytes - 10;  // the size field counts what follows the header
    for (int shift = 21; shift >= 0; shift -= 7) tag.push_back(static_cast<uint8_t>((body >> shift) & 0x7F));
    const size_t frameBody = 1 + title.size();
    tag.insert(tag.end(), {'T', 'I', 'T', '2'});
    for (int shift = 24; shift >= 0; shift -= 8) tag.push_back(static_cast<uint8_t>((frameBody >> shift) & 0xFF));
    tag.insert(tag.end(), {0, 0, 0});  // flags, then ISO-8859-1 text encoding
    tag.insert(tag.end(), title.begin(), title.end());
    tag.resize(totalBytes, 0);  // padding
    return tag;
}

void PrependBytes(const std::string& source, const std::string& target, const std::vector<uint8_t>& tag) {
    std::vector<uint8_t> bytes = tag;
    const std::vector<uint8_t> audio = ReadBytes(source);
    bytes.insert(bytes.end(), audio.begin(), audio.end());
    WriteBytes(target, bytes);
}

void WriteTruncatedCopy(const std::string& source, const std::string& target, size_t bytes) {
    std::vector<uint8_t> data = ReadBytes(source);
    if (data.size() > bytes) data.resize(bytes);
    WriteBytes(target, data);
}

std::vector<uint8_t> Garbage(size_t bytes, uint32_t seed) {
    std::mt19937 generator(seed);
    std::vector<uint8_t> out(bytes);
    for (auto& b : out) b = static_cast<uint8_t>(generator());
    return out;
}

std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes) {
    std::vector<int16_t> out(bytes.size() / 2);
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<int16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    return out;
}

int MaxSampleDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    if (a.size() != b.size()) return -1;
    const std::vector<int16_t> x = Samples16(a), y = Samples16(b);
    int largest = 0;
    for (size_t i = 0; i < x.size(); ++i) largest = std::max(largest, std::abs(x[i] - y[i]));
    return largest;
}

}  // namespace verdin::test
