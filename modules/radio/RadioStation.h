#pragma once
// What the radio module knows without connecting: which addresses it takes, the format
// it promises for every station, and a station's track information from its address.
// Shared by the plug-in the player loads at start-up and the decoding library it opens
// when a station first plays.
#include <verdin/input.h>

#include <cstdint>

namespace verdin::radio {

inline constexpr int kStationRate = 44100;
inline constexpr int kStationChannels = 2;
inline constexpr const char* kRadioDescription = "Verdin internet radio " VERDIN_MODULE_VERSION " (FFmpeg)";
// No file patterns: this module takes addresses, never files.
inline constexpr char kRadioFileTypes[] = "\0";

int32_t IsStationAddress(const char* path);
// The address without its scheme stands for the title until the station names a song;
// nothing here touches the network.
int32_t DescribeStation(const char* url, TrackInfo* info);

}  // namespace verdin::radio
