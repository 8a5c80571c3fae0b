#pragma once
// Open, add and insert: the commands through which tracks enter the main playlist from
// outside. "Open" replaces the list and plays; "Add" appends; "Insert" (an add issued
// while the playlist view has the focus) puts the new entries before the view's selected
// entry. The main list keeps its play order and current row as the entries go in; when
// it was empty, its first entry becomes current.
//
// Directories are scanned first; the files then go into the list in slices, one slice
// per turn of the event loop, so that ten thousand files never hold the window still
// (their information is read afterwards, on worker threads). A playlist file is read on
// a worker thread of its own, however long or deeply nested it is, and goes in whole when
// it has been read; the names after it wait for it. Additions queue up and run in the
// order they were asked for, until the list is replaced.
#include <QList>
#include <QObject>
#include <QUrl>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace verdin {

class Player;
class Playlist;

class AddCommands {
public:
    // Files added per turn of the event loop.
    static constexpr size_t kSlice = 256;

    // Listens to the player: when the list is replaced as a whole (Open, "/PLAY", New),
    // what was still waiting to go into the old list is dropped.
    AddCommands(Player& player, QWidget& dialogOwner);
    ~AddCommands();

    // Whether names are still waiting to go into the list.
    bool Busy() const { return !pending_.empty(); }
    // Called whenever the last queued addition has gone in.
    void OnIdle(std::function<void()> idle) { idle_ = std::move(idle); }

    void OpenFiles();
    void OpenDirectory();
    void OpenUrl();
    // atRow < 0: append.
    void AddFiles(int atRow);
    void AddDirectory(int atRow);
    void AddUrl(int atRow);
    void SaveMainPlaylistAs();
    // Dropped files, folders, symbolic links and desktop links: always appended, in the
    // order given; playback is not started.
    void Drop(const QList<QUrl>& urls);
    // The same, by name.
    void DropNames(const std::vector<std::string>& names);
    // "Open" on these paths: the list replaced, the first entry played once all are in.
    void Open(const std::vector<std::string>& paths);
    // "Add" of these paths, at a row (< 0: appended).
    void Add(const std::vector<std::string>& paths, int atRow);

private:
    struct Name {
        std::string path;
        bool dropped;  // a dropped name: links are followed first
    };
    struct Addition {
        std::deque<Name> names;  // what is still to go in; directories are scanned on the way
        int atRow = -1;
        int rowsAdded = 0;
        bool play = false;
    };
    void Queue(const std::vector<std::string>& paths, bool dropped, int atRow, bool play);
    void RunSlice();
    void StartReading(const std::string& playlistFile);
    void ReadingDone(unsigned generation);
    void AddToFront(const std::function<void(int atRow)>& add);
    // The dialogs start in the settings' initial directory and leave the one the user
    // chose in `directory`; it is kept in the settings.
    void KeepInitialDirectory(const std::string& directory);

    Player& player_;
    QWidget& owner_;
    std::function<void()> idle_;
    std::deque<Addition> pending_;
    unsigned generation_ = 0;  // counts the times pending_ was dropped
    std::future<std::unique_ptr<Playlist>> reading_;  // the playlist file being read
    int listener_ = -1;
    QObject sliceContext_;  // the next slice's timer dies with the commands
};

}  // namespace verdin
