#pragma once
// The DirectSound-style volume of the PulseAudio device: hundredths of a decibel.
#include <cstdint>

namespace verdin {

// Silence, in hundredths of a decibel.
constexpr int32_t kSilentHundredths = -10000;

// 0 gives -10000; otherwise 2000 x log10(v / 65535), truncated: 65535 gives 0, 32768
// about -602. Only the low 16 bits of v count.
int32_t VolumeToHundredthsOfDecibel(uint32_t volume);

// The PulseAudio software volume of a level in hundredths of a decibel; -10000 mutes.
uint32_t PulseVolumeOfHundredths(int32_t hundredths);

}  // namespace verdin
