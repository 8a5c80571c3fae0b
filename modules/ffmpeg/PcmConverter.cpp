#include "PcmConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace verdin::ffmpeg {

namespace {

// -3 dB, the ITU level of the centre and the surrounds in a stereo downmix.
constexpr double kMinus3dB = 0.70710678118654752;

// The layout the frame's channels are mixed from: the one the decoder names, or the
// default order for its count when it names none. Mono and stereo are taken as such, so
// that they pass through unmixed.
AVChannelLayout InputLayout(const AVFrame& frame) {
    AVChannelLayout layout{};
    const int count = frame.ch_layout.nb_channels;
    if (count <= 2 || frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) av_channel_layout_default(&layout, count);
    else av_channel_layout_copy(&layout, &frame.ch_layout);
    return layout;
}

}  // namespace

PcmConverter::~PcmConverter() {
    swr_free(&swr_);
}

bool PcmConverter::Configure(const AVFrame& frame) {
    swr_free(&swr_);
    inputFormat_ = frame.format, inputRate_ = frame.sample_rate, inputChannels_ = frame.ch_layout.nb_channels;
    AVChannelLayout in = InputLayout(frame), out{};
    av_channel_layout_default(&out, channels_);
    const int made = swr_alloc_set_opts2(&swr_, &out, AV_SAMPLE_FMT_S16, sampleRate_, &in,
                                         static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    av_channel_layout_uninit(&in);
    if (made < 0 || !swr_) return false;
    av_opt_set_double(swr_, "center_mix_level", kMinus3dB, 0);
    av_opt_set_double(swr_, "surround_mix_level", kMinus3dB, 0);
    av_opt_set_double(swr_, "lfe_mix_level", 0.0, 0);
    av_opt_set_double(swr_, "rematrix_maxval", 1.0, 0);  // normalise: never past full scale
    av_opt_set_int(swr_, "dither_method", 0, 0);
    if (swr_init(swr_) < 0) {
        swr_free(&swr_);
        return false;
    }
    return true;
}

const int16_t* PcmConverter::Convert(const AVFrame& frame, int* frames) {
    *frames = 0;
    if (frame.format != inputFormat_ || frame.sample_rate != inputRate_ ||
        frame.ch_layout.nb_channels != inputChannels_ || !swr_) {
        if (frame.sample_rate <= 0 || frame.ch_layout.nb_channels <= 0 || !Configure(frame)) return nullptr;
    }
    const int capacity = swr_get_out_samples(swr_, frame.nb_samples);
    if (capacity < 0) return nullptr;
    samples_.resize(static_cast<size_t>(capacity) * static_cast<size_t>(channels_));
    auto* out = reinterpret_cast<uint8_t*>(samples_.data());
    const auto** in = const_cast<const uint8_t**>(frame.extended_data);
    const int converted = swr_convert(swr_, &out, capacity, in, frame.nb_samples);
    if (converted < 0) return nullptr;
    *frames = converted;
    return samples_.data();
}

}  // namespace verdin::ffmpeg
