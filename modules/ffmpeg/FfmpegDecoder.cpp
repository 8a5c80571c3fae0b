#include "FfmpegDecoder.h"

#include <algorithm>
#include <limits>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace verdin::ffmpeg {

namespace {

FfmpegDecoder* Self(InputDecoder* decoder) {
    return static_cast<FfmpegDecoder*>(decoder);
}

}  // namespace

FfmpegDecoder::FfmpegDecoder() : InputDecoder{&kOps} {}

FfmpegDecoder* FfmpegDecoder::Open(const char* path, uint32_t dataOffset) {
    auto* decoder = new FfmpegDecoder();
    decoder->path_ = path;
    decoder->dataOffset_ = dataOffset;
    if (!decoder->Start()) {
        delete decoder;
        return nullptr;
    }
    return decoder;
}

bool FfmpegDecoder::Start() {
    frames_.reset();
    pending_ = nullptr;
    next_ = skipTo_ = 0;
    placeNext_ = false;
    file_ = std::make_unique<FfmpegFile>();
    if (!file_->Open(path_.c_str(), dataOffset_)) return false;
    frames_ = std::make_unique<FfmpegFrames>(*file_);
    if (!converter_) converter_ = std::make_unique<PcmConverter>(file_->sampleRate(), file_->channels());
    pending_ = frames_->Next();
    if (!pending_) return false;
    const int64_t first = frames_->TimeOf(*pending_);
    origin_ = first == std::numeric_limits<int64_t>::min() ? 0 : first;
    return true;
}

uint32_t FfmpegDecoder::Decode(const void** block) {
    *block = nullptr;
    const int64_t end = file_->hasExactLength() ? file_->frames() : std::numeric_limits<int64_t>::max();
    for (;;) {
        if (!frames_) return 0;  // the file went away when it was opened again
        const AVFrame* frame = pending_ ? pending_ : frames_->Next();
        pending_ = nullptr;
        if (!frame) return 0;
        int64_t at = next_;
        if (placeNext_) {
            const int64_t time = frames_->TimeOf(*frame);
            if (time != std::numeric_limits<int64_t>::min()) at = time - origin_;
            placeNext_ = false;
        }
        int count = 0;
        const int16_t* pcm = converter_->Convert(*frame, &count);
        if (!pcm) return 0;
        next_ = at + count;
        const int64_t from = std::max(at, skipTo_), to = std::min(next_, end);
        if (at >= end) return 0;
        if (to <= from) continue;
        *block = pcm + (from - at) * file_->channels();
        return static_cast<uint32_t>((to - from) * file_->bytesPerFrame());
    }
}

uint32_t FfmpegDecoder::Seek(uint32_t milliseconds) {
    if (!frames_) return 0;  // the track ended when the file could not be opened again
    const int64_t rate = file_->sampleRate();
    int64_t target = (static_cast<int64_t>(milliseconds) * rate + 500) / 1000;
    if (file_->hasExactLength()) target = std::min(target, file_->frames());
    const int64_t preroll = rate / kPrerollDivisor + std::max(file_->stream()->codecpar->seek_preroll, 0);
    if (target > preroll && frames_->SeekBefore(origin_ + target - preroll)) {
        pending_ = nullptr;
        placeNext_ = true;
        next_ = target;  // for frames without time stamps
    } else if (!Start()) {
        frames_.reset();  // the file cannot be read again: the track ends
    }
    skipTo_ = target;
    const int64_t ms = (target * 1000 + rate / 2) / rate;
    return static_cast<uint32_t>(std::clamp<int64_t>(ms, 0, std::numeric_limits<uint32_t>::max()));
}

const InputDecoderOps FfmpegDecoder::kOps = {
    [](InputDecoder* self, const void** block) { return Self(self)->Decode(block); },
    [](InputDecoder* self, uint32_t milliseconds) { return Self(self)->Seek(milliseconds); },
    // The player's own equalizer does the work (decoderEqualizes is 0), so the switch and
    // the values are not needed here, which also makes them safe to call from the
    // user-interface thread while Decode runs.
    [](InputDecoder*, int32_t) {},
    [](InputDecoder*, const EqualizerValues*) {},
    [](InputDecoder* self) { delete Self(self); },
};

}  // namespace verdin::ffmpeg
