#pragma once
// One connection to a station through FFmpeg: opens the address, finds its audio, and
// hands out its sound as 16-bit interleaved PCM in the fixed format the module reports
// before it ever connects (kRate frames per second, kChannels channels), resampled and
// mixed down as needed.
//
// No call waits on the network longer than kTimeout: every blocking step has a deadline
// that FFmpeg's interrupt callback checks, and Interrupt makes the waiting step give up
// at once. Threads: the stream thread makes every call except Interrupt, which any
// thread may make.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include "RadioStation.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace verdin::radio {

class StreamConnection {
public:
    static constexpr int kRate = kStationRate;
    static constexpr int kChannels = kStationChannels;
    static constexpr std::chrono::seconds kTimeout{5};

    StreamConnection() = default;
    ~StreamConnection();
    StreamConnection(const StreamConnection&) = delete;
    StreamConnection& operator=(const StreamConnection&) = delete;

    // Connects and prepares decoding; false with Error() set when it cannot.
    bool Open(const std::string& url);
    // The next block of PCM (valid until the next call) and its size in bytes; 0 at the
    // end of the stream, or with Error() set when the server failed.
    uint32_t Read(const uint8_t** block);
    void Interrupt() { interrupted_.store(true, std::memory_order_release); }

    const std::string& Error() const { return error_; }
    // The metadata block and the response headers of the ICY protocol as last received.
    std::string IcyMetadata() const { return HttpOption("icy_metadata_packet"); }
    std::string IcyHeaders() const { return HttpOption("icy_metadata_headers"); }

private:
    static int InterruptCallback(void* self);
    void ArmDeadline() { deadline_ = std::chrono::steady_clock::now() + kTimeout; }
    bool OpenDecoder();
    uint32_t Convert();
    std::string HttpOption(const char* name) const;

    std::string url_;
    AVFormatContext* format_ = nullptr;
    AVCodecContext* codec_ = nullptr;
    SwrContext* resampler_ = nullptr;
    AVPacket* packet_ = nullptr;
    AVFrame* frame_ = nullptr;
    int streamIndex_ = -1;
    bool draining_ = false;  // the input ended: the decoder gives back what it holds
    std::vector<uint8_t> pcm_;
    std::string error_;
    // The step in progress gives up at this time; the stream thread's own.
    std::chrono::steady_clock::time_point deadline_{};
    // Raised by any thread, read by the interrupt callback on the stream thread.
    std::atomic<bool> interrupted_{false};
};

}  // namespace verdin::radio
