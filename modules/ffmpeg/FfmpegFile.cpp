#include "FfmpegFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace verdin::ffmpeg {

FfmpegFile::~FfmpegFile() {
    Close();
}

void FfmpegFile::Close() {
    avcodec_free_context(&codec_);
    if (format_) avformat_close_input(&format_);
    stream_ = nullptr;
    streamIndex_ = -1;
}

bool FfmpegFile::Open(const char* path, uint32_t dataOffset) {
    Close();
    if (!source_.Open(path, dataOffset)) return false;
    format_ = avformat_alloc_context();
    if (!format_) return false;
    format_->pb = source_.io();
    format_->flags |= AVFMT_FLAG_CUSTOM_IO;
    // The track is this one file: a playlist-like container (HLS, concat, an MP4 with
    // references) must not make FFmpeg open other files or network addresses.
    format_->io_open = [](AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) { return AVERROR(EPERM); };
    // The path names the file for probing by extension; the bytes come from the source.
    if (avformat_open_input(&format_, path, nullptr, nullptr) < 0) return false;  // frees format_
    if (avformat_find_stream_info(format_, nullptr) < 0) return false;
    const AVCodec* decoder = nullptr;
    streamIndex_ = av_find_best_stream(format_, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (streamIndex_ < 0 || !decoder) return false;
    stream_ = format_->streams[streamIndex_];
    for (unsigned i = 0; i < format_->nb_streams; ++i)
        if (static_cast<int>(i) != streamIndex_) format_->streams[i]->discard = AVDISCARD_ALL;
    const AVCodecParameters* parameters = stream_->codecpar;
    sampleRate_ = parameters->sample_rate;
    channels_ = parameters->ch_layout.nb_channels == 1 ? 1 : 2;
    if (sampleRate_ <= 0 || parameters->ch_layout.nb_channels <= 0) return false;

    codec_ = avcodec_alloc_context3(decoder);
    if (!codec_ || avcodec_parameters_to_context(codec_, parameters) < 0) return false;
    // With the stream's time base the decoder moves a frame's time stamp past the samples
    // it trims from the start, so time stamps keep naming the first sample delivered.
    codec_->pkt_timebase = stream_->time_base;
    if (avcodec_open2(codec_, decoder, nullptr) < 0) return false;

    const AVRational perSample{1, sampleRate_};
    // Exact only when the container counts in samples; a millisecond clock (ASF) is not.
    exactLength_ = stream_->duration > 0 && stream_->duration != AV_NOPTS_VALUE &&
                   av_cmp_q(stream_->time_base, perSample) == 0;
    if (exactLength_) frames_ = av_rescale_q(stream_->duration, stream_->time_base, perSample);
    else if (format_->duration > 0) frames_ = av_rescale_q(format_->duration, AVRational{1, AV_TIME_BASE}, perSample);
    return true;
}

}  // namespace verdin::ffmpeg
