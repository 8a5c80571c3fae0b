#pragma once
// The sample space: the catalogue of tracks that random entries pick from, and the pick
// history that keeps lately picked tracks from coming back.
//
// Building (CreateSampleSpace): the process generator is seeded from the local time, the
// history emptied and the old tracks destroyed; then the files of the search path
// (SampleSpaceScan.h) become track records, in that order, each with its information
// retrieved (ParallelRetrieval.h) whatever the skip settings say. The space is valid when
// it holds at least one track.
//
// Picking (Resolve): an entry that is picked keeps its track. Otherwise the candidates are
// the tracks, in order, that meet the entry's expression and are not in the history
// (compared by identity); the r-th is taken, r being the next value of the process
// generator modulo their number, and appended to the history, whose oldest entry goes
// when it then holds more than vdpHistory. No candidate: the entry gets the null track and
// the history is emptied, so the next pick may choose any matching track again.
//
// Records in the history and in random entries point into the space: after a rebuild the
// entries must be reset before they are played (the play path does that).
//
// User-interface thread only (the build uses worker threads inside and returns when they
// are done).
#include "playlist/random/ParallelRetrieval.h"
#include "playlist/random/VariableColumns.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

namespace verdin {

class InputModuleList;
class Playlist;
class RandomEntry;
class TrackRecord;

struct SampleSpaceOptions {
    bool ignoreTags = false;      // the setting ignoreID3Tags
    unsigned threads = 0;         // retrieval threads; 0: as many as the hardware runs
    RetrievalProgress progress;   // files done / total, on the calling thread
};

class SampleSpace {
public:
    SampleSpace();
    ~SampleSpace();
    SampleSpace(const SampleSpace&) = delete;
    SampleSpace& operator=(const SampleSpace&) = delete;

    // extensions: ";"-separated, as InputModuleList::SupportedExtensions gives them.
    // Returns whether at least one track was found.
    bool CreateSampleSpace(std::string_view searchPath, bool recurse, std::string_view extensions,
                           const InputModuleList& modules, const SampleSpaceOptions& options = {});

    // Replaces the tracks with records made elsewhere (their information as it is), with
    // the history emptied, as a build does.
    void ReplaceTracks(std::vector<std::unique_ptr<TrackRecord>> tracks);

    // sampleSpaceValid: whether the last build found a track (false before any build).
    bool Valid() const { return valid_; }
    std::size_t Size() const { return tracks_.size(); }
    const TrackRecord& TrackAt(std::size_t index) const { return *tracks_[index]; }

    // The entry's picked track, picking one first when it has none: a track of the space
    // or the null track.
    TrackRecord* Resolve(RandomEntry& entry, int vdpHistory);

    // Oldest first.
    const std::deque<const TrackRecord*>& PickHistory() const { return history_; }

private:
    std::vector<std::unique_ptr<TrackRecord>> tracks_;
    std::deque<const TrackRecord*> history_;
    // The variables' values of the tracks, kept between picks.
    VariableColumns columns_;
    bool valid_ = false;
};

// Whether starting playback of the tree needs a sample space that is not there: the tree
// holds a random entry and the space is not valid.
bool NeedsSampleSpace(const Playlist& main, const SampleSpace& space);

}  // namespace verdin
