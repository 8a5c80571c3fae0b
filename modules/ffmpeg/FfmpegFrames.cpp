#include "FfmpegFrames.h"

#include "FfmpegFile.h"

#include <limits>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace verdin::ffmpeg {

FfmpegFrames::FfmpegFrames(const FfmpegFile& file)
    : file_(file), packet_(av_packet_alloc()), frame_(av_frame_alloc()) {}

FfmpegFrames::~FfmpegFrames() {
    av_packet_free(&packet_);
    av_frame_free(&frame_);
}

const AVFrame* FfmpegFrames::Next() {
    if (!packet_ || !frame_) return nullptr;
    int refusals = 0;
    for (;;) {
        const int received = avcodec_receive_frame(file_.codec(), frame_);
        if (received == 0) return frame_;
        if (received != AVERROR(EAGAIN) || draining_) return nullptr;  // the end, or a broken decoder
        if (av_read_frame(file_.format(), packet_) < 0) {
            // End of file or a read error: what the decoder still holds comes out, then the end.
            draining_ = true;
            avcodec_send_packet(file_.codec(), nullptr);
            continue;
        }
        if (packet_->stream_index == file_.streamIndex()) {
            const int sent = avcodec_send_packet(file_.codec(), packet_);
            refusals = sent < 0 ? refusals + 1 : 0;
        }
        av_packet_unref(packet_);
        if (refusals > kMaxRefusals) return nullptr;
    }
}

int64_t FfmpegFrames::TimeOf(const AVFrame& frame) const {
    const int64_t stamp = frame.best_effort_timestamp != AV_NOPTS_VALUE ? frame.best_effort_timestamp : frame.pts;
    if (stamp == AV_NOPTS_VALUE) return std::numeric_limits<int64_t>::min();
    return av_rescale_q(stamp, file_.stream()->time_base, AVRational{1, file_.sampleRate()});
}

bool FfmpegFrames::SeekBefore(int64_t sample) {
    const int64_t stamp = av_rescale_q(sample, AVRational{1, file_.sampleRate()}, file_.stream()->time_base);
    if (av_seek_frame(file_.format(), file_.streamIndex(), stamp, AVSEEK_FLAG_BACKWARD) < 0) return false;
    avcodec_flush_buffers(file_.codec());
    draining_ = false;
    return true;
}

}  // namespace verdin::ffmpeg
