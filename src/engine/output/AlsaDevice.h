#pragma once
// The wave-out device on ALSA: one PCM, fed from the stream's ring by a device thread.
//
// How it plays. The ring is one looping buffer, as a wave-out device of the design
// plays one looping block: after Start the device thread hands the ring to ALSA from its
// first byte on, round and round, in small pieces. Positions come from what the card has
// really played: frames handed to ALSA minus snd_pcm_delay (or, on the `null` PCM, which
// swallows everything at once, frames counted by the clock at the format's rate).
//
// What it never does is play stale data. The thread hands over only frames the streams
// have committed (the running total of CommitFrames since Start, taking back the frames
// of a crossfade's negative commit) and, after SetEndOfData, nothing past the end mark;
// when it runs out, the card falls silent instead of going round the ring again.
//
// Threads without locks. Start, Stop, Pause and Resume publish the wanted state in one
// atomic word and wake the device thread through an eventfd; they return once the thread
// has carried it out (or after a second if it is held up in the sound system). Only the
// device thread calls ALSA. The played-frame count is one atomic word tagged with the
// run number of the last Start, so Start resets it at once and a late publication of the
// previous run cannot undo that. The volume is one atomic word that the thread reads for
// every piece it hands over, scaling a copy of the piece in software (and handing the
// ring's bytes directly at full volume).
//
// Volume kept on close: a wave-out device of the design restores the card's volume on close, so a
// change made during playback did not outlive it. Here the volume never leaves the
// device (no mixer is touched), so it ends with the device by construction; a new device
// starts at full volume until the player sets its own.
//
// Failures. A PCM that cannot be opened leaves IsOpen false. An error while playing (a
// device unplugged, a sound server that died) is kept for ErrorText and Failed(); the
// thread then stops calling ALSA and counts frames by the clock, so streams waiting on
// the positions run on to their end instead of hanging. Closing asks the thread to end
// and waits at most a few seconds; a thread still held up in ALSA then is left to end on
// its own (it shares nothing with the device object but a reference-counted core).
#include "engine/output/OutputDevice.h"

#include <memory>
#include <string>

namespace verdin {

class AlsaDevice : public OutputDevice {
public:
    // deviceNumber -1 is the "default" PCM; n >= 0 entry n + 1 of ListAlsaDevices().
    AlsaDevice(int deviceNumber, PcmFormat format, uint8_t* ring, uint32_t ringSize);
    // Opens the PCM of that name ("default", "null", "pulse", "hw:0,0", ...).
    AlsaDevice(const std::string& pcmName, PcmFormat format, uint8_t* ring, uint32_t ringSize);
    ~AlsaDevice() override;

    bool IsOpen() const override;
    int Start() override;
    void Stop() override;
    void Pause() override;
    void Resume() override;
    // Counts the frames the streams have made ready (see above); copies nothing.
    void CommitFrames(int32_t count) override;
    void TakeBackFrames(uint32_t frames) override;
    // Volume 0..65535 on both channels; the high 16 bits of the value are ignored.
    void SetVolume(uint32_t volume) override;
    uint32_t GetVolume() override;
    uint32_t GetPlayPosition() override;
    int64_t GetPlayedFrames() override;
    bool CanSetVolume() const override;
    void SetEndOfData(int64_t framesWritten) override;
    bool Failed() const override;
    std::string ErrorText() const override;

    // The PCM name the device was opened with.
    const std::string& PcmName() const { return pcmName_; }

    struct Core;

private:
    void Open();

    const std::string pcmName_;
    // Why opening failed; written by the constructor only.
    std::string openError_;
    std::shared_ptr<Core> core_;
};

}  // namespace verdin
