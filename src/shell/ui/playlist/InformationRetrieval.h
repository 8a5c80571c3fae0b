#pragma once
// Reads the information of added tracks on worker threads, so that opening, adding or
// dropping thousands of files never freezes the window.
//
// The player adds the tracks without information and lists them (Player::
// TakeDeferredTracks). Each list becomes a job: its paths are fixed before its threads
// start; every worker takes the next index from a shared counter, reads a fresh
// TrackRecord of its own for that path, stores it in that index's slot and publishes the
// slot. The tree itself is never touched off the user-interface thread: a timer there
// hands finished records, in list order, to the player, which places them in the tree.
// Files of an input module that is not re-entrant are left to that timer, which reads
// them on the user-interface thread before it hands them on.
// Jobs run one after another.
#include "shell/Player.h"

#include <QObject>
#include <QTimer>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace verdin {

class InformationRetrieval final : public QObject {
    Q_OBJECT
public:
    explicit InformationRetrieval(Player& player, QObject* parent = nullptr);
    // Stops the workers (each finishes the file it is reading) and waits for them.
    ~InformationRetrieval() override;

    // Starts reading these tracks (after any job still running).
    void Enqueue(std::vector<DeferredTrack> tracks);

    bool Busy() const { return !jobs_.empty(); }
    // Tracks read and tracks to read, over the jobs not yet finished.
    size_t Done() const;
    size_t Total() const;

    // Hands every record finished so far to the player (the timer does this every 50 ms;
    // tests and benchmarks call it to wait on published state).
    void ApplyFinished();

signals:
    // Progress after each application; total 0 when the last job has finished.
    void Progress(size_t done, size_t total);

private:
    struct Job;
    void StartNextJob();

    Player& player_;
    std::deque<std::unique_ptr<Job>> jobs_;
    QTimer timer_;
};

}  // namespace verdin
