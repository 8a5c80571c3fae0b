#include "StreamOutput.h"

#include "engine/output/AlsaDevice.h"
#include "engine/output/PulseDevice.h"
#include "engine/output/WavFileDevice.h"
#include "engine/output/WavFileName.h"

#include <cstring>

namespace verdin {

OutputResult MakeStreamOutput(const OutputTarget& target, const PcmFormat& format, uint32_t ringBytes) {
    OutputResult result;
    auto output = std::make_unique<StreamOutput>();
    output->ringBytes = ringBytes;
    output->ring = std::make_unique<uint8_t[]>(ringBytes);
    // Silence: 8-bit samples are unsigned, so their silence is 128, not 0.
    std::memset(output->ring.get(), format.bitsPerSample == 8 ? 0x80 : 0, ringBytes);

    uint8_t* ring = output->ring.get();
    switch (target.kind) {
        case OutputTarget::kWavFile: {
            const std::string file =
                WavFileName(target.decodeDirectory, target.trackNumber, target.entryCount, target.title);
            output->device = std::make_unique<WavFileDevice>(file, format, ring, ringBytes);
            if (!output->device->IsOpen()) result.errorText = "Failed to initialize output to \"" + file + "\".";
            break;
        }
        case OutputTarget::kSoundServer:
            output->device = std::make_unique<PulseDevice>(format, ring, ringBytes, target.soundServerDevice,
                                                           target.cooperativeLevel);
            if (!output->device->IsOpen()) result.errorText = "Failed to initialize DirectSound playback.";
            break;
        default:
            output->device = std::make_unique<AlsaDevice>(target.soundCardDevice, format, ring, ringBytes);
            if (!output->device->IsOpen()) result.errorText = "Failed to initialize WaveOut playback.";
            break;
    }
    if (result.errorText.empty()) result.output = std::move(output);
    return result;
}

}  // namespace verdin
