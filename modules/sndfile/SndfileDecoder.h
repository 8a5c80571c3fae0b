#pragma once
// One playing sound file: blocks of up to kBlockFrames frames, 16-bit signed or, for
// unsigned 8-bit PCM, the stored bytes (see SampleDelivery); files of more than two
// channels are read whole and folded into stereo.
#include "SndfileFile.h"

#include <verdin/input.h>

#include <cstdint>
#include <memory>

namespace verdin::sndfile {

class SndfileDecoder : public InputDecoder {
public:
    // A decoder positioned at the start of the track, or null when the file cannot be
    // opened as a sound file the player can take.
    static SndfileDecoder* Open(const char* path, uint32_t dataOffset);

    SndfileDecoder(const SndfileDecoder&) = delete;
    SndfileDecoder& operator=(const SndfileDecoder&) = delete;

private:
    // 4096 frames: about 0.1 s at 44.1 kHz, 16 KiB of 16-bit stereo.
    static constexpr int kBlockFrames = 4096;

    SndfileDecoder();

    uint32_t Decode(const void** block);
    uint32_t Seek(uint32_t milliseconds);

    static const InputDecoderOps kOps;

    SndfileFile file_;
    std::unique_ptr<uint8_t[]> block_;
    std::unique_ptr<float[]> floats_;  // only for floating-point files
    std::unique_ptr<int16_t[]> wide_;  // only for files folded into stereo: all channels
};

}  // namespace verdin::sndfile
