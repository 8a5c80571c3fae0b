#pragma once
// A stream: one track being decoded and written into an output device's ring buffer, on
// a worker thread of its own.
//
// Life of a stream (all control calls come from the user-interface thread):
//   OpenStream    set-up: the track's information and decoder, the equalizer, the
//                 derived lengths, and the link to the stream playing before it;
//   StartStream   makes the output device and its ring, starts the device paused (the
//                 buffer fills to its pre-fill level first) and starts the thread; or
//   (hand-over)   a linked stream is started by its predecessor when that one has
//                 decoded its last frame: it takes over the device, its ring and write
//                 position, and mixes its first frames over the old track's end when a
//                 crossfade was asked for;
//   CloseStream   stops the thread, unlinks the neighbours, frees decoder and track.
//
// When a track ends and nothing takes its device over, the stream lets the device play
// out what is in the ring before it finishes, so nothing a listener should hear is cut
// off; a Stop skips that and ends at once.
//
// Threads: the stream thread runs Step and OnFinish; the user-interface thread calls the
// control operations and reads positions, volume and analyzer data at any time. Every
// word both touch is a std::atomic; the comment at each says who writes and who reads.
#include "engine/PcmFormat.h"
#include "engine/stream/FileSection.h"
#include "engine/stream/RingLayout.h"
#include "engine/stream/RingWriter.h"
#include "engine/stream/StreamOptions.h"
#include "engine/stream/TextMailbox.h"
#include "engine/stream/WorkerThread.h"

#include <verdin/input.h>
#include <verdin/input_stream.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace verdin {

class AnalyzerSnapshot;
class Equalizer;
class InputModuleList;
class OutputDevice;
struct StreamOutput;

class Stream final : public WorkerThread {
public:
    // The path that stands for "no track": never decoded, never played.
    static constexpr const char* kNullTrack = "null track";

    Stream(const InputModuleList& modules, StreamOptions options);
    ~Stream() override;

    // Set-up for the track at path. previous is the stream playing before it (or null):
    // this stream is linked to it only when both have the same sample format and the
    // previous one has started its output; otherwise the chain is broken there. Returns
    // false with ErrorText() set when the track is of an unknown format.
    // With a section, path only names the track: the section's file is decoded, and only
    // the section's frames are played (FileSection.h); positions, seeks and the duration
    // in Info() are the section's. Tracks that are neighbouring sections of one file
    // join without a gap through the usual hand-over.
    bool OpenStream(const std::string& path, Stream* previous, const FileSection* section = nullptr);
    // Makes the output device for the target and starts the thread. False with
    // ErrorText() set when the device cannot be opened.
    bool StartStream(const OutputTarget& target);
    // Stops the thread if it runs, unlinks the neighbours and frees the decoder. A device
    // this stream still owns is closed.
    void CloseStream();

    // The equalizer's switch and gains, given together to every stream of the chain that
    // starts here (through the next links) and to each one's decoder.
    void SetEqualizer(bool enabled, const EqualizerValues& values);

    // Moves playback to a position in milliseconds (clamped to the duration), when the
    // output has started, the track is seekable, the thread runs and no earlier seek is
    // still refilling.
    void SeekStream(uint32_t milliseconds);

    // The user's pause: the device holds; decoding goes on until the ring is full.
    void PausePlayback();
    void ResumePlayback();
    bool PlaybackPaused() const { return paused_.load(std::memory_order_acquire); }

    // Ends decoding now as if the track had ended (no pause after it), so a linked next
    // stream takes the device over at once; with crossfade the next track fades in over
    // what is already in the ring. The shell's "next track with crossfade".
    void EndTrackNow(bool crossfade);
    // Whether the hand-over to this stream (when its predecessor ends) is a crossfade.
    void SetCrossfadeOnHandOver(bool crossfade) { crossfadeOnHandOver_.store(crossfade, std::memory_order_release); }

    bool Failed() const { return failed_.load(std::memory_order_acquire); }
    // The failure text; valid once Failed() is true.
    const std::string& ErrorText() const { return errorText_; }
    bool OutputStarted() const { return outputStarted_.load(std::memory_order_acquire); }
    // The priority step its thread runs at (see threadPriority_).
    int ThreadPriority() const { return threadPriority_; }
    bool EndOfTrack() const { return endOfTrack_.load(std::memory_order_acquire); }
    // The track's length as decoding found it, in milliseconds: where the last seek
    // landed plus what was decoded after it. 0 until the decoder itself ended the track
    // (a stop, a failure or EndTrackNow leave it 0).
    uint32_t DecodedLengthMs() const { return decodedLengthMs_.load(std::memory_order_acquire); }
    // The stream that took this stream's device over when this track ended, or null.
    Stream* HandedOverTo() const { return handedOverTo_.load(std::memory_order_acquire); }
    // The stream linked to follow this one (set up, not necessarily started), or null.
    Stream* NextStream() const;

    // A live stream's title as its decoder last reported it (a station's current song),
    // when it changed since the last call; user-interface thread.
    std::optional<std::string> TakeStreamTitle() { return streamTitles_.Take(); }
    // Why the decoder ended the track early (a server gone silent), for the user; empty
    // at a regular end. Valid once the thread has finished.
    const std::string& DecoderMessage() const { return decoderMessage_; }

    const std::string& Path() const { return path_; }
    const TrackInfo& Info() const { return info_; }
    const PcmFormat& Format() const { return format_; }
    const RingLayout& Ring() const { return ring_; }

    // This track's played time in milliseconds: the position the device has really
    // played, counted from the track's first frame (or from the last seek).
    uint32_t PlayedMilliseconds() const;
    // Frames written into the ring since the output started (or the last seek).
    int64_t FramesWritten() const { return framesWritten_.load(std::memory_order_acquire); }

    // Volume 0..65535 in the low 16 bits; the rest is passed on as it is.
    void SetVolume(uint32_t volume);
    uint32_t GetVolume() const;
    bool CanSetVolume() const;

    // The analyzer's view of the ring at the play position (all zero before the output
    // has started): 2 channels x 576 spectrum values 0..255 and waveform samples. Without
    // withSpectrum only the waveform is taken; the spectrum keeps its last values.
    void TakeAnalyzerSnapshot(bool withSpectrum = true);
    int32_t GetAnalyzerValue(int channel, int index) const;
    int32_t GetWaveformValue(int channel, int index) const;
    void UpdatePlayPosition();
    uint32_t LastPlayPosition() const { return playPosition_.load(std::memory_order_relaxed); }

    // The device in use (owned by whichever stream of the chain holds it), or null.
    OutputDevice* Device() const;

protected:
    void Step() override;
    void OnFinish() override;

private:
    // Output device, its ring and their ownership travel together from stream to stream.
    StreamOutput* Output() const { return output_.load(std::memory_order_acquire); }
    void Fail(std::string text);
    bool TryLinkNext(Stream* next);
    void UnlinkFromPrevious();
    // Called on the previous stream's thread when it has written its last frame.
    void ContinueStream(Stream* previous, bool crossfade);
    void ResetCounters();
    // After each Decode: a new stream title goes to the mailbox, the reason of an early
    // end into decoderMessage_ (decoders with the stream extension only).
    void PollStreamExtension(bool ended);

    uint64_t PauseBytes() const;

    // The step's stages.
    bool NextDecodedBlock();
    uint32_t DecodeBlock();
    uint32_t Equalize(uint32_t bytes);
    uint32_t FlushEqualizer();
    void Deliver(uint32_t bytes, bool equalize);
    bool ApplyBufferRules(uint32_t frames);
    bool DeviceFailed(OutputDevice& device);
    void AwaitDevice(OutputDevice& device, uint32_t frames);
    bool HandOverIfLinked(bool closeLink);
    void WriteFrames(const uint8_t* data, uint32_t frames);
    void EndDecoding();
    void TrimTrailingSilence();
    void PlayOut();

    const InputModuleList& modules_;
    const StreamOptions options_;
    // The priority step this stream's thread runs at: the setting's, or the previous
    // stream's when it continues one. Written before the thread starts; read by the
    // thread of a stream that continues this one.
    int threadPriority_ = options_.playerThreadPriority;

    // Set up on the user-interface thread before the thread starts; read-only afterwards.
    std::string path_;
    TrackInfo info_{};
    PcmFormat format_;
    RingLayout ring_;
    InputDecoder* decoder_ = nullptr;
    SectionCursor section_;           // also moved by SeekStream while the thread is paused
    const InputStreamOps* streamOps_ = nullptr;  // the decoder's module's extension, or null
    std::unique_ptr<Equalizer> equalizer_;
    std::unique_ptr<AnalyzerSnapshot> analyzer_;
    int64_t silenceThreshold_ = 0;
    uint32_t crossfadeFrames_ = 0;  // the crossfade length asked for, capped at hand-over

    // The stream thread's own state (also touched by SeekStream while the thread is paused).
    std::vector<uint8_t> work_;       // the work buffer: decoded block, equalized, DSP'd
    const uint8_t* pending_ = nullptr;  // the rest of the decoder's last block
    uint32_t pendingBytes_ = 0;
    uint32_t writePosition_ = 0;      // bytes into the ring
    int64_t framesDecoded_ = 0;
    int64_t trackFramesDecoded_ = 0;  // since the track's start or the last seek
    int64_t equalizerIn_ = 0;         // frames given to and taken from the equalizer:
    int64_t equalizerOut_ = 0;        // the difference is what it holds back
    uint64_t pauseBytes_ = 0;
    bool leadingSilence_ = false;     // still searching the track's start for sound
    Crossfade fade_;
    // Decoding, then the equalizer's tail and the end-of-track silence cut, then the pause.
    enum class Phase { kDecoding, kPause };
    Phase phase_ = Phase::kDecoding;

    // Written by the stream thread (and by Seek while the thread is paused), read by the
    // user-interface thread for positions.
    std::atomic<int64_t> framesWritten_{0};
    // The device frame at which this track's first frame plays: 0 for the stream that
    // opened the device, the hand-over point for a stream that took it over. Written
    // before the thread starts (or by Seek), read by the user-interface thread.
    std::atomic<int64_t> trackStartFrame_{0};
    std::atomic<uint32_t> seekBaseMs_{0};
    std::atomic<uint32_t> decodedLengthMs_{0};  // written by the stream thread at the end

    // Written by the user-interface thread, read by the stream thread.
    std::atomic<bool> paused_{false};
    std::atomic<bool> endNow_{false};
    std::atomic<bool> crossfadeOnHandOver_{false};
    // Written by the stream thread (and Seek), read by the user-interface thread.
    std::atomic<bool> refilling_{false};
    std::atomic<bool> prefilling_{false};  // refilling after a seek
    std::atomic<bool> endOfTrack_{false};
    std::atomic<bool> failed_{false};
    std::string errorText_;           // published by failed_ (release)
    // Stream thread to user-interface thread: titles as they change; the early end's
    // reason, published by the thread's finished state.
    TextMailbox streamTitles_;
    std::string lastStreamTitle_;  // the stream thread's own copy, to post changes only
    std::string decoderMessage_;
    // Written where the output starts (user-interface thread or the predecessor's thread),
    // read everywhere.
    std::atomic<bool> outputStarted_{false};
    std::atomic<StreamOutput*> output_{nullptr};
    // next_ once the stream can no longer hand its device on: nothing links to it any more.
    static constexpr uintptr_t kClosedLink = 1;
    // Links. next_ holds the stream prepared to follow (or kClosedLink once this stream
    // has passed the point where it hands its device on); written by the user-interface
    // thread (link, unlink) and exchanged by the stream thread at its end.
    std::atomic<uintptr_t> next_{0};
    std::atomic<Stream*> previous_{nullptr};
    std::atomic<Stream*> handedOverTo_{nullptr};
    std::atomic<uint32_t> playPosition_{0};  // written and read by the user-interface thread
};

}  // namespace verdin
