#include "PcmFixtures.h"

#include "Files.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>
#include <stdexcept>

namespace verdin::test {

std::vector<int16_t> Sine16(int frames, int channels, int sampleRate,
                            const std::vector<double>& frequencies, double amplitude) {
    std::vector<int16_t> out(static_cast<size_t>(frames) * static_cast<size_t>(channels));
    for (int i = 0; i < frames; ++i) {
        for (int c = 0; c < channels; ++c) {
            double f = frequencies[static_cast<size_t>(c) % frequencies.size()];
            double v = amplitude * 32767.0 * std::sin(2.0 * std::numbers::pi * f * i / sampleRate);
            out[static_cast<size_t>(i) * channels + c] = static_cast<int16_t>(std::lround(v));
        }
    }
    return out;
}

std::vector<uint8_t> Bytes16(const std::vector<int16_t>& samples) {
    static_assert(std::endian::native == std::endian::little, "the samples' bytes are copied as they are");
    std::vector<uint8_t> out(samples.size() * 2);
    std::memcpy(out.data(), samples.data(), out.size());
    return out;
}

namespace {
// A little-endian number of the given width.
void Put(std::vector<uint8_t>& b, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
uint32_t Get32(const std::vector<uint8_t>& b, size_t at) {
    return b[at] | (b[at + 1] << 8) | (b[at + 2] << 16) | (static_cast<uint32_t>(b[at + 3]) << 24);
}
}  // namespace

void WriteWav(const std::string& path, int channels, int sampleRate, int bitsPerSample,
              const std::vector<uint8_t>& data) {
    std::vector<uint8_t> b;
    const uint32_t align = static_cast<uint32_t>(bitsPerSample / 8 * channels);
    b.insert(b.end(), {'R', 'I', 'F', 'F'});
    Put(b, static_cast<uint32_t>(data.size() + 36), 4);
    b.insert(b.end(), {'W', 'A', 'V', 'E', 'f', 'm', 't', ' '});
    Put(b, 16, 4);
    Put(b, 1, 2);
    Put(b, static_cast<uint16_t>(channels), 2);
    Put(b, static_cast<uint32_t>(sampleRate), 4);
    Put(b, align * static_cast<uint32_t>(sampleRate), 4);
    Put(b, static_cast<uint16_t>(align), 2);
    Put(b, static_cast<uint16_t>(bitsPerSample), 2);
    b.insert(b.end(), {'d', 'a', 't', 'a'});
    Put(b, static_cast<uint32_t>(data.size()), 4);
    b.insert(b.end(), data.begin(), data.end());
    WriteBytes(path, b);
}

std::vector<uint8_t> WavData(const std::string& path) {
    std::vector<uint8_t> b = ReadBytes(path);
    if (b.size() < 44 || std::memcmp(b.data(), "RIFF", 4) != 0 ||
        std::memcmp(b.data() + 36, "data", 4) != 0)
        throw std::runtime_error(path + " is not a canonical WAV file");
    const uint32_t size = Get32(b, 40);
    if (size != b.size() - 44 || Get32(b, 4) != size + 36)
        throw std::runtime_error(path + ": header sizes do not match the file");
    return std::vector<uint8_t>(b.begin() + 44, b.end());
}

}  // namespace verdin::test
