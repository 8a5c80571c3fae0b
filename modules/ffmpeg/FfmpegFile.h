#pragma once
// A file opened with libavformat and its best audio stream's decoder, from the data
// offset on, with what the module makes of it: the rate stays the file's, one channel
// stays mono, two or more become stereo (see PcmConverter.h), samples are 16-bit.
//
// The length: where the container counts the stream's duration in samples (MP4 with
// its edit list, WavPack, Monkey's Audio, CAF...) that count is exact, and the decoder
// stops there, which also drops the encoder's padding after the last frame. Otherwise
// (Matroska, ASF, raw AAC) the container's estimate is shown and the decoder plays
// whatever the stream holds.
// Not copied or moved: the format context keeps a pointer to the source.
#include "FfmpegSource.h"

#include <cstdint>

struct AVFormatContext;
struct AVCodecContext;
struct AVStream;

namespace verdin::ffmpeg {

class FfmpegFile {
public:
    FfmpegFile() = default;
    ~FfmpegFile();
    FfmpegFile(const FfmpegFile&) = delete;
    FfmpegFile& operator=(const FfmpegFile&) = delete;

    // False when the file cannot be read, holds no audio stream, or has no decoder here.
    bool Open(const char* path, uint32_t dataOffset);

    AVFormatContext* format() const { return format_; }
    AVCodecContext* codec() const { return codec_; }
    AVStream* stream() const { return stream_; }
    int streamIndex() const { return streamIndex_; }
    const FfmpegSource& source() const { return source_; }

    int sampleRate() const { return sampleRate_; }
    int channels() const { return channels_; }  // what the player gets: 1 or 2
    int bytesPerFrame() const { return 2 * channels_; }
    // The track's length in frames; exact when hasExactLength(), 0 when unknown.
    int64_t frames() const { return frames_; }
    bool hasExactLength() const { return exactLength_; }

private:
    void Close();

    FfmpegSource source_;
    AVFormatContext* format_ = nullptr;
    AVCodecContext* codec_ = nullptr;
    AVStream* stream_ = nullptr;
    int streamIndex_ = -1;
    int sampleRate_ = 0;
    int channels_ = 0;
    int64_t frames_ = 0;
    bool exactLength_ = false;
};

}  // namespace verdin::ffmpeg
