#pragma once
// One playing file: the decoded frames converted to the player's PCM, one frame per
// block, cut to the track's exact length where the container states it.
//
// Positions are counted in frames from the first sample of the track, which is the first
// sample the decoder delivers from the start, after it trimmed the encoder's delay. Its
// time stamp is the origin that later time stamps are measured from. A seek goes back a
// little further than asked, to a key point at least kPrerollSeconds plus the codec's own
// pre-roll before the target, so that codecs whose frames overlap (AAC, Opus) have their
// history; the frames before the target are then decoded and dropped, which lands on the
// exact frame, as exact as the container's clock: where it counts samples (MP4, WavPack,
// Monkey's Audio) to the sample, on Matroska's millisecond clock within a millisecond. A
// target inside the first pre-roll, or one the container cannot seek to, is reached by
// opening the file again and decoding from its start, which is exact everywhere.
#include "FfmpegFile.h"
#include "FfmpegFrames.h"
#include "PcmConverter.h"

#include <verdin/input.h>

#include <cstdint>
#include <memory>
#include <string>

namespace verdin::ffmpeg {

class FfmpegDecoder : public InputDecoder {
public:
    // A decoder positioned at the start of the track, or null when the file cannot be
    // opened or its first frame does not decode.
    static FfmpegDecoder* Open(const char* path, uint32_t dataOffset);

    FfmpegDecoder(const FfmpegDecoder&) = delete;
    FfmpegDecoder& operator=(const FfmpegDecoder&) = delete;

    const FfmpegFile& file() const { return *file_; }

private:
    static constexpr int kPrerollDivisor = 10;  // a tenth of a second of pre-roll

    FfmpegDecoder();
    // Opens the file and reads its first frame: the decoder's state at the track's start.
    bool Start();

    uint32_t Decode(const void** block);
    uint32_t Seek(uint32_t milliseconds);

    static const InputDecoderOps kOps;

    std::string path_;
    uint32_t dataOffset_ = 0;
    std::unique_ptr<FfmpegFile> file_;
    std::unique_ptr<FfmpegFrames> frames_;
    std::unique_ptr<PcmConverter> converter_;
    const AVFrame* pending_ = nullptr;  // the first frame, read at the start, not yet delivered
    int64_t origin_ = 0;                // the first frame's time stamp, in samples
    int64_t next_ = 0;                  // the position of the next frame's first sample
    int64_t skipTo_ = 0;                // samples before this position are dropped
    bool placeNext_ = false;            // the next frame's position comes from its time stamp
};

}  // namespace verdin::ffmpeg
