#pragma once
// Playback: the stream that plays the current row and the one prepared to follow it, the
// equalizer as the streams get it (the settings' values, or preset links), volume, seek
// and pause, and the progress tick.
//
// The current stream plays the main list's current row; the next stream, prepared while
// the current one plays, takes its device over when the track ends (continuous play and
// crossfade). The progress tick (every 100 ms while anything plays) notices the end of a
// track, swaps in the prepared stream, tells the main list the track ended (which moves
// its current row on, and deletes the finished entry when the settings say so), and
// prepares the stream after that. Any change of the list's rows or current row drops the
// prepared stream: the track that follows may be another one now.
//
// Playback reads the settings and writes only what it owns among them: the volume, and
// the equalizer values a preset link chooses. It tells whoever runs it what changed
// through the announcement function. User-interface thread only.
#include "engine/stream/Stream.h"
#include "playlist/titles/StatusLine.h"
#include "shell/replaygain/ReplayGainSettings.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace verdin {

class DspHost;
class InputModuleList;
class MainList;
class PlayerHost;
class TrackRecord;
struct Settings;

class Playback {
public:
    // What changed, for the announcement: kDisplay for title, status and position;
    // kTrack when the track in the player changed (its position bars start anew); kJump
    // after every seek.
    enum Change : unsigned { kDisplay = 1, kTrack = 2, kJump = 4 };
    using Announcer = std::function<void(unsigned changes)>;

    Playback(Settings& settings, const InputModuleList& modules, MainList& list, PlayerHost& host, Announcer announce);
    ~Playback();
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;

    // The DSP stage of streams made from now on (null: none).
    void SetDsp(DspHost* dsp) { dsp_ = dsp; }
    // The ReplayGain of streams made from now on.
    void SetReplayGain(const ReplayGainSettings& settings) { replayGain_ = settings; }
    const ReplayGainSettings& ReplayGain() const { return replayGain_; }

    bool Playing() const { return current_ != nullptr; }
    PlayerStatus Status() const;
    uint32_t PositionMs() const;
    // A copy of the record of the track in the player, or null.
    const TrackRecord* LoadedTrack() const { return loaded_.get(); }
    const Stream* CurrentStream() const { return current_.get(); }
    // The position bars' range (seconds) and page for the track in the player.
    std::pair<int, int> PositionRange() const { return range_; }
    static std::pair<int, int> PositionRangeFor(uint32_t durationMs);

    // The status line's state (StatusLine.h) and the position thumb's drag.
    int32_t StatusLineState() const { return statusState_; }
    void SetStatusState(StatusState state);
    const PositionDrag& Drag() const { return drag_; }
    void SetDrag(const PositionDrag& drag) { drag_ = drag; }
    bool PositionHold() const { return positionHold_; }
    void SetPositionHold(bool hold) { positionHold_ = hold; }

    // The play command: the current row from the start (keepRandomEntries: random entries
    // keep what they picked).
    void Play(bool keepRandomEntries = false);
    void Stop();
    void PauseResume();
    void Next(bool crossfade);
    void Previous();
    void PlayRow(int row);
    void SeekTo(uint32_t milliseconds);
    void SeekBy(int milliseconds);
    // The settings' volume to the playing stream.
    void ApplyVolume();
    // These equalizer values to the playing streams, the settings untouched.
    void ApplyEqualizer(bool enabled, const EqualizerValues& values);
    // The analyzer's view of what plays now (Stream::TakeAnalyzerSnapshot).
    void TakeAnalyzerSnapshot(bool withSpectrum = true) {
        if (current_) current_->TakeAnalyzerSnapshot(withSpectrum);
    }
    // The settings that decide what follows changed (loop, shuffle): prepare it anew.
    void FollowingChanged();
    // Builds the sample space (the status line says so meanwhile); says so when it holds no
    // track.
    bool RecreateSampleSpace();

    void ProgressTick();

private:
    bool PrepareSampleSpace(bool keepRandomEntries);
    bool StartCurrentRow();
    std::unique_ptr<Stream> MakeStream(const std::string& path, Stream* previous);
    void ApplyPresetLink(const std::string& path);
    void TrackStarted(std::pair<int, int> range);
    void PrepareNextStream();
    void DropPrepared();
    void FollowStreamTitle();
    void CloseStreams();
    void Announce(unsigned changes) { announce_(changes); }

    Settings& settings_;
    const InputModuleList& modules_;
    MainList& list_;
    PlayerHost& host_;
    Announcer announce_;
    ReplayGainSettings replayGain_;
    DspHost* dsp_ = nullptr;

    std::unique_ptr<Stream> current_;
    std::unique_ptr<Stream> next_;
    bool nextPrepared_ = false;   // a next stream was tried for the current one
    std::unique_ptr<TrackRecord> loaded_;
    std::unique_ptr<TrackRecord> nextLoaded_;
    std::pair<int, int> range_{0, 1};

    bool progressBusy_ = false;
    bool positionHold_ = false;
    int32_t statusState_ = 0;
    PositionDrag drag_;
};

}  // namespace verdin
