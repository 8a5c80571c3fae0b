#include "AlsaDevice.h"

#include "engine/output/AlsaApi.h"
#include "engine/output/AlsaDeviceList.h"
#include "engine/output/AlsaPcm.h"
#include "engine/output/DeviceThread.h"
#include "engine/output/GenerationCounter.h"
#include "engine/output/PlayClock.h"
#include "engine/output/SoftwareVolume.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <poll.h>
#include <vector>

namespace verdin {

namespace {

// How long the device thread sleeps at most between two looks at its requests and the
// card: it bounds how stale a position can be. 20 ms is well inside what the streams'
// buffer rules allow for (they keep 2000 frames, 45 ms, ahead of the card) and lets a
// playing device wake 50 times a second rather than 200.
constexpr int kTickMilliseconds = 20;
// Largest piece handed to ALSA in one write.
constexpr uint32_t kPieceFrames = 4096;

}  // namespace

struct AlsaDevice::Core {
    Core(PcmFormat f, uint8_t* r, uint32_t ringSize)
        : format(f),
          ring(r),
          bytesPerFrame(f.BytesPerFrame()),
          ringFrames(bytesPerFrame ? ringSize / bytesPerFrame : 0) {}

    const PcmFormat format;
    uint8_t* const ring;
    const uint32_t bytesPerFrame;
    const uint32_t ringFrames;
    std::unique_ptr<AlsaPcm> pcm;  // used by the device thread only, once it runs
    DeviceThread thread;

    // Played frames of the current run: reset by Start, published by the device thread,
    // read by every thread.
    GenerationCounter played;
    // Frames committed since Start: stream threads add, Start resets, the device thread
    // reads to know how far it may play.
    std::atomic<int64_t> committed{0};
    // End mark of SetEndOfData, -1 while more may come: stream thread writes, device reads.
    std::atomic<int64_t> endOfData{-1};
    // Volume 0..65535: the user-interface thread writes, the device thread reads.
    std::atomic<uint32_t> volume{kFullVolume};
    // The ALSA error that stopped playback, 0 while none: device thread writes once,
    // any thread reads.
    std::atomic<int> error{0};
};

namespace {

// The device thread's own state and its steps; nothing here is shared.
class Feeder {
public:
    explicit Feeder(AlsaDevice::Core& core)
        : core_(core),
          clock_(core.format.sampleRate),
          clockPaced_(core.pcm->PacedByClock()),
          aheadFrames_(std::max<uint32_t>(core.pcm->BufferFrames(), core.format.sampleRate / 20)),
          tickKeepsPcmFed_(uint64_t{core.pcm->BufferFrames()} * 1000 >=
                           uint64_t{3} * kTickMilliseconds * core.format.sampleRate),
          scratch_(size_t{kPieceFrames} * core.bytesPerFrame) {}

    void Run() {
        while (!core_.thread.QuitRequested()) {
            core_.thread.ServeRequest([this](const DeviceRequest& r) { Apply(r); });
            bool waitForRoom = false;
            if (mode_ == DeviceMode::Playing) {
                UpdatePlayed();
                waitForRoom = Feed();
            }
            core_.played.Publish(run_, static_cast<uint64_t>(played_));
            Sleep(waitForRoom);
        }
    }

private:
    bool UsesClock() const { return clockPaced_ || failed_; }

    void Apply(const DeviceRequest& r) {
        if (r.run != run_) {
            // Start: from the ring's first frame, with nothing of the last run queued.
            if (!failed_) {
                core_.pcm->Drop();
                Check(core_.pcm->Prepare());
            }
            run_ = r.run;
            handed_ = 0;
            played_ = 0;
            heldInPcm_ = false;
            EnterMode(r.mode);
            return;
        }
        if (r.mode == mode_) return;
        if (r.mode == DeviceMode::Stopped) {
            if (!failed_) {
                core_.pcm->Drop();
                Check(core_.pcm->Prepare());
            }
            heldInPcm_ = false;
        } else if (r.mode == DeviceMode::Paused && mode_ == DeviceMode::Playing) {
            UpdatePlayed();
            Hold();
        } else if (r.mode == DeviceMode::Playing && mode_ == DeviceMode::Paused) {
            Release();
        }
        EnterMode(r.mode);
    }

    void EnterMode(DeviceMode mode) {
        mode_ = mode;
        if (mode == DeviceMode::Playing) clock_.Restart(PlayClock::Clock::now());
    }

    // Pause: hold the card where it is. A PCM that cannot pause drops what it holds;
    // those frames are handed again from the ring after Resume.
    void Hold() {
        if (failed_ || core_.pcm->State() != SND_PCM_STATE_RUNNING) return;
        if (core_.pcm->CanPause() && core_.pcm->Pause(true) == 0) {
            heldInPcm_ = true;
            return;
        }
        core_.pcm->Drop();
        Check(core_.pcm->Prepare());
        handed_ = played_;
    }

    void Release() {
        if (!heldInPcm_) return;
        heldInPcm_ = false;
        if (failed_) return;
        const int rc = core_.pcm->Pause(false);
        if (rc < 0) Check(core_.pcm->Recover(rc));
    }

    void UpdatePlayed() {
        if (UsesClock()) {
            played_ = clock_.Advance(played_, handed_, PlayClock::Clock::now());
            return;
        }
        switch (core_.pcm->State()) {
            case SND_PCM_STATE_RUNNING:
            case SND_PCM_STATE_DRAINING: break;
            case SND_PCM_STATE_XRUN: HandleError(-EPIPE); return;
            case SND_PCM_STATE_SUSPENDED: HandleError(-ESTRPIPE); return;
            case SND_PCM_STATE_DISCONNECTED: Fail(-ENODEV); return;
            default: return;  // not started yet, or held: nothing is being heard
        }
        long delay = 0;
        const long rc = core_.pcm->Delay(&delay);
        if (rc < 0) {
            HandleError(static_cast<int>(rc));
            return;
        }
        const int64_t heard = handed_ - std::max<long>(delay, 0);
        played_ = std::clamp(heard, played_, handed_);
    }

    // Hands committed frames to ALSA; true when it stopped for want of room in the PCM.
    bool Feed() {
        if (core_.ringFrames == 0) return false;
        int64_t limit = core_.committed.load(std::memory_order_acquire);
        const int64_t end = core_.endOfData.load(std::memory_order_acquire);
        if (end >= 0) limit = std::min(limit, end);
        if (UsesClock()) limit = std::min(limit, played_ + aheadFrames_);
        while (handed_ < limit) {
            int64_t room = limit - handed_;
            if (!UsesClock()) {
                const long avail = core_.pcm->Avail();
                if (avail < 0) {
                    HandleError(static_cast<int>(avail));
                    return false;
                }
                if (avail == 0) return true;
                room = std::min<int64_t>(room, avail);
            }
            const uint32_t at = static_cast<uint32_t>(handed_ % core_.ringFrames);
            const uint32_t frames = static_cast<uint32_t>(
                std::min<int64_t>({room, int64_t{core_.ringFrames - at}, int64_t{kPieceFrames}}));
            if (failed_) {  // nobody listens any more: count the frames as handed
                handed_ += frames;
                continue;
            }
            const long written = core_.pcm->Write(Piece(at, frames), frames);
            if (written == -EAGAIN) return true;
            if (written < 0) {
                HandleError(static_cast<int>(written));
                return false;
            }
            handed_ += written;
        }
        return false;
    }

    // The frames at ring frame `at`, scaled by the volume unless it is full.
    const uint8_t* Piece(uint32_t at, uint32_t frames) {
        const uint8_t* source = core_.ring + size_t{at} * core_.bytesPerFrame;
        const uint32_t volume = core_.volume.load(std::memory_order_acquire);
        if (volume >= kFullVolume) return source;
        const size_t bytes = size_t{frames} * core_.bytesPerFrame;
        std::memcpy(scratch_.data(), source, bytes);
        ApplySoftwareVolume(scratch_.data(), bytes, core_.format.bitsPerSample, volume);
        return scratch_.data();
    }

    void HandleError(int code) {
        if (code == -EAGAIN) return;
        if (code == -EPIPE || code == -ESTRPIPE) {
            // The card ran dry (or was suspended): all that was handed has been heard.
            played_ = handed_;
            Check(core_.pcm->Recover(code));
            return;
        }
        Fail(code);
    }

    void Check(int code) {
        if (code < 0) Fail(code);
    }

    void Fail(int code) {
        if (failed_) return;
        failed_ = true;
        heldInPcm_ = false;
        core_.error.store(code, std::memory_order_release);
        clock_.Restart(PlayClock::Clock::now());
    }

    void Sleep(bool waitForRoom) {
        std::vector<struct pollfd> fds{{core_.thread.WakeFd(), POLLIN, 0}};
        if (waitForRoom && !UsesClock() && !tickKeepsPcmFed_) {
            std::vector<struct pollfd> pcmFds = core_.pcm->PollDescriptors();
            fds.insert(fds.end(), pcmFds.begin(), pcmFds.end());
        }
        // Held or stopped, nothing changes until a request comes, and every request
        // raises the wake-up signal.
        poll(fds.data(), fds.size(), mode_ == DeviceMode::Playing ? kTickMilliseconds : -1);
        if (fds[0].revents & POLLIN) core_.thread.DrainWake();
    }

    AlsaDevice::Core& core_;
    PlayClock clock_;
    const bool clockPaced_;
    // How far the clock-paced device hands frames ahead of what counts as played.
    const int64_t aheadFrames_;
    // The PCM holds three ticks or more: topping it up on every tick keeps it fed, and
    // the thread need not also wake whenever the PCM has room (a sound server's plug-in
    // signals that hundreds of times a second).
    const bool tickKeepsPcmFed_;
    std::vector<uint8_t> scratch_;
    DeviceMode mode_ = DeviceMode::Stopped;
    uint16_t run_ = 0;
    int64_t handed_ = 0;
    int64_t played_ = 0;
    bool heldInPcm_ = false;
    bool failed_ = false;
};

}  // namespace

AlsaDevice::AlsaDevice(int deviceNumber, PcmFormat format, uint8_t* ring, uint32_t ringSize)
    : AlsaDevice(AlsaPcmNameOf(deviceNumber).value_or(std::string()), format, ring, ringSize) {}

AlsaDevice::AlsaDevice(const std::string& pcmName, PcmFormat format, uint8_t* ring,
                       uint32_t ringSize)
    : OutputDevice(format, ring, ringSize), pcmName_(pcmName) {
    Open();
}

void AlsaDevice::Open() {
    if (pcmName_.empty()) {
        openError_ = "no such ALSA device";
        return;
    }
    auto core = std::make_shared<Core>(format_, ring_, ringSize_);
    if (!core->thread.Ready()) {
        openError_ = std::string("cannot make an eventfd: ") + std::strerror(errno);
        return;
    }
    core->pcm = AlsaPcm::Open(pcmName_, format_, &openError_);
    if (!core->pcm) return;
    Core* running = core.get();
    if (!core->thread.Launch(core, [running] { Feeder(*running).Run(); }, &openError_)) return;
    core_ = std::move(core);
}

AlsaDevice::~AlsaDevice() {
    if (core_) core_->thread.Close();
}

bool AlsaDevice::IsOpen() const { return core_ != nullptr; }

int AlsaDevice::Start() {
    if (!core_) return 0;
    // A new run: nothing committed yet, and an end mark of the last run no longer holds.
    core_->committed.store(0, std::memory_order_release);
    SetEndOfData(-1);
    core_->thread.Start(core_->played.Restart());
    return 0;
}

void AlsaDevice::Stop() {
    if (core_) core_->thread.Stop();
}

void AlsaDevice::Pause() {
    if (core_) core_->thread.Pause();
}

void AlsaDevice::Resume() {
    if (core_) core_->thread.Resume();
}

void AlsaDevice::TakeBackFrames(uint32_t frames) {
    // This device reads a negative commit as bytes (the crossfade hand-over's count).
    CommitFrames(-static_cast<int32_t>(frames * BytesPerFrame()));
}

void AlsaDevice::CommitFrames(int32_t count) {
    if (!core_) return;
    // A negative count is the crossfade's byte count (frames x bytes per frame): the
    // streams take back that many frames, divided once by the frame size.
    const int64_t frames = count >= 0 ? count : -(int64_t{-int64_t{count}} / BytesPerFrame());
    core_->committed.fetch_add(frames, std::memory_order_release);
}

void AlsaDevice::SetVolume(uint32_t volume) {
    if (core_) core_->volume.store(volume & 0xFFFF, std::memory_order_release);
}

uint32_t AlsaDevice::GetVolume() {
    return core_ ? core_->volume.load(std::memory_order_acquire) : 0;
}

uint32_t AlsaDevice::GetPlayPosition() {
    if (!core_ || core_->ringFrames == 0) return 0;
    return static_cast<uint32_t>(core_->played.Value() % core_->ringFrames) * BytesPerFrame();
}

int64_t AlsaDevice::GetPlayedFrames() {
    if (!core_ || core_->ringFrames == 0) return 0;
    return static_cast<int64_t>(core_->played.Value());
}

bool AlsaDevice::CanSetVolume() const { return IsOpen(); }

void AlsaDevice::SetEndOfData(int64_t framesWritten) {
    OutputDevice::SetEndOfData(framesWritten);
    if (core_) core_->endOfData.store(framesWritten, std::memory_order_release);
}

bool AlsaDevice::Failed() const {
    return core_ && core_->error.load(std::memory_order_acquire) != 0;
}

std::string AlsaDevice::ErrorText() const {
    if (!core_) return openError_;
    const int code = core_->error.load(std::memory_order_acquire);
    if (code == 0) return {};
    return "ALSA device \"" + pcmName_ + "\" stopped playing: " + Alsa()->snd_strerror(code);
}

}  // namespace verdin
