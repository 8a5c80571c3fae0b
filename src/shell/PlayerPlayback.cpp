// Playback: the play command, the transport commands, and the progress tick with the
// preparation of the next stream that makes continuous play and crossfade possible.
#include "PlayerCore.h"

#include "playlist/RandomEntry.h"
#include "playlist/RandomEntryWalk.h"
#include "playlist/TrackItem.h"
#include "playlist/files/RetrievalRule.h"
#include "playlist/random/SampleSpaceTexts.h"
#include "plugins/dsp/DspHost.h"
#include "settings/EqualizerRecord.h"

#include <algorithm>

namespace verdin {

bool PlayerCore::PrepareSampleSpaceFor(bool keepRandomEntries) {
    if (!ContainsRandomEntry(main_)) return true;
    if (!sampleSpace_.Valid()) {
        statusState_ = static_cast<int32_t>(StatusState::CreatingSampleSpace);
        host_.RefreshNow();
        ResetRandomEntries(main_);
        const bool found = RecreateSampleSpace();
        statusState_ = 0;
        host_.Refresh(false);
        if (!found) return false;
    }
    if (!keepRandomEntries) ResetRandomEntries(main_);
    return true;
}

bool PlayerCore::RecreateSampleSpace() {
    SampleSpaceOptions options;
    options.ignoreTags = settings_.ignoreID3Tags != 0;
    const bool found = sampleSpace_.CreateSampleSpace(settings_.sampleSpaceSearchPath,
                                                      settings_.recurseSampleSpaceSearchPath != 0,
                                                      modules_.SupportedExtensions(), modules_, options);
    if (!found) host_.ShowMessage(kNoSampleSpaceTracksWarning, MessageIcon::kWarning);
    return found;
}

// The path the engine plays for a row: a track's name, or a random entry's picked track
// (the null track when nothing matches). record receives the track record, if any.
std::string PlayerCore::PathOfRow(int row, TrackRecord** record) {
    *record = nullptr;
    const RowRef ref = main_.ItemAtRow(row);
    if (!ref || !ref.item->IsPlayable()) return Stream::kNullTrack;
    if (ref.item->Kind() == ItemKind::kTrack) {
        *record = &static_cast<TrackItem*>(ref.item)->Track();
    } else {
        *record = sampleSpace_.Resolve(*static_cast<RandomEntry*>(ref.item), settings_.vdpHistory);
    }
    return *record ? (*record)->FullName() : Stream::kNullTrack;
}

std::unique_ptr<Stream> PlayerCore::MakeStream(const std::string& path, Stream* previous) {
    StreamOptions options = StreamOptionsFrom(settings_);
    if (dsp_) options.dsp = DspHook{dsp_->HookContext(), &DspHost::Process};
    auto stream = std::make_unique<Stream>(modules_, options);
    stream->OpenStream(path, previous);
    return stream;
}

void PlayerCore::ApplyPresetLink(const std::string& path) {
    if (!settings_.usePresetLinks) return;
    if (!settings_.presets.ChooseForTrack(path, settings_.equalizerValues, settings_.preAmp)) return;
    if (current_) current_->SetEqualizerValues(EqualizerRecordOf(settings_));
}

void PlayerCore::TrackStarted(const TrackRecord* record) {
    loaded_ = record ? std::make_unique<TrackRecord>(*record) : nullptr;
    const auto [maximum, page] = PositionRange(current_ ? current_->Info().duration : 0);
    host_.SetPositionRange(maximum, page);
}

void PlayerCore::Play(bool keepRandomEntries) {
    Stop();
    if (main_.PlayableCount() == 0) return;
    if (!PrepareSampleSpaceFor(keepRandomEntries)) return;
    if (!IsPlayableRow(main_, currentRow_)) {
        const int first = NextPlayableRow(main_, currentRow_);
        currentRow_ = first >= 0 ? first : NextPlayableRow(main_, 0);
        order_.SetCursorToRow(currentRow_);
    }
    if (!StartCurrentRow()) return;
    host_.SetTimersRunning(true);
    Refresh(false);
}

void PlayerCore::RetrieveBeforePlaying(TrackRecord* record) {
    if (deferRetrieval_ && record && !record->InfoRetrieved()) RetrieveOnAdd(*record, settings_, modules_);
}

bool PlayerCore::StartCurrentRow() {
    TrackRecord* record = nullptr;
    const std::string path = PathOfRow(currentRow_, &record);
    RetrieveBeforePlaying(record);
    ApplyPresetLink(path);
    current_ = MakeStream(path, nullptr);
    nextPrepared_ = false;
    OutputTarget target = OutputTargetFrom(settings_);
    target.trackNumber = currentRow_ + 1;
    target.entryCount = main_.RowCount();
    target.title = record ? TrackTitle(*record) : std::string(Stream::kNullTrack);
    if (current_->Failed() || !current_->StartStream(target)) {
        const std::string error = current_->ErrorText();
        current_.reset();
        loaded_.reset();
        host_.SetTimersRunning(false);
        host_.ShowMessage(error, MessageIcon::kError);
        Refresh(false);
        return false;
    }
    TrackStarted(record);
    return true;
}

void PlayerCore::CloseNext() {
    if (next_) next_->CloseStream();
    next_.reset();
    nextLoaded_.reset();
    nextRow_ = -1;
}

void PlayerCore::CloseStreams() {
    // The next stream first: once it is unlinked, the current one can hand nothing over.
    CloseNext();
    if (current_) current_->CloseStream();
    current_.reset();
    loaded_.reset();
}

void PlayerCore::Stop() {
    CloseStreams();
    host_.SetTimersRunning(false);
    Refresh(false);
}

void PlayerCore::PauseResume() {
    if (!current_) return;
    if (current_->PlaybackPaused()) current_->ResumePlayback();
    else current_->PausePlayback();
    Refresh(false);
}

void PlayerCore::NextTrack(bool crossfade) {
    if (crossfade && current_ && next_ && current_->NextStream() == next_.get()) {
        // The prepared stream takes over at once and fades in over what is in the ring;
        // the progress tick swaps it in as at the end of a track.
        current_->EndTrackNow(true);
        return;
    }
    const bool wasPlaying = Playing();
    const PlayOrder::Move move = order_.MoveOn(main_, currentRow_, settings_.shuffleMode != 0, true);
    currentRow_ = move.row;
    if (wasPlaying) Play(true);
    else Refresh(false);
}

void PlayerCore::PreviousTrack() {
    const bool wasPlaying = Playing();
    currentRow_ = order_.Previous(main_, currentRow_, settings_.shuffleMode != 0, settings_.loopMode != 0);
    if (wasPlaying) Play(true);
    else Refresh(false);
}

void PlayerCore::PlayRow(int row) {
    if (!main_.ItemAtRow(row)) return;
    currentRow_ = row;
    order_.SetCursorToRow(row);
    Play();
}

void PlayerCore::SeekTo(uint32_t milliseconds) {
    if (!current_) return;
    current_->SeekStream(milliseconds);
    Refresh(false);
}

void PlayerCore::SeekBy(int milliseconds) {
    if (!current_) return;
    const int64_t target = static_cast<int64_t>(current_->PlayedMilliseconds()) + milliseconds;
    SeekTo(static_cast<uint32_t>(std::clamp<int64_t>(target, 0, UINT32_MAX)));
}

void PlayerCore::ChangeVolume(int delta) {
    const int volume = std::clamp(static_cast<int>(settings_.Volume()) + delta, 0, 65535);
    settings_.SetVolume(static_cast<uint16_t>(volume));
    ApplyVolume();
}

void PlayerCore::SetVolumeFromThumb(int thumb) {
    thumb = std::clamp(thumb, 0, 32767);
    settings_.SetVolume(static_cast<uint16_t>(thumb * 2 + (thumb & 1)));
    ApplyVolume();
}

void PlayerCore::ApplyVolume() {
    if (current_) current_->SetVolume(static_cast<uint32_t>(settings_.mainVolume));
    Refresh(false);
}

// The row after the current one in the play order, its track set up and linked to the
// current stream so it takes the device over when the current track ends.
void PlayerCore::PrepareNextStream() {
    holdRow_ = false;
    CloseNext();
    nextPrepared_ = true;
    const int row = order_.Following(main_, currentRow_, settings_.shuffleMode != 0, settings_.loopMode != 0);
    if (row < 0 || !current_) return;
    TrackRecord* record = nullptr;
    const std::string path = PathOfRow(row, &record);
    RetrieveBeforePlaying(record);
    if (settings_.usePresetLinks) settings_.presets.ChooseForTrack(path, settings_.equalizerValues, settings_.preAmp);
    auto stream = MakeStream(path, current_.get());
    if (stream->Failed() || current_->NextStream() != stream.get()) {
        // Not linked (another sample format, an unknown format): the current track ends
        // on its own and the tick starts this row itself.
        stream->CloseStream();
        return;
    }
    stream->SetCrossfadeOnHandOver(settings_.crossfade != 0);
    next_ = std::move(stream);
    nextRow_ = row;
    nextLoaded_ = record ? std::make_unique<TrackRecord>(*record) : nullptr;
}

void PlayerCore::MoveCurrentRowOn(bool& keepPlaying, bool& wrapped) {
    const PlayOrder::Move move =
        order_.MoveOn(main_, currentRow_, settings_.shuffleMode != 0, settings_.loopMode != 0);
    currentRow_ = move.row;
    keepPlaying = move.keepPlaying;
    wrapped = move.wrapped;
}

void PlayerCore::DeleteFinishedRow(int row) {
    const RowRef ref = main_.ItemAtRow(row);
    if (!ref) return;
    const int count = 1 + (ref.item->Kind() == ItemKind::kPlaylist ? static_cast<Playlist*>(ref.item)->RowCount() : 0);
    ref.holder->RemoveItem(ref.index);
    order_.RowsRemoved(row, count);
    if (currentRow_ > row) currentRow_ -= count;
    if (nextRow_ > row) nextRow_ -= count;
    Refresh(true);
}

void PlayerCore::ProgressTick() {
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
        Refresh(false);
        return;
    }

    const int finishedRow = currentRow_;
    Stream* follower = current_->HandedOverTo();
    if (!current_->Failed() && follower && follower == next_.get()) {
        current_->CloseStream();
        current_ = std::move(next_);
        loaded_ = std::move(nextLoaded_);
        const int preparedRow = nextRow_;
        nextRow_ = -1;
        nextPrepared_ = false;
        ApplyPresetLink(current_->Path());
        if (!holdRow_) {
            bool keepPlaying = false, wrapped = false;
            MoveCurrentRowOn(keepPlaying, wrapped);
            // The prepared row is what plays; the play order agrees with it unless the
            // list changed meanwhile (then the prepared stream was dropped already).
            if (preparedRow >= 0) currentRow_ = preparedRow;
        }
        const auto [maximum, page] = PositionRange(current_->Info().duration);
        host_.SetPositionRange(maximum, page);
    } else {
        const std::string error = current_->Failed() ? current_->ErrorText() : std::string();
        CloseStreams();
        if (!error.empty()) host_.ShowMessage(error, MessageIcon::kError);
        bool keepPlaying = false, wrapped = false;
        MoveCurrentRowOn(keepPlaying, wrapped);
        if (settings_.deleteTracksAfterPlaying) DeleteFinishedRow(finishedRow);
        if (keepPlaying && error.empty()) {
            Play(true);
        } else {
            host_.SetPositionRange(0, 1);
            host_.SetTimersRunning(false);
        }
        Refresh(false);
        return;
    }
    if (settings_.deleteTracksAfterPlaying) DeleteFinishedRow(finishedRow);
    Refresh(false);
}

}  // namespace verdin
