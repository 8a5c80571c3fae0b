#pragma once
// Retrieving the information of many tracks at once.
//
// The calling thread and up to threads-1 helper threads take tracks in list order from a
// shared counter, each retrieving one record at a time (TrackRecord::RetrieveInformation
// is safe for different records on different threads). The helpers leave the files of a
// module that is not re-entrant; the calling thread reads those at the end, one by one,
// after the helpers have ended. The list itself is never
// reordered. Progress is reported on the calling thread only: after each track it
// retrieved itself, and, once no track is left to start, each time another track is done,
// until all are. The first report is (0, total) and the last (total, total).
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace verdin {

class InputModuleList;
class TrackRecord;

// Files done so far and the total.
using RetrievalProgress = std::function<void(std::size_t done, std::size_t total)>;

// threads: 0 for as many as the hardware runs at once. Fewer are used when the system
// refuses to start more.
void RetrieveAllInformation(const std::vector<std::unique_ptr<TrackRecord>>& tracks, const InputModuleList& modules,
                            bool ignoreTags, unsigned threads, const RetrievalProgress& progress);

}  // namespace verdin
