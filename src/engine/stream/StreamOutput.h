#pragma once
// A stream's output: the ring buffer and the device that plays it. They travel together
// from stream to stream while tracks follow each other on the same device; the last
// stream closes them.
#include "engine/PcmFormat.h"
#include "engine/output/OutputDevice.h"
#include "engine/stream/StreamOptions.h"

#include <memory>
#include <string>

namespace verdin {

struct StreamOutput {
    std::unique_ptr<uint8_t[]> ring;
    uint32_t ringBytes = 0;
    std::unique_ptr<OutputDevice> device;  // destroyed before the ring (declared after it)
};

struct OutputResult {
    std::unique_ptr<StreamOutput> output;  // null on failure
    std::string errorText;                 // the failure text the user sees
};

// Makes the ring (filled with silence) and the device of the target's kind for a track of
// the given format. On failure: "Failed to initialize WaveOut playback." (sound card),
// "Failed to initialize output to "<file>"." (decoding to a file) or "Failed to
// initialize DirectSound playback." (sound server).
OutputResult MakeStreamOutput(const OutputTarget& target, const PcmFormat& format, uint32_t ringBytes);

}  // namespace verdin
