#pragma once
// A thin owner of one ALSA playback PCM, opened non-blocking so that the device thread
// that drives it never blocks in a call it cannot wake from.
#include "engine/PcmFormat.h"

#include <alsa/asoundlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace verdin {

class AlsaPcm {
public:
    // Opens and configures the PCM for interleaved frames of format, with a short
    // buffer (so that pause and volume take effect quickly). Null with the reason in
    // *error on failure.
    static std::unique_ptr<AlsaPcm> Open(const std::string& name, const PcmFormat& format,
                                         std::string* error);
    ~AlsaPcm();
    AlsaPcm(const AlsaPcm&) = delete;
    AlsaPcm& operator=(const AlsaPcm&) = delete;

    // The `null` PCM takes every frame at once and reports no delay: whoever drives it
    // must keep time by the clock.
    bool PacedByClock() const { return pacedByClock_; }
    bool CanPause() const { return canPause_; }
    uint32_t BufferFrames() const { return bufferFrames_; }

    // Frames that can be written now, or a negative error code.
    long Avail();
    // Frames written (possibly fewer than asked), or a negative error code.
    long Write(const uint8_t* data, uint32_t frames);
    // Frames handed over but not yet heard; a negative error code on failure.
    long Delay(long* frames);
    int Pause(bool hold);
    void Drop();
    int Prepare();
    // Brings the PCM back after an underrun or a suspend; a negative code if it cannot.
    int Recover(int error);
    snd_pcm_state_t State();

    // Descriptors to poll for room to write.
    std::vector<struct pollfd> PollDescriptors();
    // Whether the polled descriptors say there is room to write.
    bool ReadyToWrite(std::vector<struct pollfd>& fds);

private:
    explicit AlsaPcm(snd_pcm_t* pcm) : pcm_(pcm) {}
    snd_pcm_t* pcm_;
    bool pacedByClock_ = false;
    bool canPause_ = false;
    uint32_t bufferFrames_ = 0;
};

}  // namespace verdin
