#include "MpegTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace verdin::mpeg {

namespace {

constexpr uint64_t kId3v1Bytes = 128;

int32_t ClampToInt32(uint64_t value) {
    return static_cast<int32_t>(std::min<uint64_t>(value, std::numeric_limits<int32_t>::max()));
}

// The bytes of MPEG data: the file after the data offset, without an ID3v1 trailer.
uint64_t AudioBytes(const MpegFile& file) {
    uint64_t bytes = file.fileSize() - file.dataOffset();
    mpg123_id3v1* v1 = nullptr;
    mpg123_id3v2* v2 = nullptr;
    if (mpg123_id3(file.handle(), &v1, &v2) == MPG123_OK && v1 && bytes >= kId3v1Bytes)
        bytes -= kId3v1Bytes;
    return bytes;
}

int32_t BitRate(const MpegFile& file, int64_t samples) {
    mpg123_frameinfo frame{};
    const bool known = mpg123_info(file.handle(), &frame) == MPG123_OK;
    if (known && frame.vbr == MPG123_CBR && frame.bitrate > 0) return frame.bitrate * 1000;
    // Variable (or free-format) rate: the average over the whole track.
    int32_t average = known ? frame.bitrate * 1000 : 0;
    if (samples > 0)
        average = ClampToInt32(AudioBytes(file) * 8 * static_cast<uint64_t>(file.sampleRate()) /
                               static_cast<uint64_t>(samples));
    const bool variable = !known || frame.vbr != MPG123_CBR;
    return variable ? -average : average;
}

}  // namespace

void DescribeMpegTrack(const MpegFile& file, const char* path, TrackInfo& info) {
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
