#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace verdin {

// A named set of equalizer gains, with the tracks linked to it.
struct EqualizerPreset {
    std::string name;                 // unique within the list, compared case-sensitively
    int32_t preAmp = 0;               // dB, -10..+10
    std::array<int32_t, 16> bands{};  // dB, 50 Hz band first
    bool isDefault = false;           // chosen when no link matches a track
    std::vector<std::string> links;   // full paths of linked tracks, in order

    // The index of a link equal to path (byte-wise), or -1.
    int FindLink(const std::string& path) const;
};

}  // namespace verdin
