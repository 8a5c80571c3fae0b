#include "SndfileDecoder.h"

#include "FloatSamples.h"

#include <algorithm>
#include <limits>

namespace verdin::sndfile {

namespace {

SndfileDecoder* Self(InputDecoder* decoder) {
    return static_cast<SndfileDecoder*>(decoder);
}

}  // namespace

SndfileDecoder::SndfileDecoder() : InputDecoder{&kOps} {}

SndfileDecoder* SndfileDecoder::Open(const char* path, uint32_t dataOffset) {
    auto* decoder = new SndfileDecoder();
    if (!decoder->file_.Open(path, dataOffset)) {
        delete decoder;
        return nullptr;
    }
    // 16-bit samples are 2-byte aligned in a new[] block of bytes.
    const auto samples = static_cast<size_t>(kBlockFrames) * static_cast<size_t>(decoder->file_.info().channels);
    decoder->block_ = std::make_unique<uint8_t[]>(static_cast<size_t>(kBlockFrames) * decoder->file_.bytesPerFrame());
    if (decoder->file_.delivery() == SampleDelivery::kFloatToSixteenBit)
        decoder->floats_ = std::make_unique<float[]>(samples);
    if (decoder->file_.downmix()) decoder->wide_ = std::make_unique<int16_t[]>(samples);
    return decoder;
}

uint32_t SndfileDecoder::Decode(const void** block) {
    *block = nullptr;
    // Folded files are read into the wide buffer first, then mixed into the block.
    auto* pcm16 = wide_ ? wide_.get() : reinterpret_cast<short*>(block_.get());
    sf_count_t frames = 0;
    switch (file_.delivery()) {
    case SampleDelivery::kStoredBytes:
        frames = sf_read_raw(file_.handle(), block_.get(), static_cast<sf_count_t>(kBlockFrames) * file_.bytesPerFrame()) /
                 file_.bytesPerFrame();  // a torn last frame is dropped
        break;
    case SampleDelivery::kSixteenBit:
        frames = sf_readf_short(file_.handle(), pcm16, kBlockFrames);
        break;
    case SampleDelivery::kFloatToSixteenBit:
        frames = sf_readf_float(file_.handle(), floats_.get(), kBlockFrames);
        if (frames > 0) FloatsToPcm16(floats_.get(), static_cast<size_t>(frames) * file_.info().channels, pcm16);
        break;
    }
    if (frames <= 0) return 0;
    if (const StereoDownmix* downmix = file_.downmix())
        downmix->Mix(pcm16, static_cast<size_t>(frames), reinterpret_cast<int16_t*>(block_.get()));
    *block = block_.get();
    return static_cast<uint32_t>(frames * file_.bytesPerFrame());
}

uint32_t SndfileDecoder::Seek(uint32_t milliseconds) {
    const auto rate = static_cast<int64_t>(file_.info().samplerate);
    int64_t target = (static_cast<int64_t>(milliseconds) * rate + 500) / 1000;
    if (file_.frames() > 0) target = std::min(target, file_.frames());
    sf_count_t reached = sf_seek(file_.handle(), target, SEEK_SET);
    if (reached < 0) reached = sf_seek(file_.handle(), 0, SEEK_CUR);
    if (reached < 0) reached = 0;
    const int64_t ms = (static_cast<int64_t>(reached) * 1000 + rate / 2) / rate;
    return static_cast<uint32_t>(std::min<int64_t>(ms, std::numeric_limits<uint32_t>::max()));
}

const InputDecoderOps SndfileDecoder::kOps = {
    [](InputDecoder* self, const void** block) { return Self(self)->Decode(block); },
    [](InputDecoder* self, uint32_t milliseconds) { return Self(self)->Seek(milliseconds); },
    // The player's own equalizer does the work (decoderEqualizes is 0), so the switch and
    // the values are not needed here. Doing nothing also makes them safe to call from the
    // user-interface thread while Decode runs.
    [](InputDecoder*, int32_t) {},
    [](InputDecoder*, const EqualizerValues*) {},
    [](InputDecoder* self) { delete Self(self); },
};

}  // namespace verdin::sndfile
