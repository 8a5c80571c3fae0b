#include "engine/output/PulseApi.h"
#include "PulseVolume.h"

#include <pulse/volume.h>

#include <cmath>

namespace verdin {

int32_t VolumeToHundredthsOfDecibel(uint32_t volume) {
    volume &= 0xFFFF;
    if (volume == 0) return kSilentHundredths;
    return static_cast<int32_t>(2000.0 * std::log10(volume / 65535.0));
}

uint32_t PulseVolumeOfHundredths(int32_t hundredths) {
    if (hundredths <= kSilentHundredths) return PA_VOLUME_MUTED;
    return Pulse() ? Pulse()->pa_sw_volume_from_dB(hundredths / 100.0) : PA_VOLUME_NORM;
}

}  // namespace verdin
