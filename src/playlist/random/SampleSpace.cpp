#include "playlist/random/SampleSpace.h"

#include "playlist/ProcessRandom.h"
#include "playlist/RandomEntry.h"
#include "playlist/RandomEntryWalk.h"
#include "playlist/TrackRecord.h"
#include "playlist/random/CompiledExpression.h"
#include "playlist/random/SampleSpaceScan.h"

#include <algorithm>
#include <unordered_set>

namespace verdin {

SampleSpace::SampleSpace() = default;
SampleSpace::~SampleSpace() = default;

bool SampleSpace::CreateSampleSpace(std::string_view searchPath, bool recurse, std::string_view extensions,
                                    const InputModuleList& modules, const SampleSpaceOptions& options) {
    SeedProcessRandom(TimeSeed());
    ReplaceTracks({});

    std::vector<std::unique_ptr<TrackRecord>> tracks;
    for (const std::string& file : SampleSpaceFiles(SampleSpaceDirectories(searchPath, recurse), extensions))
        tracks.push_back(std::make_unique<TrackRecord>(file));
    RetrieveAllInformation(tracks, modules, options.ignoreTags, options.threads, options.progress);
    ReplaceTracks(std::move(tracks));
    return valid_;
}

void SampleSpace::ReplaceTracks(std::vector<std::unique_ptr<TrackRecord>> tracks) {
    history_.clear();
    columns_.Clear();
    tracks_ = std::move(tracks);
    valid_ = !tracks_.empty();
}

TrackRecord* SampleSpace::Resolve(RandomEntry& entry, int vdpHistory) {
    if (entry.Picked()) return entry.PickedTrack();

    const CompiledExpression expression(entry.Expression());
    const std::unordered_set<const TrackRecord*> recent(history_.begin(), history_.end());
    std::vector<TrackRecord*> candidates;
    for (std::size_t row = 0; row < tracks_.size(); ++row) {
        TrackRecord* track = tracks_[row].get();
        if (!recent.count(track) && expression.Matches(*track, row, tracks_.size(), columns_)) candidates.push_back(track);
    }

    TrackRecord* picked = &TrackRecord::NullTrack();
    if (candidates.empty()) {
        history_.clear();
    } else {
        picked = candidates[NextProcessRandom() % candidates.size()];
        history_.push_back(picked);
        if (history_.size() > static_cast<std::size_t>(std::max(vdpHistory, 0))) history_.pop_front();
    }
    entry.SetPicked(picked);
    return picked;
}

bool NeedsSampleSpace(const Playlist& main, const SampleSpace& space) {
    return !space.Valid() && ContainsRandomEntry(main);
}

}  // namespace verdin
