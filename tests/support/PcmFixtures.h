#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace verdin::test {

// Interleaved signed 16-bit sine: frames x channels samples, each channel with
// its own frequency (channel c uses frequencies[c % size]).
std::vector<int16_t> Sine16(int frames, int channels, int sampleRate,
                            const std::vector<double>& frequencies, double amplitude = 0.5);

// Raw little-endian bytes of 16-bit samples.
std::vector<uint8_t> Bytes16(const std::vector<int16_t>& samples);

// A canonical 44-byte-header PCM WAV file holding exactly the given data bytes.
void WriteWav(const std::string& path, int channels, int sampleRate, int bitsPerSample,
              const std::vector<uint8_t>& data);

// The data bytes of a canonical PCM WAV file (the bytes after its 44-byte header),
// after checking that the header describes them.
std::vector<uint8_t> WavData(const std::string& path);

}  // namespace verdin::test
