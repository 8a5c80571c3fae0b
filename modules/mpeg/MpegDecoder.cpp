#include "MpegDecoder.h"

#include <algorithm>
#include <limits>

namespace verdin::mpeg {

namespace {

MpegDecoder* Self(InputDecoder* decoder) {
    return static_cast<MpegDecoder*>(decoder);
}

}  // namespace

MpegDecoder::MpegDecoder(Mpg123Handle handle)
    : InputDecoder{&kOps}, handle_(std::move(handle)), file_(handle_.get()) {}

MpegDecoder* MpegDecoder::Open(const char* path, uint32_t dataOffset) {
    Mpg123Handle handle = NewMpg123Handle();
    if (!handle) return nullptr;
    auto* decoder = new MpegDecoder(std::move(handle));
    if (!decoder->file_.Open(path, dataOffset)) {
        delete decoder;
        return nullptr;
    }
    // From here on the output keeps the format the first frame announced, as with
    // mpg123_open_fixed: libmpg123 mixes later stereo frames down to mono or doubles mono
    // ones, and resamples frames at another rate (streams joined one after another, or
    // damage that happens to look like a frame header). And damage of any length is
    // searched past to the next good frame, so the track ends where the data ends, not at
    // the first stretch of junk longer than libmpg123's default resync window.
    mpg123_handle* opened = decoder->handle_.get();
    const int channels = decoder->file_.channels();
    if (mpg123_format_none(opened) != MPG123_OK ||
        mpg123_format(opened, decoder->file_.sampleRate(), channels == 1 ? MPG123_MONO : MPG123_STEREO,
                      MPG123_ENC_SIGNED_16) != MPG123_OK ||
        mpg123_param(opened, MPG123_RESYNC_LIMIT, -1, 0.0) != MPG123_OK) {
        delete decoder;
        return nullptr;
    }
    decoder->frameBytes_ = 2 * static_cast<size_t>(channels);
    decoder->file_.EnableReadAhead(64 * 1024);
    return decoder;
}

uint32_t MpegDecoder::Decode(const void** block) {
    *block = nullptr;
    for (;;) {
        off_t frameNumber = 0;
        unsigned char* audio = nullptr;
        size_t bytes = 0;
        const int result = mpg123_decode_frame(handle_.get(), &frameNumber, &audio, &bytes);
        if (result == MPG123_NEW_FORMAT) {
            // The output format is pinned (see Open), so this can only announce the same
            // one again; PCM in any other would not be what the track announced.
            long rate = 0;
            int channels = 0, encoding = 0;
            mpg123_getformat(handle_.get(), &rate, &channels, &encoding);
            if (rate != file_.sampleRate() || channels != file_.channels()) return 0;
            continue;
        }
        if (result != MPG123_OK) return 0;  // the end, or damage the decoder cannot pass
        // The player takes whole sample frames only. From a damaged stream, libmpg123 can
        // hand out a torn one after a seek; its tail is dropped. A frame wholly cut by
        // gapless trimming yields nothing at all: go on to the next one.
        bytes -= bytes % frameBytes_;
        if (bytes == 0) continue;
        *block = audio;
        return static_cast<uint32_t>(bytes);
    }
}

uint32_t MpegDecoder::Seek(uint32_t milliseconds) {
    const auto rate = static_cast<int64_t>(file_.sampleRate());
    int64_t target = (static_cast<int64_t>(milliseconds) * rate + 500) / 1000;
    const int64_t length = file_.LengthInSamples();
    if (length >= 0) target = std::min(target, length);
    off_t reached = mpg123_seek(handle_.get(), static_cast<off_t>(target), SEEK_SET);
    if (reached < 0) reached = mpg123_tell(handle_.get());
    if (reached < 0) reached = 0;
    const int64_t ms = (static_cast<int64_t>(reached) * 1000 + rate / 2) / rate;
    return static_cast<uint32_t>(std::min<int64_t>(ms, std::numeric_limits<uint32_t>::max()));
}

const InputDecoderOps MpegDecoder::kOps = {
    [](InputDecoder* self, const void** block) { return Self(self)->Decode(block); },
    [](InputDecoder* self, uint32_t milliseconds) { return Self(self)->Seek(milliseconds); },
    // The player's own equalizer does the work (decoderEqualizes is 0), so the switch and
    // the values are not needed here. Doing nothing also makes them safe to call from the
    // user-interface thread while Decode runs.
    [](InputDecoder*, int32_t) {},
    [](InputDecoder*, const EqualizerValues*) {},
    [](InputDecoder* self) { delete Self(self); },
};

}  // namespace verdin::mpeg
