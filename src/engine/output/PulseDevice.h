#pragma once
// The DirectSound device on PulseAudio: a playback stream whose buffer is the ring's
// size, into which the device copies every block the streams commit.
//
// Why this shape. A DirectSound device keeps a looping sound buffer of the ring's size and
// copies each committed block into it at its own write cursor; a negative commit moved
// the cursor back so that the next track's first frames overwrite the end of the last one
// (the crossfade). A PulseAudio stream has the same write model: pa_stream_write appends
// at the write index, and a relative seek moves that index back over data that has not
// been played yet. So a positive commit writes the committed bytes from the ring at the
// device's cursor (in two pieces when they wrap), and a negative commit moves the cursor
// back by channels x (bits / 8) x count bytes (the crossfade passes a byte count there,
// so the move is scaled twice, as the design has it) and makes the next write seek back by
// as much. The cursor moves as the design's does: (cursor + n) mod ringSize computed on
// the unsigned 32-bit sum.
//
// Why a thread of its own, and no lock. libpulse objects belong to the thread that runs
// their main loop. The device runs a plain pa_mainloop on its own thread; nobody else
// touches the context or the stream once that thread runs. Stream threads hand over
// commits through a lock-free queue, Start/Stop/Pause/Resume through one atomic request
// word, the user-interface thread the volume through one atomic word; then they raise an
// eventfd that the main loop polls beside the server's socket, so the thread wakes at
// once. (pa_threaded_mainloop would put its lock in the stream thread's path.) The thread
// publishes the played frames as one atomic word tagged with the run number of the last
// Start, so Start resets the count at once and a late value of the last run cannot undo
// it. Start, Stop, Pause and Resume wait, at most a second, until the thread has done
// them, so that the positions that follow describe the new state.
//
// Positions. Played frames are the stream's time (pa_stream_get_time: what the server
// says has been heard, interpolated between its timing updates) since the last Start,
// converted to frames; the play position is that count modulo the ring, in bytes. Once
// the server's clock is seen to run, the device thread looks at it only every 500 ms and
// publishes an anchor that readers move on by the time since (PlayAnchor); while the
// server holds plenty, commits do not wake the thread either, and its next look sends
// them. Playing then costs a handful of wake-ups a second instead of fifty.
//
// The server buffer does not stop on underrun (prebuf 0), as a looping sound
// buffer plays on: the engine's underrun guard pauses the device instead.
//
// Failures. Opening gives up after a second and a half when no server answers; IsOpen is
// then false. When the server goes away while playing, the device records why (ErrorText,
// Failed) and from then on counts frames by the clock, so streams waiting for room run on
// instead of hanging. Nothing blocks on the server: every wait is bounded.
//
// The cooperative level has no PulseAudio meaning; it is stored and shown.
#include "engine/output/OutputDevice.h"
#include "engine/output/OutputDeviceEntry.h"

#include <memory>
#include <string>
#include <vector>

namespace verdin {

class PulseDevice : public OutputDevice {
public:
    // deviceIndex picks an entry of ListPulseDevices() (the default sink is entry 0);
    // an index out of range picks the first entry.
    PulseDevice(PcmFormat format, uint8_t* ring, uint32_t ringSize, int deviceIndex,
                int cooperativeLevel);
    ~PulseDevice() override;

    bool IsOpen() const override;
    int Start() override;
    void Stop() override;
    void Pause() override;
    void Resume() override;
    void CommitFrames(int32_t count) override;
    void TakeBackFrames(uint32_t frames) override;
    // 0 gives -10000 hundredths of a decibel (silence); otherwise 2000 x log10(v/65535),
    // truncated. Applied as the stream's volume on the server.
    void SetVolume(uint32_t volume) override;
    // The level in hundredths of a decibel as it is, in 16 bits (not turned back into
    // 0..65535).
    uint32_t GetVolume() override;
    uint32_t GetPlayPosition() override;
    int64_t GetPlayedFrames() override;
    bool CanSetVolume() const override;
    bool Failed() const override;
    std::string ErrorText() const override;

    int CooperativeLevel() const { return cooperativeLevel_; }
    // The sink the stream plays on.
    const std::string& SinkName() const { return sinkName_; }

    struct Core;

private:
    const int cooperativeLevel_;
    std::string sinkName_;
    std::string openError_;  // written by the constructor only
    std::shared_ptr<Core> core_;
};

}  // namespace verdin
