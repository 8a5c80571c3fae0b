#include "InformationRetrieval.h"

#include "playlist/TrackRecord.h"
#include "settings/Settings.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace verdin {

namespace {

constexpr int kApplyIntervalMs = 50;

unsigned WorkerCount(size_t tracks) {
    const unsigned hardware = std::max(1u, std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::min<size_t>(std::min(hardware, 4u), std::max<size_t>(tracks, 1)));
}

}  // namespace

struct InformationRetrieval::Job {
    // Fixed before the workers start; read-only while they run.
    std::vector<std::string> paths;
    std::vector<int> rowHints;
    const InputModuleList* modules = nullptr;
    bool ignoreTags = false;

    // Slot i is written by the one worker that took index i, before it sets ready[i].
    std::vector<std::unique_ptr<TrackRecord>> records;
    // Written by the workers (release once slot i is filled), read by the
    // user-interface thread (acquire) before it reads slot i.
    std::unique_ptr<std::atomic<bool>[]> ready;
    // The next index to read: every worker takes from it; nothing else is published
    // through it, so relaxed order is enough.
    std::atomic<size_t> next{0};
    // Set by the user-interface thread when the job is given up; read by the workers
    // before each file. Only a stop request: relaxed.
    std::atomic<bool> cancelled{false};
    std::vector<std::thread> workers;

    size_t applied = 0;  // user-interface thread only

    void Start(unsigned threads) {
        ready = std::make_unique<std::atomic<bool>[]>(paths.size());
        records.resize(paths.size());
        for (unsigned i = 0; i < threads; ++i) {
            try {
                workers.emplace_back([this] { Work(); });
            } catch (const std::system_error&) {
                break;  // fewer threads than asked for still finish the job
            }
        }
        if (workers.empty()) Work();  // no thread at all: read here, the slow way
    }

    void Work() {
        while (!cancelled.load(std::memory_order_relaxed)) {
            const size_t i = next.fetch_add(1, std::memory_order_relaxed);
            if (i >= paths.size()) return;
            auto record = std::make_unique<TrackRecord>(paths[i]);
            record->RetrieveInformation(*modules, ignoreTags, true);
            records[i] = std::move(record);
            ready[i].store(true, std::memory_order_release);
        }
    }

    bool Finished() const { return applied == paths.size(); }

    ~Job() {
        cancelled.store(true, std::memory_order_relaxed);
        for (std::thread& worker : workers) worker.join();
    }
};

InformationRetrieval::InformationRetrieval(Player& player, QObject* parent) : QObject(parent), player_(player) {
    timer_.setInterval(kApplyIntervalMs);
    connect(&timer_, &QTimer::timeout, this, &InformationRetrieval::ApplyFinished);
}

InformationRetrieval::~InformationRetrieval() = default;

void InformationRetrieval::Enqueue(std::vector<DeferredTrack> tracks) {
    if (tracks.empty()) return;
    auto job = std::make_unique<Job>();
    job->paths.reserve(tracks.size());
    job->rowHints.reserve(tracks.size());
    for (DeferredTrack& track : tracks) {
        job->paths.push_back(std::move(track.path));
        job->rowHints.push_back(track.row);
    }
    job->modules = &player_.Modules();
    job->ignoreTags = player_.GetSettings().ignoreID3Tags != 0;
    jobs_.push_back(std::move(job));
    if (jobs_.size() == 1) StartNextJob();
    emit Progress(Done(), Total());
}

void InformationRetrieval::StartNextJob() {
    if (jobs_.empty()) {
        timer_.stop();
        return;
    }
    Job& job = *jobs_.front();
    job.Start(WorkerCount(job.paths.size()));
    timer_.start();
}

size_t InformationRetrieval::Done() const {
    size_t done = 0;
    for (const auto& job : jobs_) done += job->applied;
    return done;
}

size_t InformationRetrieval::Total() const {
    size_t total = 0;
    for (const auto& job : jobs_) total += job->paths.size();
    return total;
}

void InformationRetrieval::ApplyFinished() {
    if (jobs_.empty()) return;
    Job& job = *jobs_.front();
    std::vector<RetrievedTrack> finished;
    while (!job.Finished() && job.ready[job.applied].load(std::memory_order_acquire)) {
        std::unique_ptr<TrackRecord>& record = job.records[job.applied];
        // A module that is not re-entrant is asked here, on this thread, one file at a time.
        if (!record->InfoRetrieved()) record->RetrieveInformation(*job.modules, job.ignoreTags);
        finished.push_back({job.rowHints[job.applied], std::move(record)});
        ++job.applied;
    }
    if (!finished.empty()) player_.FillInformation(std::move(finished));
    if (job.Finished()) {
        jobs_.pop_front();
        StartNextJob();
    }
    emit Progress(Done(), jobs_.empty() ? 0 : Total());
}

}  // namespace verdin
