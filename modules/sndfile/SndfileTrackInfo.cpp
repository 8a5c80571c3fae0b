#include "SndfileTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <algorithm>
#include <limits>

namespace verdin::sndfile {

namespace {

struct StoredSampleSize {
    int subtype;
    int bits;
};

// Encodings with a fixed number of bits per sample.
constexpr StoredSampleSize kStoredSampleSizes[] = {
    {SF_FORMAT_PCM_S8, 8},  {SF_FORMAT_PCM_U8, 8},  {SF_FORMAT_PCM_16, 16},
    {SF_FORMAT_PCM_24, 24}, {SF_FORMAT_PCM_32, 32}, {SF_FORMAT_FLOAT, 32},
    {SF_FORMAT_DOUBLE, 64}, {SF_FORMAT_ULAW, 8},    {SF_FORMAT_ALAW, 8},
};

// Containers whose data rate varies from block to block.
constexpr int kVariableRateContainers[] = {SF_FORMAT_FLAC, SF_FORMAT_OGG};

int StoredBits(const SF_INFO& info) {
    const int subtype = info.format & SF_FORMAT_SUBMASK;
    for (const StoredSampleSize& size : kStoredSampleSizes)
        if (size.subtype == subtype) return size.bits;
    return 0;
}

bool HasVariableRate(const SF_INFO& info) {
    const int container = info.format & SF_FORMAT_TYPEMASK;
    return std::find(std::begin(kVariableRateContainers), std::end(kVariableRateContainers), container) !=
           std::end(kVariableRateContainers);
}

int32_t ClampToInt32(uint64_t value) {
    return static_cast<int32_t>(std::min<uint64_t>(value, std::numeric_limits<int32_t>::max()));
}

int32_t BitRate(const SndfileFile& file) {
    const SF_INFO& info = file.info();
    const int bits = StoredBits(info);
    if (bits > 0 && !HasVariableRate(info))
        return ClampToInt32(static_cast<uint64_t>(info.samplerate) * static_cast<uint64_t>(info.channels) *
                            static_cast<uint64_t>(bits));
    const int64_t frames = file.frames();
    if (frames <= 0) return 0;
    const uint64_t bytes = file.fileSize() - file.dataOffset();
    const int32_t average =
        ClampToInt32(bytes * 8 * static_cast<uint64_t>(info.samplerate) / static_cast<uint64_t>(frames));
    return HasVariableRate(info) ? -average : average;
}

}  // namespace

void DescribeSoundFile(const SndfileFile& file, const char* path, TrackInfo& info) {
    const SF_INFO& sf = file.info();
    SetSuggestedTitle(info, FileBodyOf(path));
    info.fileSize = TrackFileSize(file.fileSize());
    info.seekable = sf.seekable ? 1 : 0;
    info.decoderEqualizes = 0;
    info.duration = static_cast<uint32_t>(std::min<uint64_t>(
        static_cast<uint64_t>(file.frames()) * 1000 / static_cast<uint64_t>(sf.samplerate),
        std::numeric_limits<uint32_t>::max()));
    info.bitrate = BitRate(file);
    info.sampleRate = sf.samplerate;
    info.channels = file.channels();
    info.bitsPerSample = file.bitsPerSample();
}

}  // namespace verdin::sndfile
