#include "MpegTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace verdin::mpeg {

namespace {

int32_t ClampToInt32(uint64_t value) {
    return static_cast<int32_t>(std::min<uint64_t>(value, std::numeric_limits<int32_t>::max()));
}

// Without a Xing header libmpg123 takes any stream for constant-rate. A stream whose
// frames were counted is not when its bytes differ from what its frames' nominal rate
// makes of its length by more than 1% and two frames (a header frame, a last frame cut
// short).
bool CountedStreamVaries(const MpegFile& file, int64_t samples, uint64_t nominal) {
    const int samplesPerFrame = mpg123_spf(file.handle());
    if (!file.lengthScanned() || samples <= 0 || nominal == 0 || samplesPerFrame <= 0) return false;
    const auto rate = static_cast<uint64_t>(file.sampleRate());
    const uint64_t expected = static_cast<uint64_t>(samples) * nominal / 8 / rate;
    const uint64_t slack = expected / 100 + 2 * static_cast<uint64_t>(samplesPerFrame) * nominal / 8 / rate;
    const uint64_t bytes = file.audioBytes();
    return (bytes > expected ? bytes - expected : expected - bytes) > slack;
}

int32_t BitRate(const MpegFile& file, int64_t samples) {
    mpg123_frameinfo frame{};
    const bool known = mpg123_info(file.handle(), &frame) == MPG123_OK;
    const uint64_t nominal = known && frame.bitrate > 0 ? static_cast<uint64_t>(frame.bitrate) * 1000 : 0;
    const bool constant = known && frame.vbr == MPG123_CBR && !CountedStreamVaries(file, samples, nominal);
    if (constant && nominal > 0) return static_cast<int32_t>(nominal);
    // Variable (or free-format) rate: the average over the whole track.
    int32_t average = static_cast<int32_t>(nominal);
    if (samples > 0)
        average = ClampToInt32(file.audioBytes() * 8 * static_cast<uint64_t>(file.sampleRate()) /
                               static_cast<uint64_t>(samples));
    return constant ? average : -average;
}

}  // namespace

void DescribeMpegTrack(MpegFile& file, const char* path, TrackInfo& info) {
    const int64_t samples = file.LengthInSamples();
    SetSuggestedTitle(info, FileBodyOf(path));
    info.fileSize = TrackFileSize(file.fileSize());
    info.seekable = 1;
    info.decoderEqualizes = 0;
    info.duration = samples > 0 ? static_cast<uint32_t>(std::min<uint64_t>(
                                      static_cast<uint64_t>(samples) * 1000 / static_cast<uint64_t>(file.sampleRate()),
                                      std::numeric_limits<uint32_t>::max()))
                                : 0;
    info.bitrate = BitRate(file, samples);
    info.sampleRate = static_cast<int32_t>(file.sampleRate());
    info.channels = file.channels();
    info.bitsPerSample = 16;
}

}  // namespace verdin::mpeg
