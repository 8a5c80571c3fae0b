#pragma once
// Volume applied to PCM in place, for a device whose sound system has no volume of its
// own that the player may change.
#include <cstddef>
#include <cstdint>

namespace verdin {

constexpr uint32_t kFullVolume = 65535;

// Scales every sample of an interleaved block by volume / 65535. 8-bit samples are
// unsigned around 128; 16-, 24- and 32-bit samples are signed little-endian. Partial
// samples at the end are left alone. At full volume nothing changes (callers skip the
// call); at 0 the block becomes silence.
void ApplySoftwareVolume(uint8_t* data, size_t bytes, uint32_t bitsPerSample, uint32_t volume);

}  // namespace verdin
