#include "Playback.h"

#include "playlist/TrackRecord.h"
#include "playlist/files/CueTrackPath.h"
#include "playlist/mainlist/MainList.h"
#include "playlist/random/SampleSpaceTexts.h"
#include "playlist/titles/TrackTitle.h"
#include "plugins/dsp/DspHost.h"
#include "settings/EqualizerRecord.h"
#include "settings/Settings.h"
#include "shell/PlayerHost.h"
#include "shell/replaygain/ReplayGainFactor.h"

#include <algorithm>
#include <cstring>

namespace verdin {

Playback::Playback(Settings& settings, const InputModuleList& modules, MainList& list, PlayerHost& host,
                   Announcer announce)
    : settings_(settings), modules_(modules), list_(list), host_(host), announce_(std::move(announce)) {
    list_.Listen([this](const ListChange& change) {
        if (change.rows || change.current) DropPrepared();
    });
}

Playback::~Playback() { CloseStreams(); }

PlayerStatus Playback::Status() const {
    if (!current_) return PlayerStatus::Stopped;
    return current_->PlaybackPaused() ? PlayerStatus::Paused : PlayerStatus::Playing;
}

uint32_t Playback::PositionMs() const { return current_ ? current_->PlayedMilliseconds() : 0; }

std::pair<int, int> Playback::PositionRangeFor(uint32_t durationMs) {
    const int d = static_cast<int>(durationMs / 1000);
    if (d < 16) return {d, 1};
    return {d + d / 16 - 1, d / 16};
}

void Playback::SetStatusState(StatusState state) {
    statusState_ = static_cast<int32_t>(state);
    Announce(kDisplay);
    // The callers block the thread next (a sample space build, reading every track): the
    // state must show before they do.
    if (state != StatusState::Normal) host_.RefreshNow();
}

bool Playback::RecreateSampleSpace() {
    SetStatusState(StatusState::CreatingSampleSpace);
    SampleSpaceOptions options;
    options.ignoreTags = settings_.ignoreID3Tags != 0;
    const bool found = list_.RecreateSampleSpace(options);
    SetStatusState(StatusState::Normal);
    if (!found) host_.ShowMessage(kNoSampleSpaceTracksWarning, MessageIcon::kWarning);
    return found;
}

bool Playback::PrepareSampleSpace(bool keepRandomEntries) {
    if (!list_.HasRandomEntries()) return true;
    if (!list_.Samples().Valid() && !RecreateSampleSpace()) return false;
    if (!keepRandomEntries) list_.ResetRandomEntries();
    return true;
}

std::unique_ptr<Stream> Playback::MakeStream(const std::string& path, Stream* previous) {
    StreamOptions options = StreamOptionsFrom(settings_);
    // A track prepared while another plays equalizes with its linked preset from its first
    // block; the settings take that preset only when the track is heard (ApplyPresetLink).
    if (const int preset = settings_.usePresetLinks ? settings_.presets.PresetForTrack(path) : -1; preset >= 0) {
        const EqualizerPreset& linked = settings_.presets.At(static_cast<size_t>(preset));
        options.equalizerValues = MakeEqualizerRecord(linked.bands, linked.preAmp, settings_.loudness != 0);
    }
    if (dsp_) options.dsp = DspHook{dsp_->HookContext(), &DspHost::Process};
    options.gain = ReplayGainFactorFor(replayGain_, path);
    auto stream = std::make_unique<Stream>(modules_, options);
    // A cue sheet's track plays its section of the sheet's image.
    if (SplitCueTrackPath(path)) {
        FileSection section;
        if (const std::optional<CueTrackSource> cue = ResolveCueTrack(path, section.error))
            section = FileSection{cue->image, cue->begin, cue->end, {}};
        stream->OpenStream(path, previous, &section);
        return stream;
    }
    stream->OpenStream(path, previous);
    return stream;
}

void Playback::ApplyPresetLink(const std::string& path) {
    if (!settings_.usePresetLinks) return;
    if (!settings_.presets.ChooseForTrack(path, settings_.equalizerValues, settings_.preAmp)) return;
    if (current_) current_->SetEqualizer(settings_.equalize != 0, EqualizerRecordOf(settings_));
}

void Playback::TrackStarted(std::pair<int, int> range) {
    range_ = range;
    Announce(kTrack | kDisplay);
}

void Playback::Play(bool keepRandomEntries) {
    Stop();
    if (list_.Tree().PlayableCount() == 0) return;
    if (!PrepareSampleSpace(keepRandomEntries)) return;
    const int row = list_.CurrentRow();
    if (!IsPlayableRow(list_.Tree(), row)) {
        const int first = list_.FirstPlayable(row);
        list_.SetCurrent(first >= 0 ? first : list_.FirstPlayable(0));
    }
    if (!StartCurrentRow()) return;
    host_.SetTimersRunning(true);
    Announce(kDisplay);
}

bool Playback::StartCurrentRow() {
    const int row = list_.CurrentRow();
    const TrackRecord* record = list_.TrackToPlay(row);
    const std::string path = record ? record->FullName() : std::string(Stream::kNullTrack);
    ApplyPresetLink(path);
    current_ = MakeStream(path, nullptr);
    nextPrepared_ = false;
    OutputTarget target = OutputTargetFrom(settings_);
    target.trackNumber = row + 1;
    target.entryCount = list_.RowCount();
    target.title = record ? ExpandTrackTitle(*record, settings_.trackTitleTemplate) : std::string(Stream::kNullTrack);
    if (current_->Failed() || !current_->StartStream(target)) {
        const std::string error = current_->ErrorText();
        current_.reset();
        loaded_.reset();
        host_.SetTimersRunning(false);
        host_.ShowMessage(error, MessageIcon::kError);
        Announce(kDisplay);
        return false;
    }
    loaded_ = record ? std::make_unique<TrackRecord>(*record) : nullptr;
    TrackStarted(PositionRangeFor(current_->Info().duration));
    return true;
}

void Playback::DropPrepared() {
    if (next_) next_->CloseStream();
    next_.reset();
    nextLoaded_.reset();
    nextPrepared_ = false;
}

void Playback::FollowingChanged() {
    if (Playing()) DropPrepared();
}

void Playback::CloseStreams() {
    // The next stream first: once it is unlinked, the current one can hand nothing over.
    DropPrepared();
    if (current_) current_->CloseStream();
    current_.reset();
    loaded_.reset();
}

void Playback::Stop() {
    CloseStreams();
    host_.SetTimersRunning(false);
    Announce(kDisplay);
}

void Playback::PauseResume() {
    if (!current_) return;
    if (current_->PlaybackPaused()) current_->ResumePlayback();
    else current_->PausePlayback();
    Announce(kDisplay);
}

void Playback::Next(bool crossfade) {
    if (crossfade && current_ && next_ && current_->NextStream() == next_.get()) {
        // The prepared stream takes over at once and fades in over what is in the ring;
        // the progress tick swaps it in as at the end of a track.
        current_->EndTrackNow(true);
        return;
    }
    const bool wasPlaying = Playing();
    list_.MoveOn(true);
    if (wasPlaying) Play(true);
    else Announce(kDisplay);
}

void Playback::Previous() {
    const bool wasPlaying = Playing();
    list_.MoveBack(settings_.loopMode != 0);
    if (wasPlaying) Play(true);
    else Announce(kDisplay);
}

void Playback::PlayRow(int row) {
    if (!list_.ItemAt(row)) return;
    list_.SetCurrent(row);
    Play();
}

void Playback::SeekTo(uint32_t milliseconds) {
    if (!current_) return;
    current_->SeekStream(milliseconds);
    Announce(kDisplay | kJump);
}

void Playback::SeekBy(int milliseconds) {
    if (!current_) return;
    const int64_t target = static_cast<int64_t>(current_->PlayedMilliseconds()) + milliseconds;
    SeekTo(static_cast<uint32_t>(std::clamp<int64_t>(target, 0, UINT32_MAX)));
}

void Playback::ApplyVolume() {
    if (current_) current_->SetVolume(static_cast<uint32_t>(settings_.mainVolume));
    Announce(kDisplay);
}

void Playback::ApplyEqualizer(bool enabled, const EqualizerValues& values) {
    // The next stream is linked to the current one, or not yet: both are told.
    for (Stream* stream : {current_.get(), next_.get()})
        if (stream) stream->SetEqualizer(enabled, values);
}

// The row after the current one in the play order, its track set up and linked to the
// current stream so it takes the device over when the current track ends.
void Playback::PrepareNextStream() {
    DropPrepared();
    nextPrepared_ = true;
    const int row = list_.Following(settings_.loopMode != 0);
    if (row < 0 || !current_) return;
    const TrackRecord* record = list_.TrackToPlay(row);
    const std::string path = record ? record->FullName() : std::string(Stream::kNullTrack);
    auto stream = MakeStream(path, current_.get());
    if (stream->Failed() || current_->NextStream() != stream.get()) {
        // Not linked (another sample format, an unknown format): the current track ends
        // on its own and the tick starts this row itself.
        stream->CloseStream();
        return;
    }
    stream->SetCrossfadeOnHandOver(settings_.crossfade != 0);
    next_ = std::move(stream);
    nextLoaded_ = record ? std::make_unique<TrackRecord>(*record) : nullptr;
}

// A live stream's title (a station's current song) becomes the title of the track in the
// player, which every face shows; the playlist's entry keeps its own.
void Playback::FollowStreamTitle() {
    const std::optional<std::string> title = current_->TakeStreamTitle();
    if (!title || !loaded_) return;
    TrackInfo info = loaded_->Info();
    const size_t length = std::min(title->size(), sizeof info.suggestedTitle - 1);
    std::memcpy(info.suggestedTitle, title->data(), length);
    info.suggestedTitle[length] = '\0';
    loaded_->SetInfo(info);
}

void Playback::ProgressTick() {
    if (progressBusy_) return;
    progressBusy_ = true;
    struct Clear {
        bool& flag;
        ~Clear() { flag = false; }
    } clear{progressBusy_};

    if (!current_) {
        host_.SetTimersRunning(false);
        return;
    }
    if (current_->GetState() != WorkerThread::kFinished) {
        // Playing (or paused): prepare the next track once this one's output has started,
        // since only then can the two be linked.
        if (!nextPrepared_ && settings_.outputType != 1 && current_->OutputStarted()) PrepareNextStream();
        FollowStreamTitle();
        Announce(kDisplay);
        return;
    }
    // A live stream that ended early says why; the time it played is not its length.
    const std::string message = current_->DecoderMessage();
    if (!message.empty()) host_.ShowMessage(message, MessageIcon::kError);

    const bool loop = settings_.loopMode != 0;
    const bool deleteFinished = settings_.deleteTracksAfterPlaying != 0;
    if (message.empty()) list_.LearnLength(current_->Path(), current_->DecodedLengthMs());
    Stream* follower = current_->HandedOverTo();
    if (!current_->Failed() && follower && follower == next_.get()) {
        // The prepared stream took the device over. Nothing changed the list since it was
        // prepared (a change drops it), so it plays the row the order moves on to.
        current_->CloseStream();
        current_ = std::move(next_);
        loaded_ = std::move(nextLoaded_);
        nextPrepared_ = false;
        ApplyPresetLink(current_->Path());
        list_.MoveOn(loop, deleteFinished);
        TrackStarted(PositionRangeFor(current_->Info().duration));
        return;
    }
    const std::string error = current_->Failed() ? current_->ErrorText() : std::string();
    CloseStreams();
    if (!error.empty()) host_.ShowMessage(error, MessageIcon::kError);
    const PlayOrder::Move move = list_.MoveOn(loop, deleteFinished);
    if (move.keepPlaying && error.empty()) {
        Play(true);
        return;
    }
    TrackStarted({0, 1});
    host_.SetTimersRunning(false);
}

}  // namespace verdin
