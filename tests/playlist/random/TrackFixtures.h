#pragma once
// Track records for the playlist tests, made in memory (a name, tag frames and what an
// input module would have reported) or from files encoded by the test.
#include "playlist/TrackRecord.h"
#include "tags/FrameId.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace verdin::test {

struct TrackSpec {
    std::string name;  // full name: "/music/Jazz/Take Five.mp3"
    std::vector<std::pair<FrameId, std::string>> frames;
    std::uint32_t durationMs = 0;
    std::uint32_t fileSize = 0;
    std::string suggestedTitle;
};

std::unique_ptr<TrackRecord> MakeTrack(const TrackSpec& spec);

// An MP3 of `seconds` made by lame from a sine, with lame's tag options ("--tt", "Title").
// Throws std::runtime_error when lame fails.
void EncodeMp3(const std::string& path, double seconds, const std::vector<std::string>& lameOptions);

// A 16-bit stereo 44.1 kHz WAV of the given length in milliseconds.
void WriteToneWav(const std::string& path, int milliseconds);

}  // namespace verdin::test
