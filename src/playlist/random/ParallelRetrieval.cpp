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

    // Retrieves the next track not yet taken; false when none is left.
    bool RetrieveNext() {
        const std::size_t index = next_.fetch_add(1, std::memory_order_relaxed);
        if (index >= tracks_.size()) return false;
        try {
            tracks_[index]->RetrieveInformation(modules_, ignoreTags_);
        } catch (...) {
            // A record that could not be read keeps what it had; the scan goes on.
        }
        done_.fetch_add(1, std::memory_order_release);
        done_.notify_one();
        return true;
    }

    void RunHelper() {
        while (RetrieveNext()) {
        }
    }

    std::size_t Done() const { return done_.load(std::memory_order_acquire); }
    void WaitWhileDone(std::size_t seen) const { done_.wait(seen, std::memory_order_acquire); }

private:
    const std::vector<std::unique_ptr<TrackRecord>>& tracks_;
    const InputModuleList& modules_;
    const bool ignoreTags_;
    // Written by every retrieving thread (fetch_add), read by them only: which track is
    // taken next. Relaxed: the tracks were all made before the threads started.
    std::atomic<std::size_t> next_{0};
    // Written by every retrieving thread after a track is done (release), read and waited
    // on by the calling thread (acquire) for progress reports.
    std::atomic<std::size_t> done_{0};
};

// Joins its threads when it goes, also when a progress callback throws.
class HelperThreads {
public:
    ~HelperThreads() {
        for (std::thread& thread : threads_) thread.join();
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
    while (job.RetrieveNext()) {
        const std::size_t done = job.Done();
        if (done != reported) report(reported = done);
    }
    while (reported < total) {
        job.WaitWhileDone(reported);
        const std::size_t done = job.Done();
        if (done != reported) report(reported = done);
    }
}

}  // namespace verdin
