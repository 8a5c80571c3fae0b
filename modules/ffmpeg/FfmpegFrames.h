#pragma once
// The decoded frames of a file's audio stream, one after another: packets are read and
// fed to the decoder as it asks for them, and at the end of the file the decoder is
// drained of what it still holds.
//
// A damaged packet that the decoder refuses is skipped, as players do; after
// kMaxRefusals refusals in a row the stream counts as ended, so that a file of garbage
// behind a valid header ends the track instead of spinning.
#include <cstdint>

struct AVFrame;
struct AVPacket;

namespace verdin::ffmpeg {

class FfmpegFile;

class FfmpegFrames {
public:
    explicit FfmpegFrames(const FfmpegFile& file);
    ~FfmpegFrames();
    FfmpegFrames(const FfmpegFrames&) = delete;
    FfmpegFrames& operator=(const FfmpegFrames&) = delete;

    // The next frame, owned here and valid until the next call; null at the end.
    const AVFrame* Next();
    // The frame's time stamp in samples of the file's rate, or INT64_MIN when it has none.
    int64_t TimeOf(const AVFrame& frame) const;
    // Moves the demuxer to the last key point at or before the time (in samples of the
    // file's rate, on the stream's own clock) and flushes the decoder; false when the
    // container cannot seek there.
    bool SeekBefore(int64_t sample);

private:
    static constexpr int kMaxRefusals = 64;

    const FfmpegFile& file_;
    AVPacket* packet_;
    AVFrame* frame_;
    bool draining_ = false;
};

}  // namespace verdin::ffmpeg
