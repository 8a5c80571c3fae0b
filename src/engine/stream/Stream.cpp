#include "Stream.h"

#include "engine/analyzer/AnalyzerSnapshot.h"
#include "engine/equalizer/Equalizer.h"
#include "engine/input/InputModuleList.h"
#include "engine/stream/SilenceScan.h"
#include "engine/stream/StreamOutput.h"
#include "engine/stream/TrackProbe.h"

#include <algorithm>

namespace verdin {

namespace {

// The work buffer: a decoded block, equalized and handed through the DSP modules in place.
// A DSP module may return up to twice the frames it was given, so blocks are taken from
// the decoder in pieces that leave that room (and the equalizer's headroom).
constexpr uint32_t kWorkBufferBytes = 102408;

}  // namespace

Stream::Stream(const InputModuleList& modules, StreamOptions options)
    : modules_(modules), options_(std::move(options)), work_(kWorkBufferBytes + 2 * Equalizer::kOutputHeadroom) {}

Stream::~Stream() { CloseStream(); }

void Stream::Fail(std::string text) {
    errorText_ = std::move(text);
    failed_.store(true, std::memory_order_release);
}

bool Stream::OpenStream(const std::string& path, Stream* previous, const FileSection* section) {
    path_ = path;
    section_ = SectionCursor();
    info_ = DefaultTrackInfo();
    decoder_ = nullptr;
    failed_.store(false, std::memory_order_relaxed);
    outputStarted_.store(false, std::memory_order_relaxed);
    ResetCounters();

    if (path == kNullTrack) {
        format_ = FormatOf(info_);
        return true;
    }
    if (section && section->file.empty()) {
        Fail(section->error);
        return false;
    }
    const std::string& file = section ? section->file : path;
    const TrackProbe probe = ProbeTrack(file, modules_);
    if (!probe.recognized) {
        Fail("\"" + file + "\"\nis of an unknown file format.");
        return false;
    }
    info_ = probe.info;
    format_ = FormatOf(info_);
    if (!IsPlayableFormat(format_)) {
        Fail("\"" + path + "\"\nhas a sample format that cannot be played (" + std::to_string(format_.bitsPerSample) +
             " bits, " + std::to_string(format_.channels) + " channels).");
        return false;
    }
    if (section) {
        section_ = SectionCursor(*section, format_.sampleRate);
        info_.duration = section_.LengthMs(info_.duration);
    }
    ring_ = ComputeRingLayout(options_.bufferSize, options_.bufferPrefill, format_);

    const uint64_t rate = format_.sampleRate;
    crossfadeFrames_ = static_cast<uint32_t>(rate * static_cast<uint64_t>(std::max(0, options_.crossfadeLength)) / 1000);
    silenceThreshold_ = SilenceThreshold(options_.silenceLevel, format_.bitsPerSample);
    leadingSilence_ = options_.skipSilenceInTheBeginning;
    pauseBytes_ = PauseBytes();

    if (InputModule* module = modules_.FindModuleToPlay(file, probe.dataOffset);
        module && module->ops && module->ops->OpenDecoder) {
        decoder_ = module->ops->OpenDecoder(module, file.c_str(), probe.dataOffset);
        streamOps_ = decoder_ ? modules_.StreamOpsOf(module) : nullptr;
    }
    if (section_.Active()) {
        if (decoder_ && decoder_->ops && decoder_->ops->Seek && info_.seekable)
            section_.Landed(0, decoder_->ops->Seek(decoder_, section_.SeekTarget(0)));
        else
            section_.FromFileStart();
    }

    equalizer_ = std::make_unique<Equalizer>(options_.equalizerEnabled);
    analyzer_ = std::make_unique<AnalyzerSnapshot>();
    if (decoder_ && decoder_->ops) {
        if (decoder_->ops->SetEqualizerEnabled) decoder_->ops->SetEqualizerEnabled(decoder_, options_.equalizerEnabled);
        if (decoder_->ops->SetEqualizerValues) decoder_->ops->SetEqualizerValues(decoder_, &options_.equalizerValues);
    }
    equalizer_->SetEqualizerEnabled(options_.equalizerEnabled);
    equalizer_->SetEqualizerValues(options_.equalizerValues, format_.sampleRate);

    if (previous && previous->Format() == format_ && previous->OutputStarted() && previous->TryLinkNext(this))
        previous_.store(previous, std::memory_order_release);
    return true;
}

uint64_t Stream::PauseBytes() const {
    return static_cast<uint64_t>(format_.BytesPerFrame()) * format_.sampleRate *
           static_cast<uint64_t>(std::max(0, options_.pauseBetweenTracks)) / 1000;
}

void Stream::ResetCounters() {
    writePosition_ = 0;
    framesDecoded_ = 0;
    trackFramesDecoded_ = 0;
    decodedLengthMs_.store(0, std::memory_order_relaxed);
    equalizerIn_ = equalizerOut_ = 0;
    pending_ = nullptr;
    pendingBytes_ = 0;
    fade_ = Crossfade{};
    phase_ = Phase::kDecoding;
    framesWritten_.store(0, std::memory_order_relaxed);
    trackStartFrame_.store(0, std::memory_order_relaxed);
    seekBaseMs_.store(0, std::memory_order_relaxed);
    endOfTrack_.store(false, std::memory_order_relaxed);
}

bool Stream::StartStream(const OutputTarget& target) {
    if (Failed()) return false;
    if (path_ == kNullTrack || !decoder_) {
        // Nothing to hear: no device is opened, the thread ends at once.
        Start(threadPriority_);
        return true;
    }
    OutputResult made = MakeStreamOutput(target, format_, ring_.bytes);
    if (!made.output) {
        Fail(made.errorText);
        return false;
    }
    OutputDevice* device = made.output->device.get();
    device->Start();
    device->Pause();
    device->SetVolume(target.volume & 0xFFFF);
    refilling_.store(true, std::memory_order_release);
    output_.store(made.output.release(), std::memory_order_release);
    outputStarted_.store(true, std::memory_order_release);
    Start(threadPriority_);
    return true;
}

bool Stream::TryLinkNext(Stream* next) {
    uintptr_t expected = 0;
    if (!next_.compare_exchange_strong(expected, reinterpret_cast<uintptr_t>(next), std::memory_order_acq_rel))
        return false;
    Nudge();  // a thread waiting for its last frames to be heard hands over now
    return true;
}

Stream* Stream::NextStream() const {
    if (Stream* taken = HandedOverTo()) return taken;
    const uintptr_t n = next_.load(std::memory_order_acquire);
    return n > kClosedLink ? reinterpret_cast<Stream*>(n) : nullptr;
}

void Stream::UnlinkFromPrevious() {
    Stream* previous = previous_.exchange(nullptr, std::memory_order_acq_rel);
    if (!previous) return;
    uintptr_t expected = reinterpret_cast<uintptr_t>(this);
    if (previous->next_.compare_exchange_strong(expected, 0, std::memory_order_acq_rel)) return;
    // The previous stream has already taken this one to hand its device over (or is doing
    // so on its thread right now): let that finish, so this stream's thread is running
    // and can be stopped like any other.
    if (expected == kClosedLink) previous->WaitUntilFinished();
    // Nor may it name this stream as its successor once this one is gone.
    Stream* self = this;
    previous->handedOverTo_.compare_exchange_strong(self, nullptr, std::memory_order_acq_rel);
}

void Stream::ContinueStream(Stream* previous, bool crossfade) {
    StreamOutput* output = previous->output_.load(std::memory_order_acquire);
    OutputDevice* device = output->device.get();
    writePosition_ = previous->writePosition_;
    int64_t written = previous->framesWritten_.load(std::memory_order_relaxed);
    framesDecoded_ = previous->framesDecoded_;
    paused_.store(previous->paused_.load(std::memory_order_acquire), std::memory_order_release);
    refilling_.store(previous->refilling_.load(std::memory_order_acquire), std::memory_order_release);

    int64_t length = 0;
    if (crossfade) {
        // Keep 12000 frames between the mixing point and what is being heard; a fade
        // shorter than 10000 frames is not worth it.
        const int64_t played = device->GetPlayedFrames();
        length = std::min<int64_t>(crossfadeFrames_, written - 12000 - played);
        if (length < 10000) length = 0;
    }
    // A device that had been told where the last track ends plays on.
    device->SetEndOfData(-1);
    const uint32_t frameBytes = format_.BytesPerFrame();
    // The device is told a byte count where it expects frames; only the sound-server
    // device acts on a negative commit, and it scales it once more. That is how the
    // hand-over has always talked to it.
    device->CommitFrames(static_cast<int32_t>(-(length * frameBytes)));
    int64_t position = static_cast<int64_t>(writePosition_) - length * frameBytes;
    while (position < 0) position += output->ringBytes;
    writePosition_ = static_cast<uint32_t>(position);
    written -= length;
    fade_ = Crossfade{static_cast<uint32_t>(length), static_cast<uint32_t>(length)};
    framesWritten_.store(written, std::memory_order_release);
    trackStartFrame_.store(written, std::memory_order_release);

    output_.store(output, std::memory_order_release);
    previous->output_.store(nullptr, std::memory_order_release);
    outputStarted_.store(true, std::memory_order_release);
    previous->handedOverTo_.store(this, std::memory_order_release);
    threadPriority_ = previous->threadPriority_;  // runs at the priority of the stream it continues
    Start(threadPriority_);
}

void Stream::CloseStream() {
    // Unlink first, so the previous stream can no longer start this one; then stop.
    UnlinkFromPrevious();
    // A decoder waiting on the network gives up first, so the stop does not wait for it.
    if (decoder_ && streamOps_ && streamOps_->Interrupt && GetState() != kFinished) streamOps_->Interrupt(decoder_);
    StopAndJoin();
    // The stream that follows no longer has this one before it.
    if (Stream* following = NextStream()) {
        Stream* self = this;
        following->previous_.compare_exchange_strong(self, nullptr, std::memory_order_acq_rel);
    }
    next_.store(kClosedLink, std::memory_order_release);
    if (decoder_ && decoder_->ops && decoder_->ops->Destroy) decoder_->ops->Destroy(decoder_);
    decoder_ = nullptr;
    streamOps_ = nullptr;
    delete output_.exchange(nullptr, std::memory_order_acq_rel);
    outputStarted_.store(false, std::memory_order_release);
}

void Stream::SetEqualizer(bool enabled, const EqualizerValues& values) {
    // A decoder gets the switch, then the values, as its interface promises. Our own
    // equalizer gets the gains first: a stream thread that sees the new switch state
    // (acquire) sees them too, so no block is equalized with the old gains after it.
    for (Stream* s = this; s; s = s->NextStream()) {
        if (s->decoder_ && s->decoder_->ops && s->decoder_->ops->SetEqualizerEnabled)
            s->decoder_->ops->SetEqualizerEnabled(s->decoder_, enabled);
        if (s->decoder_ && s->decoder_->ops && s->decoder_->ops->SetEqualizerValues)
            s->decoder_->ops->SetEqualizerValues(s->decoder_, &values);
        if (s->equalizer_) {
            s->equalizer_->SetEqualizerValues(values, s->format_.sampleRate);
            s->equalizer_->SetEqualizerEnabled(enabled);
        }
    }
}

void Stream::SeekStream(uint32_t milliseconds) {
    StreamOutput* output = Output();
    if (!output || !OutputStarted() || StopRequested() || !info_.seekable || GetState() != kRunning ||
        prefilling_.load(std::memory_order_acquire) || !decoder_ || !decoder_->ops || !decoder_->ops->Seek)
        return;
    OutputDevice* device = output->device.get();
    const bool userPaused = PlaybackPaused();
    if (userPaused) device->Resume();
    Pause();
    device->Stop();
    const uint32_t target = std::min(milliseconds, info_.duration);
    // In a section the decoder lands on a whole frame at or before it; the rest is dropped.
    const uint32_t reached = section_.Active()
                                 ? section_.Landed(target, decoder_->ops->Seek(decoder_, section_.SeekTarget(target)))
                                 : decoder_->ops->Seek(decoder_, target);
    device->Start();
    if (userPaused) device->Pause();
    device->Pause();  // silent until the buffer is filled again
    ResetCounters();
    if (equalizer_) equalizer_->Restart();
    pauseBytes_ = PauseBytes();
    seekBaseMs_.store(reached, std::memory_order_release);
    refilling_.store(true, std::memory_order_release);
    prefilling_.store(true, std::memory_order_release);
    Resume();
}

void Stream::PausePlayback() {
    paused_.store(true, std::memory_order_release);
    if (OutputDevice* device = Device()) device->Pause();
}

void Stream::ResumePlayback() {
    paused_.store(false, std::memory_order_release);
    if (OutputDevice* device = Device(); device && !refilling_.load(std::memory_order_acquire)) device->Resume();
}

void Stream::EndTrackNow(bool crossfade) {
    if (Stream* next = NextStream()) next->SetCrossfadeOnHandOver(crossfade);
    endNow_.store(true, std::memory_order_release);
}

OutputDevice* Stream::Device() const {
    StreamOutput* output = Output();
    return output ? output->device.get() : nullptr;
}

uint32_t Stream::PlayedMilliseconds() const {
    const uint32_t base = seekBaseMs_.load(std::memory_order_acquire);
    OutputDevice* device = Device();
    if (!device || format_.sampleRate == 0) return base;
    const int64_t played = device->GetPlayedFrames() - trackStartFrame_.load(std::memory_order_acquire);
    if (played <= 0) return base;
    return base + static_cast<uint32_t>(std::min<int64_t>(played * 1000 / format_.sampleRate, UINT32_MAX - base));
}

void Stream::SetVolume(uint32_t volume) {
    if (OutputDevice* device = Device()) device->SetVolume(volume & 0xFFFF);
}

uint32_t Stream::GetVolume() const {
    OutputDevice* device = Device();
    return device ? device->GetVolume() : 0;
}

bool Stream::CanSetVolume() const {
    OutputDevice* device = Device();
    return device && device->CanSetVolume();
}

void Stream::TakeAnalyzerSnapshot(bool withSpectrum) {
    if (!analyzer_) return;
    StreamOutput* output = Output();
    if (!OutputStarted() || !output) {
        analyzer_->Clear();
        return;
    }
    const uint32_t position = output->device->GetPlayPosition();
    playPosition_.store(position, std::memory_order_relaxed);
    const std::span<const uint8_t> ring(output->ring.get(), output->ringBytes);
    if (withSpectrum) analyzer_->Take(ring, position, format_);
    else analyzer_->TakeWaveform(ring, position, format_);
}

int32_t Stream::GetAnalyzerValue(int channel, int index) const {
    if (!analyzer_ || !OutputStarted()) return 0;
    return analyzer_->GetAnalyzerValue(static_cast<uint32_t>(channel), static_cast<uint32_t>(index));
}

int32_t Stream::GetWaveformValue(int channel, int index) const {
    if (!analyzer_ || !OutputStarted()) return 0;
    return analyzer_->GetWaveformValue(static_cast<uint32_t>(channel), static_cast<uint32_t>(index));
}

void Stream::UpdatePlayPosition() {
    if (OutputDevice* device = Device(); device && OutputStarted())
        playPosition_.store(device->GetPlayPosition(), std::memory_order_relaxed);
}

}  // namespace verdin
