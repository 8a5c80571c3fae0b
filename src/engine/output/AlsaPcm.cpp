#include "AlsaPcm.h"

#include "engine/output/AlsaApi.h"

#include <poll.h>

#include <algorithm>

namespace verdin {

namespace {

// Latency asked for: 100 ms, short enough that a volume change is heard at once (a pause
// holds the card where it is), long enough that a busy desktop does not starve the card
// and that the device thread and a sound server's plug-in wake about 40 times a second
// rather than 80. Never more than 8000 frames: a crossfade mixes into the ring no nearer
// than 12000 frames to what is being heard, and what ALSA holds can no longer change.
constexpr unsigned kLatencyMicroseconds = 100000;
constexpr unsigned kMostLatencyFrames = 8000;

unsigned LatencyMicroseconds(uint32_t sampleRate) {
    const uint64_t cap = uint64_t{kMostLatencyFrames} * 1'000'000 / sampleRate;
    return static_cast<unsigned>(std::min<uint64_t>(kLatencyMicroseconds, cap));
}

struct FormatRow {
    uint32_t bits;
    snd_pcm_format_t format;
};
constexpr FormatRow kFormats[] = {
    {8, SND_PCM_FORMAT_U8},
    {16, SND_PCM_FORMAT_S16_LE},
    {24, SND_PCM_FORMAT_S24_3LE},
    {32, SND_PCM_FORMAT_S32_LE},
};

std::string Reason(const char* what, const std::string& name, int code) {
    return std::string(what) + " \"" + name + "\": " + Alsa()->snd_strerror(code);
}

// ALSA's library writes its own complaints to standard error ("Unknown PCM default", ...);
// the player reports failures itself, in its own words, where the user sees them.
extern "C" void QuietAlsaErrors(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

std::unique_ptr<AlsaPcm> AlsaPcm::Open(const std::string& name, const PcmFormat& format,
                                       std::string* error) {
    if (!Alsa()) {
        *error = kAlsaLibraryMissing;
        return nullptr;
    }
    snd_pcm_format_t sampleFormat = SND_PCM_FORMAT_UNKNOWN;
    for (const FormatRow& row : kFormats)
        if (row.bits == format.bitsPerSample) sampleFormat = row.format;
    if (sampleFormat == SND_PCM_FORMAT_UNKNOWN || format.channels == 0 || format.sampleRate == 0) {
        *error = "unsupported sample format for \"" + name + "\"";
        return nullptr;
    }
    static const bool quiet = [] { return Alsa()->snd_lib_error_set_handler(&QuietAlsaErrors) == 0; }();
    (void)quiet;
    snd_pcm_t* raw = nullptr;
    int rc = Alsa()->snd_pcm_open(&raw, name.c_str(), SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (rc < 0) {
        *error = Reason("cannot open ALSA device", name, rc);
        return nullptr;
    }
    std::unique_ptr<AlsaPcm> pcm(new AlsaPcm(raw));
    rc = Alsa()->snd_pcm_set_params(raw, sampleFormat, SND_PCM_ACCESS_RW_INTERLEAVED, format.channels,
                            format.sampleRate, 1, LatencyMicroseconds(format.sampleRate));
    if (rc < 0) {
        *error = Reason("cannot configure ALSA device", name, rc);
        return nullptr;
    }
    snd_pcm_uframes_t bufferSize = 0, periodSize = 0;
    Alsa()->snd_pcm_get_params(raw, &bufferSize, &periodSize);
    pcm->bufferFrames_ = static_cast<uint32_t>(bufferSize);

    // Start with the first frame written rather than with a full buffer: the last frames
    // of a track may be fewer than a buffer, and they must be heard too.
    snd_pcm_sw_params_t* sw = nullptr;
    if (Alsa()->snd_pcm_sw_params_malloc(&sw) == 0) {
        if (Alsa()->snd_pcm_sw_params_current(raw, sw) == 0 &&
            Alsa()->snd_pcm_sw_params_set_start_threshold(raw, sw, 1) == 0)
            rc = Alsa()->snd_pcm_sw_params(raw, sw);
        Alsa()->snd_pcm_sw_params_free(sw);
        if (rc < 0) {
            *error = Reason("cannot configure ALSA device", name, rc);
            return nullptr;
        }
    }

    snd_pcm_hw_params_t* hw = nullptr;
    if (Alsa()->snd_pcm_hw_params_malloc(&hw) == 0) {
        if (Alsa()->snd_pcm_hw_params_current(raw, hw) == 0)
            pcm->canPause_ = Alsa()->snd_pcm_hw_params_can_pause(hw) != 0;
        Alsa()->snd_pcm_hw_params_free(hw);
    }
    pcm->pacedByClock_ = Alsa()->snd_pcm_type(raw) == SND_PCM_TYPE_NULL;
    return pcm;
}

AlsaPcm::~AlsaPcm() {
    Alsa()->snd_pcm_drop(pcm_);
    Alsa()->snd_pcm_close(pcm_);
}

long AlsaPcm::Avail() { return Alsa()->snd_pcm_avail_update(pcm_); }

long AlsaPcm::Write(const uint8_t* data, uint32_t frames) {
    return Alsa()->snd_pcm_writei(pcm_, data, frames);
}

long AlsaPcm::Delay(long* frames) {
    snd_pcm_sframes_t delay = 0;
    const int rc = Alsa()->snd_pcm_delay(pcm_, &delay);
    *frames = delay;
    return rc;
}

int AlsaPcm::Pause(bool hold) { return Alsa()->snd_pcm_pause(pcm_, hold ? 1 : 0); }

void AlsaPcm::Drop() { Alsa()->snd_pcm_drop(pcm_); }

int AlsaPcm::Prepare() { return Alsa()->snd_pcm_prepare(pcm_); }

int AlsaPcm::Recover(int error) { return Alsa()->snd_pcm_recover(pcm_, error, 1); }

snd_pcm_state_t AlsaPcm::State() { return Alsa()->snd_pcm_state(pcm_); }

std::vector<struct pollfd> AlsaPcm::PollDescriptors() {
    const int count = Alsa()->snd_pcm_poll_descriptors_count(pcm_);
    std::vector<struct pollfd> fds(count > 0 ? static_cast<size_t>(count) : 0);
    if (!fds.empty()) {
        const int got = Alsa()->snd_pcm_poll_descriptors(pcm_, fds.data(), static_cast<unsigned>(count));
        fds.resize(got > 0 ? static_cast<size_t>(got) : 0);
    }
    return fds;
}

bool AlsaPcm::ReadyToWrite(std::vector<struct pollfd>& fds) {
    unsigned short revents = 0;
    if (Alsa()->snd_pcm_poll_descriptors_revents(pcm_, fds.data(), static_cast<unsigned>(fds.size()),
                                         &revents) < 0)
        return true;  // let the next write report what is wrong
    return (revents & (POLLOUT | POLLERR)) != 0;
}

}  // namespace verdin
