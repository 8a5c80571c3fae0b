#include "engine/output/PulseApi.h"
#include "PulseDevice.h"

#include "engine/output/CommitQueue.h"
#include "engine/output/DeviceThread.h"
#include "engine/output/GenerationCounter.h"
#include "engine/output/PlayAnchor.h"
#include "engine/output/PlayClock.h"
#include "engine/output/PulseConnection.h"
#include "engine/output/PulseVolume.h"

#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/stream.h>
#include <pulse/volume.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace verdin {

namespace {

constexpr const char* kStreamName = "Verdin playback";
// The longest the device thread sleeps between two looks at its requests and the
// server's clock while playback starts: until the server's clock is seen to run, readers
// have no anchor to move on from.
constexpr int kTickMilliseconds = 20;
// The same once it runs: readers move the anchor on by the time since (PlayAnchor), so
// the thread wakes only to send what the streams committed and to correct the anchor.
constexpr int kSteadyTickMilliseconds = 500;
// While the server holds more than this much not yet played, commits do not wake the
// device thread: its next steady tick sends them, long before the server runs short.
constexpr int kLazyAheadMilliseconds = 1000;
// The same while held or stopped: requests and commits wake the thread anyway.
constexpr int kIdleTickMilliseconds = 100;
// How far the server's clock may run ahead of ours before a reading counts as wrong.
constexpr pa_usec_t kClockSlackUs = 250'000;
// Stream times above this are readings below zero, wrapped; the start asks again so often.
constexpr pa_usec_t kHighestStreamUsec = pa_usec_t{1} << 62;
constexpr int kTimingRetries = 5;
// How long a stream thread keeps trying when the commit queue is full (the device
// thread is held up) before it drops the commit and reports the device as failed.
constexpr auto kCommitTimeout = std::chrono::milliseconds(500);

struct FormatRow {
    uint32_t bits;
    pa_sample_format_t format;
};
constexpr FormatRow kFormats[] = {
    {8, PA_SAMPLE_U8},
    {16, PA_SAMPLE_S16LE},
    {24, PA_SAMPLE_S24LE},
    {32, PA_SAMPLE_S32LE},
};

}  // namespace

struct PulseDevice::Core {
    Core(PcmFormat f, uint8_t* r, uint32_t size)
        : format(f), ring(r), ringSize(size), bytesPerFrame(f.BytesPerFrame()),
          ringFrames(bytesPerFrame ? size / bytesPerFrame : 0) {}
    ~Core() {
        if (stream) {
            Pulse()->pa_stream_disconnect(stream);
            Pulse()->pa_stream_unref(stream);
        }
    }

    const PcmFormat format;
    uint8_t* const ring;
    const uint32_t ringSize;
    const uint32_t bytesPerFrame;
    const uint32_t ringFrames;
    // Used by the opening thread, then by the device thread only.
    std::unique_ptr<PulseConnection> connection;
    pa_stream* stream = nullptr;

    DeviceThread thread;
    CommitQueue commits;
    // Played frames of the current run: reset by Start, published by the device thread.
    GenerationCounter played;
    // Where playback stood at the device thread's last look, for readers in between.
    PlayAnchor anchor;
    // Whether a commit must wake the device thread: cleared by the device thread while
    // the server holds plenty, read by the stream threads.
    std::atomic<bool> wakeOnCommit{true};
    // The volume in hundredths of a decibel: the user-interface thread writes, the
    // device thread reads and applies it on the server.
    std::atomic<int32_t> volume{0};
    // Raised once by whichever thread meets an error, after it has written failure.
    std::atomic<bool> failed{false};
    std::atomic<bool> claimedFailure{false};  // who gets to write failure: first CAS wins
    std::string failure;                      // written once before failed is raised

    void Fail(const std::string& why) {
        bool expected = false;
        if (!claimedFailure.compare_exchange_strong(expected, true, std::memory_order_acq_rel))
            return;
        failure = why;
        failed.store(true, std::memory_order_release);
    }
};

namespace {

// The device thread's own state and its steps; nothing here is shared.
class Writer {
public:
    explicit Writer(PulseDevice::Core& core)
        : core_(core), clock_(core.format.sampleRate),
          lazyAheadFrames_(int64_t{core.format.sampleRate} * kLazyAheadMilliseconds / 1000) {}
    ~Writer() { CancelPending(); }

    void Run() {
        while (!core_.thread.QuitRequested()) {
            CheckServer();
            // The volume first: a volume set before Resume is heard from the first frame.
            ApplyVolume();
            core_.thread.ServeRequest([this](const DeviceRequest& r) { Apply(r); });
            if (!startPending_) DrainCommits();
            UpdatePlayed();
            PublishPosition();
            const int tick = mode_ != DeviceMode::Playing ? kIdleTickMilliseconds
                             : anchored_                  ? kSteadyTickMilliseconds
                                                          : kTickMilliseconds;
            if (!core_.connection->Iterate(tick)) SleepOnWakeup();
        }
    }

private:
    bool Down() const { return core_.failed.load(std::memory_order_relaxed); }

    // The count, the anchor readers move on from, and whether commits must wake this
    // thread.
    void PublishPosition() {
        core_.played.Publish(run_, static_cast<uint64_t>(played_));
        anchored_ = mode_ == DeviceMode::Playing && !startPending_ && !down_ && played_ > 0;
        core_.anchor.Publish({run_, played_, stampNs_, committedFrames_, anchored_});
        const bool plenty = anchored_ && serverFrames_ - played_ > lazyAheadFrames_;
        core_.wakeOnCommit.store(!plenty, std::memory_order_release);
    }

    void CheckServer() {
        if (!down_ && !Down()) {
            const pa_stream_state_t state = Pulse()->pa_stream_get_state(core_.stream);
            if (!core_.connection->Alive() || state != PA_STREAM_READY)
                core_.Fail("the PulseAudio server connection was lost: " +
                           core_.connection->LastError());
        }
        if (Down() && !down_) {
            // From now on nothing goes to the server and frames count as played by the
            // clock.
            down_ = true;
            startPending_ = false;
            CancelPending();
            clock_.Restart(PlayClock::Clock::now());
        }
    }

    void Apply(const DeviceRequest& r) {
        if (r.run != run_) {
            run_ = r.run;
            played_ = 0;
            committedFrames_ = 0;
            serverFrames_ = 0;
            cursor_ = 0;
            pendingSeek_ = 0;
            mode_ = r.mode;
            clock_.Restart(PlayClock::Clock::now());
            if (down_) return;
            // Start: drop what the server holds, then learn the stream time at which
            // this run begins; commits wait until then.
            Cork(true);
            startPending_ = true;
            CancelPending();
            pending_ = Pulse()->pa_stream_flush(core_.stream, &Writer::OnFlushed, this);
            if (!pending_) core_.Fail("cannot restart the PulseAudio stream");
            PublishPosition();
            return;
        }
        if (r.mode == mode_) return;
        if (r.mode == DeviceMode::Stopped && !down_) {
            Cork(true);
            Release(Pulse()->pa_stream_flush(core_.stream, nullptr, nullptr));
        } else if (!startPending_ && !down_) {
            Cork(r.mode != DeviceMode::Playing);
        }
        // Where a pause or stop left playback is published before the caller goes on, so
        // that no reader moves the anchor on past it.
        UpdatePlayed();
        mode_ = r.mode;
        if (mode_ == DeviceMode::Playing) clock_.Restart(PlayClock::Clock::now());
        PublishPosition();
    }

    static void OnFlushed(pa_stream* stream, int, void* self) {
        auto* w = static_cast<Writer*>(self);
        w->Release(w->pending_);
        w->pending_ = Pulse()->pa_stream_update_timing_info(stream, &Writer::OnTiming, w);
        if (!w->pending_) w->core_.Fail("cannot read the PulseAudio stream's clock");
    }

    static void OnTiming(pa_stream* stream, int, void* self) {
        auto* w = static_cast<Writer*>(self);
        w->Release(w->pending_);
        w->pending_ = nullptr;
        pa_usec_t now = 0;
        const bool read = Pulse()->pa_stream_get_time(stream, &now) == 0;
        // A reading below zero (see UpdatePlayed) is asked for again, a few times.
        if (read && now > kHighestStreamUsec && ++w->timingRetries_ <= kTimingRetries) {
            w->pending_ = Pulse()->pa_stream_update_timing_info(stream, &Writer::OnTiming, w);
            if (w->pending_) return;
        }
        w->timingRetries_ = 0;
        w->baseUsec_ = read && now <= kHighestStreamUsec ? now : 0;
        w->baseStampNs_ = PlayAnchor::NowNs();
        w->startPending_ = false;
        // The pre-filled commits go out before playback begins.
        w->DrainCommits();
        if (w->mode_ == DeviceMode::Playing) w->Cork(false);
    }

    void Cork(bool cork) {
        if (!down_) Release(Pulse()->pa_stream_cork(core_.stream, cork ? 1 : 0, nullptr, nullptr));
    }

    static void Release(pa_operation* op) {
        if (op) Pulse()->pa_operation_unref(op);
    }

    void CancelPending() {
        if (!pending_) return;
        Pulse()->pa_operation_cancel(pending_);
        Pulse()->pa_operation_unref(pending_);
        pending_ = nullptr;
    }

    // Commits that follow one another in the ring go out as one write: a stream commits
    // a decoder's block at a time (often 1,152 frames), and every write to the server
    // costs a message and two system calls whatever its size.
    void DrainCommits() {
        int32_t count = 0;
        uint64_t unsent = 0;
        while (core_.commits.Pop(&count)) {
            if (count > 0) {
                committedFrames_ += count;
                serverFrames_ += count;
            }
            if (down_ || core_.ringSize == 0) continue;
            if (count > 0) {
                unsent += uint64_t{static_cast<uint32_t>(count)} * core_.bytesPerFrame;
            } else if (count < 0) {
                WriteFromRing(unsent);
                unsent = 0;
                MoveBack(count);
            }
        }
        WriteFromRing(unsent);
    }

    // Sends bytes of the ring from the cursor on, wrapping at the ring's end.
    void WriteFromRing(uint64_t bytes) {
        while (bytes > 0 && !Down()) {
            const uint32_t piece =
                static_cast<uint32_t>(std::min<uint64_t>(bytes, core_.ringSize - cursor_));
            if (Pulse()->pa_stream_write(core_.stream, core_.ring + cursor_, piece, nullptr, pendingSeek_,
                                PA_SEEK_RELATIVE) < 0) {
                core_.Fail("cannot write to the PulseAudio stream: " +
                           core_.connection->LastError());
                return;
            }
            pendingSeek_ = 0;
            cursor_ = static_cast<uint32_t>((uint64_t{cursor_} + piece) % core_.ringSize);
            bytes -= piece;
        }
    }

    // A negative commit: n = channels x (bits / 8) x count bytes (count is already a
    // byte count when the crossfade calls, so the move is scaled twice, as intended).
    // The cursor moves on the unsigned 32-bit sum; the next write seeks back by n.
    void MoveBack(int32_t count) {
        const int32_t n = static_cast<int32_t>(core_.format.channels *
                                               (core_.format.bitsPerSample / 8)) * count;
        cursor_ = (cursor_ + static_cast<uint32_t>(n)) % core_.ringSize;
        pendingSeek_ += n;
        serverFrames_ += n / static_cast<int32_t>(core_.bytesPerFrame);
    }

    void ApplyVolume() {
        const int32_t volume = core_.volume.load(std::memory_order_acquire);
        if (volume == appliedVolume_ || down_) return;
        appliedVolume_ = volume;
        pa_cvolume levels;
        Pulse()->pa_cvolume_set(&levels, core_.format.channels, PulseVolumeOfHundredths(volume));
        Release(Pulse()->pa_context_set_sink_input_volume(core_.connection->Context(),
                                                 Pulse()->pa_stream_get_index(core_.stream), &levels,
                                                 nullptr, nullptr));
    }

    void UpdatePlayed() {
        if (down_) {
            if (mode_ == DeviceMode::Playing)
                played_ = clock_.Advance(played_, committedFrames_, PlayClock::Clock::now());
            return;
        }
        if (startPending_) return;
        pa_usec_t now = 0;
        if (Pulse()->pa_stream_get_time(core_.stream, &now) != 0 || now <= baseUsec_) return;
        // While the server corrects the stream's read index after a flush, libpulse's
        // interpolated clock can come out below zero (wrapped to near 2^64). No stream plays
        // faster than the wall clock since its run began, so such a reading is skipped:
        // taken as it is, it would count everything written as heard, and playback would
        // race through the track as fast as it decodes.
        const int64_t stamp = PlayAnchor::NowNs();
        const auto wallUs = static_cast<pa_usec_t>(std::max<int64_t>(stamp - baseStampNs_, 0)) / 1000;
        if (now - baseUsec_ > wallUs + kClockSlackUs) return;
        stampNs_ = stamp;
        const int64_t frames =
            static_cast<int64_t>((now - baseUsec_) * core_.format.sampleRate / 1'000'000);
        // The server's clock is interpolated and runs on over silence; nothing can have
        // been heard that was not written in this run.
        played_ = std::max(played_, std::min(frames, committedFrames_));
    }

    // When the main loop cannot run (the server went away), wait for a request instead.
    void SleepOnWakeup() {
        struct pollfd fd{core_.thread.WakeFd(), POLLIN, 0};
        poll(&fd, 1, kTickMilliseconds);
        if (fd.revents & POLLIN) core_.thread.DrainWake();
    }

    PulseDevice::Core& core_;
    PlayClock clock_;
    DeviceMode mode_ = DeviceMode::Stopped;
    uint16_t run_ = 0;
    bool down_ = false;          // the server is gone; the clock counts
    bool startPending_ = false;  // a Start waits for the flush and the stream time
    pa_operation* pending_ = nullptr;
    pa_usec_t baseUsec_ = 0;     // stream time at the last Start
    int64_t baseStampNs_ = 0;    // when baseUsec_ was read
    int timingRetries_ = 0;      // asked again for the stream time at this start
    int64_t played_ = 0;
    int64_t committedFrames_ = 0;  // positive commits since Start, for the clock
    int64_t serverFrames_ = 0;     // the server's write index since Start, in frames
    const int64_t lazyAheadFrames_;
    bool anchored_ = false;        // the server's clock runs and readers move it on
    int64_t stampNs_ = 0;          // when played_ was read from the server's clock
    uint32_t cursor_ = 0;          // the device's write cursor in the ring, bytes
    int64_t pendingSeek_ = 0;      // relative seek of the next write, bytes
    int32_t appliedVolume_ = 0;    // the stream starts at full volume
};

}  // namespace

PulseDevice::PulseDevice(PcmFormat format, uint8_t* ring, uint32_t ringSize, int deviceIndex,
                         int cooperativeLevel)
    : OutputDevice(format, ring, ringSize), cooperativeLevel_(cooperativeLevel) {
    pa_sample_spec spec{PA_SAMPLE_INVALID, format.sampleRate,
                        static_cast<uint8_t>(format.channels)};
    for (const FormatRow& row : kFormats)
        if (row.bits == format.bitsPerSample) spec.format = row.format;
    if (!Pulse()) {
        openError_ = kPulseLibraryMissing;
        return;
    }
    if (!Pulse()->pa_sample_spec_valid(&spec)) {
        openError_ = "unsupported sample format for PulseAudio";
        return;
    }
    const PulseDeadline deadline = std::chrono::steady_clock::now() + kPulseConnectTimeout;
    auto core = std::make_shared<Core>(format, ring, ringSize);
    core->connection = PulseConnection::Connect(deadline, &openError_);
    if (!core->connection) return;

    const std::vector<OutputDeviceEntry> sinks = core->connection->Sinks(deadline);
    if (!sinks.empty()) {
        const bool inRange = deviceIndex >= 0 && static_cast<size_t>(deviceIndex) < sinks.size();
        sinkName_ = sinks[inRange ? static_cast<size_t>(deviceIndex) : 0].name;
    }

    core->stream = Pulse()->pa_stream_new(core->connection->Context(), kStreamName, &spec, nullptr);
    if (!core->stream) {
        openError_ = "cannot make a PulseAudio stream: " + core->connection->LastError();
        return;
    }
    // The server's buffer is the ring's size; playback starts and stops only when the
    // device says so (prebuf 0), as a looping sound buffer does.
    const uint32_t size = ringSize ? ringSize : static_cast<uint32_t>(-1);
    pa_buffer_attr attr{size, size, 0, static_cast<uint32_t>(-1), static_cast<uint32_t>(-1)};
    const auto flags = static_cast<pa_stream_flags_t>(
        // Not monotonic: libpulse would otherwise hold on to a clock reading that came out
        // below zero after a flush for the rest of the stream's life; the device keeps its
        // own count from going back.
        PA_STREAM_START_CORKED | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE |
            PA_STREAM_NOT_MONOTONIC);
    if (Pulse()->pa_stream_connect_playback(core->stream, sinkName_.empty() ? nullptr : sinkName_.c_str(),
                                   &attr, flags, nullptr, nullptr) < 0) {
        openError_ = "cannot connect a PulseAudio stream: " + core->connection->LastError();
        return;
    }
    pa_stream* stream = core->stream;
    const bool ready = core->connection->RunUntil(
        [stream] { return Pulse()->pa_stream_get_state(stream) != PA_STREAM_CREATING; }, deadline);
    if (!ready || Pulse()->pa_stream_get_state(stream) != PA_STREAM_READY) {
        openError_ = "the PulseAudio stream did not start: " + core->connection->LastError();
        return;
    }
    if (!core->thread.Ready()) {
        openError_ = "cannot make an eventfd";
        return;
    }
    core->connection->SetWakeup(&core->thread.Wakeup());
    Core* running = core.get();
    if (!core->thread.Launch(core, [running] { Writer(*running).Run(); }, &openError_)) return;
    core_ = std::move(core);
}

PulseDevice::~PulseDevice() {
    if (core_) core_->thread.Close();
}

bool PulseDevice::IsOpen() const { return core_ != nullptr; }

int PulseDevice::Start() {
    if (!core_) return 0;
    core_->thread.Start(core_->played.Restart());
    return 0;
}

void PulseDevice::Stop() {
    if (core_) core_->thread.Stop();
}

void PulseDevice::Pause() {
    if (core_) core_->thread.Pause();
}

void PulseDevice::Resume() {
    if (core_) core_->thread.Resume();
}

void PulseDevice::TakeBackFrames(uint32_t frames) {
    // This device scales a negative commit by the frame size itself.
    CommitFrames(-static_cast<int32_t>(frames));
}

void PulseDevice::CommitFrames(int32_t count) {
    if (!core_ || count == 0) return;
    const auto deadline = std::chrono::steady_clock::now() + kCommitTimeout;
    while (!core_->commits.Push(count)) {
        core_->thread.Wake();
        if (core_->thread.Ended() || std::chrono::steady_clock::now() >= deadline) {
            core_->Fail("the PulseAudio device thread does not keep up; a block was lost");
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    // A take-back must reach the server before it plays what is taken back.
    if (count < 0 || core_->wakeOnCommit.load(std::memory_order_acquire)) core_->thread.Wake();
}

void PulseDevice::SetVolume(uint32_t volume) {
    if (!core_) return;
    core_->volume.store(VolumeToHundredthsOfDecibel(volume), std::memory_order_release);
    core_->thread.Wake();
}

uint32_t PulseDevice::GetVolume() {
    if (!core_) return 0;
    return static_cast<uint16_t>(core_->volume.load(std::memory_order_acquire));
}

uint32_t PulseDevice::GetPlayPosition() {
    if (!core_ || core_->ringFrames == 0) return 0;
    return static_cast<uint32_t>(static_cast<uint64_t>(GetPlayedFrames()) % core_->ringFrames) * BytesPerFrame();
}

int64_t PulseDevice::GetPlayedFrames() {
    if (!core_ || core_->ringFrames == 0) return 0;
    const GenerationCounter::Reading count = core_->played.Read();
    const auto value = static_cast<int64_t>(count.value);
    const std::optional<int64_t> moved = core_->anchor.FramesAt(count.run, PlayAnchor::NowNs(), Format().sampleRate);
    return moved ? std::max(value, *moved) : value;
}

bool PulseDevice::CanSetVolume() const { return IsOpen(); }

bool PulseDevice::Failed() const {
    return core_ && core_->failed.load(std::memory_order_acquire);
}

std::string PulseDevice::ErrorText() const {
    if (!core_) return openError_;
    if (!core_->failed.load(std::memory_order_acquire)) return {};
    return "PulseAudio playback stopped: " + core_->failure + ".";
}

}  // namespace verdin
