#pragma once
// Audio files for the plug-in tests: made with the encoders on the machine, never
// downloaded. Every helper throws when a tool fails, so a broken fixture fails loudly.
#include <cstdint>
#include <string>
#include <vector>

namespace verdin::test {

// Runs a command and throws with its output when it does not exit with 0.
void RunOrThrow(const std::vector<std::string>& argv);

// A minimal ID3v2.3 tag with a title frame, padded to exactly totalBytes (at least 64),
// as a tagger puts in front of the audio.
std::vector<uint8_t> Id3v2Tag(size_t totalBytes);

// Writes tag + the contents of source to target.
void PrependBytes(const std::string& source, const std::string& target, const std::vector<uint8_t>& tag);

// The first bytes of a file, written to another.
void WriteTruncatedCopy(const std::string& source, const std::string& target, size_t bytes);

// Bytes from a fixed pseudo-random sequence: the same garbage in every run.
std::vector<uint8_t> Garbage(size_t bytes, uint32_t seed);

// Little-endian 16-bit samples back from bytes.
std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes);

// The largest difference between two runs of 16-bit samples of the same length (-1 when
// the lengths differ).
int MaxSampleDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b);

}  // namespace verdin::test
