#pragma once
// Reads the information of added tracks on worker threads, so that opening, adding or
// dropping thousands of files never freezes the window.
//
// The core adds the tracks without information and lists them (PlayerCore::
// TakeDeferredTracks). Each list becomes a job: its paths are fixed before its threads
// start; every worker takes the next index from a shared counter, reads a fresh
// TrackRecord of its own for that path, stores it in that index's slot and publishes the
// slot. The tree itself is never touched off the user-interface thread: a timer there
// copies finished records, in list order, into the tracks of the tree, found by their
// row (or, once rows have moved, by their path). Jobs run one after another.
#include "shell/PlayerCore.h"

#include <QObject>
#include <QTimer>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace verdin {

class InformationRetrieval final : public QObject {
    Q_OBJECT
public:
    explicit InformationRetrieval(PlayerCore& core, QObject* parent = nullptr);
    // Stops the workers (each finishes the file it is reading) and waits for them.
    ~InformationRetrieval() override;

    // Starts reading these tracks (after any job still running).
    void Enqueue(std::vector<PlayerCore::DeferredTrack> tracks);
    // Rows may have moved: finished records are then placed by path.
    void ListChanged() { rowsMoved_ = true; }

    bool Busy() const { return !jobs_.empty(); }
    // Tracks read and tracks to read, over the jobs not yet finished.
    size_t Done() const;
    size_t Total() const;

    // Copies every record finished so far into the tree (the timer does this every
    // 50 ms; tests and benchmarks call it to wait on published state).
    void ApplyFinished();

signals:
    // The texts of rows first..last changed.
    void RowsRetrieved(int first, int last);
    // Progress after each application; total 0 when the last job has finished.
    void Progress(size_t done, size_t total);

private:
    struct Job;
    void StartNextJob();
    void Apply(Job& job, size_t slot, int& first, int& last);
    void RebuildRowsByPath();

    PlayerCore& core_;
    std::deque<std::unique_ptr<Job>> jobs_;
    QTimer timer_;
    bool rowsMoved_ = false;
    // Track rows by full name, built only when rows have moved.
    std::unordered_map<std::string, std::vector<int>> rowsByPath_;
};

}  // namespace verdin
