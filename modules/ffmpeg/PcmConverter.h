#pragma once
// Decoded frames to the player's PCM: 16-bit signed, interleaved, at the file's rate.
//
// One channel stays mono and two stay stereo, whatever layout the file names. More
// channels are mixed down to stereo by libswresample's rematrix with the ITU-R BS.775
// coefficients: front left and right at full level, centre and surrounds at -3 dB, the LFE
// channel dropped; the matrix is then scaled so that no output sum can pass full scale,
// so a downmix never clips. Wider samples keep their top 16 bits, without dither, so
// the result is the same on every run; floating-point samples are scaled and rounded.
// Rebuilt whenever the decoder's format changes mid-stream.
#include <cstdint>
#include <vector>

struct AVFrame;
struct SwrContext;

namespace verdin::ffmpeg {

class PcmConverter {
public:
    PcmConverter(int sampleRate, int channels) : sampleRate_(sampleRate), channels_(channels) {}
    ~PcmConverter();
    PcmConverter(const PcmConverter&) = delete;
    PcmConverter& operator=(const PcmConverter&) = delete;

    // The frame's samples, converted; null when libswresample refuses its format. The
    // returned samples are owned here and valid until the next call; *frames is their count.
    const int16_t* Convert(const AVFrame& frame, int* frames);

private:
    bool Configure(const AVFrame& frame);

    int sampleRate_;
    int channels_;
    SwrContext* swr_ = nullptr;
    int inputFormat_ = -1, inputRate_ = 0, inputChannels_ = 0;
    std::vector<int16_t> samples_;
};

}  // namespace verdin::ffmpeg
