#include "playlist/random/ParallelRetrieval.h"

#include "playlist/TrackRecord.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

namespace verdin {
namespace {

class RetrievalJob {
public:
    RetrievalJob(const std::vector<std::unique_ptr<TrackRecord>>& tracks, const InputModuleList& modules,
                 bool ignoreTags)
        : tracks_(tracks), modules_(modules), ignoreTags_(ignoreTags) {}

    // Retrieves the next track not yet taken; false when none is left. A helper leaves
    // the tracks of a module that is not re-entrant to the calling thread.
    bool RetrieveNext(bool helper) {
        const std::size_t index = next_.fetch_add(1, std::memory_order_relaxed);
        if (index >= tracks_.size()) return false;
        TrackRecord& track = *tracks_[index];
        try {
            track.RetrieveInformation(modules_, ignoreTags_, helper);
        } catch (...) {
            // A record that could not be read keeps what it had; the scan goes on.
        }
        if (!helper || !IsLeft(track)) done_.fetch_add(1, std::memory_order_release);
        settled_.fetch_add(1, std::memory_order_release);
        settled_.notify_one();
        return true;
    }

    void RunHelper() {
        while (RetrieveNext(true)) {
        }
    }

    static bool IsLeft(const TrackRecord& track) { return !track.InfoRetrieved() && !track.IsNullTrack(); }
    std::size_t Done() const { return done_.load(std::memory_order_acquire); }
    std::size_t Settled() const { return settled_.load(std::memory_order_acquire); }
    void WaitWhileSettled(std::size_t seen) const { settled_.wait(seen, std::memory_order_acquire); }

private:
    const std::vector<std::unique_ptr<TrackRecord>>& tracks_;
    const InputModuleList& modules_;
    const bool ignoreTags_;
    // Written by every retrieving thread (fetch_add), read by them only: which track is
    // taken next. Relaxed: the tracks were all made before the threads started.
    std::atomic<std::size_t> next_{0};
    // Written by every retrieving thread after a track is done (release), read by the
    // calling thread (acquire) for progress reports.
    std::atomic<std::size_t> done_{0};
    // Tracks done or left to the calling thread: written like done_, waited on by the
    // calling thread until every track has settled.
    std::atomic<std::size_t> settled_{0};
};

// Joins its threads when it goes, also when a progress callback throws.
class HelperThreads {
public:
    ~HelperThreads() { Join(); }
    void Join() {
        for (std::thread& thread : threads_) thread.join();
        threads_.clear();
    }
    // False when the system refuses another thread.
    template <typename Work>
    bool Start(Work work) {
        try {
            threads_.emplace_back(std::move(work));
            return true;
        } catch (const std::system_error&) {
            return false;
        }
    }

private:
    std::vector<std::thread> threads_;
};

unsigned ThreadCount(unsigned requested, std::size_t tracks) {
    unsigned count = requested ? requested : std::max(1u, std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::min<std::size_t>(count, std::max<std::size_t>(tracks, 1)));
}

}  // namespace

void RetrieveAllInformation(const std::vector<std::unique_ptr<TrackRecord>>& tracks, const InputModuleList& modules,
                            bool ignoreTags, unsigned threads, const RetrievalProgress& progress) {
    const std::size_t total = tracks.size();
    const auto report = [&](std::size_t done) {
        if (progress) progress(done, total);
    };
    report(0);
    if (total == 0) return;

    RetrievalJob job(tracks, modules, ignoreTags);
    HelperThreads helpers;  // declared after the job: joined before the job goes
    const unsigned count = ThreadCount(threads, total);
    for (unsigned i = 1; i < count; ++i)
        if (!helpers.Start([&job] { job.RunHelper(); })) break;  // the calling thread does the rest

    std::size_t reported = 0;
    while (job.RetrieveNext(false)) {
        const std::size_t done = job.Done();
        if (done != reported) report(reported = done);
    }
    for (std::size_t settled = job.Settled();; settled = job.Settled()) {
        const std::size_t done = job.Done();
        if (done != reported) report(reported = done);
        if (settled == total) break;
        job.WaitWhileSettled(settled);
    }
    // What the helpers left is read here, once they are gone.
    helpers.Join();
    for (const auto& track : tracks) {
        if (!RetrievalJob::IsLeft(*track)) continue;
        track->RetrieveInformation(modules, ignoreTags);
        report(++reported);
    }
}

}  // namespace verdin
