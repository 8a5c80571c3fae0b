#pragma once
// What happens before a track's properties open: a track whose information was never
// retrieved asks "Information for this track is not retrieved.\nDo you want to retrieve
// it now?" and, on Yes, has the player read it (honouring "ignoreID3Tags"); a track that
// does not exist says "Unknown file format." and opens nothing.
#include <string_view>

class QWidget;

namespace verdin {

class KeptRow;
class Player;
class RandomEntry;
class TrackRecord;

inline constexpr std::string_view kRetrieveQuestion =
    "Information for this track is not retrieved.\nDo you want to retrieve it now?";
inline constexpr std::string_view kUnknownFileFormat = "Unknown file format.";
// "Evaluated Track Properties" of an entry that has no track to show.
inline constexpr std::string_view kNotEvaluated = "This random entry has not picked a track yet.";
inline constexpr std::string_view kNothingMatches = "No track of the sample space matches this random entry.";

// True when the properties of the kept entry's track (a random entry's pick) may open.
bool PrepareTrackForProperties(QWidget* parent, Player& player, const KeptRow& kept, const TrackRecord& track);

// The track a random entry resolved to, or null after saying why there is none.
const TrackRecord* EvaluatedTrackOf(QWidget* parent, const RandomEntry& entry);

}  // namespace verdin
