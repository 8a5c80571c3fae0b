#include "StreamConnection.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace verdin::radio {

namespace {

std::string ErrorText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return text;
}

}  // namespace

StreamConnection::~StreamConnection() {
    Interrupt();
    swr_free(&resampler_);
    avcodec_free_context(&codec_);
    avformat_close_input(&format_);
    av_packet_free(&packet_);
    av_frame_free(&frame_);
}

int StreamConnection::InterruptCallback(void* self) {
    auto* connection = static_cast<StreamConnection*>(self);
    return connection->interrupted_.load(std::memory_order_acquire) ||
           std::chrono::steady_clock::now() > connection->deadline_;
}

bool StreamConnection::Open(const std::string& url) {
    url_ = url;
    packet_ = av_packet_alloc();
    frame_ = av_frame_alloc();
    format_ = avformat_alloc_context();
    if (!packet_ || !frame_ || !format_) {
        error_ = "Out of memory while opening \"" + url + "\".";
        return false;
    }
    format_->interrupt_callback = {&StreamConnection::InterruptCallback, this};
    AVDictionary* options = nullptr;
    // The read timeout (in microseconds) also bounds connecting; the deadline above
    // bounds everything else, name lookup and TLS included.
    const auto timeoutUs = std::chrono::duration_cast<std::chrono::microseconds>(kTimeout).count();
    av_dict_set_int(&options, "rw_timeout", timeoutUs, 0);
    av_dict_set(&options, "icy", "1", 0);
    av_dict_set(&options, "user_agent", "Verdin/" VERDIN_MODULE_VERSION, 0);
    ArmDeadline();
    const int opened = avformat_open_input(&format_, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (opened < 0) {
        error_ = "Cannot connect to \"" + url + "\": " + ErrorText(opened) + ".";
        return false;
    }
    return OpenDecoder();
}

bool StreamConnection::OpenDecoder() {
    ArmDeadline();
    if (const int found = avformat_find_stream_info(format_, nullptr); found < 0) {
        error_ = "Cannot read the stream \"" + url_ + "\": " + ErrorText(found) + ".";
        return false;
    }
    const AVCodec* decoder = nullptr;
    streamIndex_ = av_find_best_stream(format_, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (streamIndex_ < 0 || !decoder) {
        error_ = "The stream \"" + url_ + "\" holds no audio that can be played.";
        return false;
    }
    codec_ = avcodec_alloc_context3(decoder);
    AVChannelLayout out = AV_CHANNEL_LAYOUT_STEREO;
    if (!codec_ || avcodec_parameters_to_context(codec_, format_->streams[streamIndex_]->codecpar) < 0 ||
        avcodec_open2(codec_, decoder, nullptr) < 0 ||
        swr_alloc_set_opts2(&resampler_, &out, AV_SAMPLE_FMT_S16, kRate, &codec_->ch_layout, codec_->sample_fmt,
                            codec_->sample_rate, 0, nullptr) < 0 ||
        swr_init(resampler_) < 0) {
        error_ = "The stream \"" + url_ + "\" holds audio that cannot be decoded.";
        return false;
    }
    return true;
}

uint32_t StreamConnection::Read(const uint8_t** block) {
    while (true) {
        const int received = avcodec_receive_frame(codec_, frame_);
        if (received == 0) {
            if (const uint32_t bytes = Convert(); bytes > 0) {
                *block = pcm_.data();
                return bytes;
            }
            continue;
        }
        if (received == AVERROR_EOF) return 0;
        if (received != AVERROR(EAGAIN)) {
            error_ = "The stream \"" + url_ + "\" cannot be decoded: " + ErrorText(received) + ".";
            return 0;
        }
        if (draining_) return 0;
        ArmDeadline();
        const int read = av_read_frame(format_, packet_);
        if (read == AVERROR_EOF) {
            // A finite file has ended: the decoder gives back what it still holds.
            draining_ = true;
            avcodec_send_packet(codec_, nullptr);
            continue;
        }
        if (read < 0) {
            if (!interrupted_.load(std::memory_order_acquire))
                error_ = "The server stopped sending \"" + url_ + "\" (" + ErrorText(read) + ").";
            return 0;
        }
        // A damaged packet is dropped; the station goes on.
        if (packet_->stream_index == streamIndex_) avcodec_send_packet(codec_, packet_);
        av_packet_unref(packet_);
    }
}

uint32_t StreamConnection::Convert() {
    const int capacity = swr_get_out_samples(resampler_, frame_->nb_samples);
    if (capacity <= 0) return 0;
    pcm_.resize(static_cast<size_t>(capacity) * kChannels * 2);
    uint8_t* out = pcm_.data();
    const int frames = swr_convert(resampler_, &out, capacity, const_cast<const uint8_t**>(frame_->extended_data),
                                   frame_->nb_samples);
    av_frame_unref(frame_);
    return frames > 0 ? static_cast<uint32_t>(frames) * kChannels * 2 : 0;
}

std::string StreamConnection::HttpOption(const char* name) const {
    if (!format_ || !format_->pb) return {};
    uint8_t* value = nullptr;
    if (av_opt_get(format_->pb, name, AV_OPT_SEARCH_CHILDREN, &value) < 0 || !value) return {};
    std::string text(reinterpret_cast<const char*>(value));
    av_free(value);
    return text;
}

}  // namespace verdin::radio
