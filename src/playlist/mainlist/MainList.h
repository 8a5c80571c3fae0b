#pragma once
// The main playlist as the player owns it: the tree, the order it is played in, the
// current row, and the sample space its random entries pick from.
//
// Every change is an intent ("add these paths before row r", "delete these rows", "sort")
// and keeps the rest consistent by itself:
//   - the current row follows its item wherever an edit moves it. When its item goes,
//     the entry that took its place becomes current and is the one played next: moving
//     on from a deleted row does not skip it;
//   - the shuffled order follows deletions (the pass goes on without the deleted rows) and
//     is built anew, the next time it is needed, after rows came, moved or were sorted;
//   - an edit that fills an empty list makes its first entry current (the first of the
//     shuffled order with shuffle on);
//   - random entries pick anew after the sample space was rebuilt, so none refers to a
//     track of the old one.
// Then it tells its listeners, once per edit, what changed.
//
// The settings are read where the list needs them (shuffle, directory recursion,
// retrieval rules, the pick history), never written. User-interface thread only.
#include "playlist/PlayOrder.h"
#include "playlist/Playlist.h"
#include "playlist/TreeCommands.h"
#include "playlist/random/SampleSpace.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class InputModuleList;
class TrackRecord;
struct Settings;

// What an edit changed.
struct ListChange {
    bool rows = false;     // rows came, went or moved
    bool texts = false;    // information of some rows changed; no row came or went
    bool current = false;  // the current row is another one, or its entry changed
    bool cleared = false;  // the list was emptied or replaced as a whole
};

// A track added without its information, for the caller to read elsewhere.
struct DeferredTrack {
    int row;           // where the track was when it was listed
    std::string path;  // its full name
};

// A track's information read elsewhere, to be placed in the tree.
struct RetrievedTrack {
    int rowHint;                          // where the track was when it was listed
    std::unique_ptr<TrackRecord> record;  // its name says which tracks it is for
};

class MainList {
public:
    using Listener = std::function<void(const ListChange&)>;

    MainList(const Settings& settings, const InputModuleList& modules);
    ~MainList();
    MainList(const MainList&) = delete;
    MainList& operator=(const MainList&) = delete;

    void Listen(Listener listener) { listeners_.push_back(std::move(listener)); }

    const Playlist& Tree() const { return tree_; }
    int RowCount() const { return tree_.RowCount(); }
    int CurrentRow() const { return currentRow_; }
    const SampleSpace& Samples() const { return samples_; }
    const std::vector<int>& ShuffledRows();

    // Edits. Rows are rows of the main playlist; an edit of rows that name nothing does
    // nothing.
    // Replaces the list by the entries of a playlist file; row `current` becomes current
    // when it names an entry, else row 0.
    void LoadFile(const std::string& fileName, int current);
    void Clear();
    // Loads what the paths name (tracks, playlist files, directories by the directory
    // scan) before the item at atRow, in order; appended when atRow names no item.
    // Returns the number of items added.
    int Add(const std::vector<std::string>& paths, int atRow);
    // The same for entries loaded elsewhere (LoadItem into a playlist of their own, with
    // no information read): they move out of `loaded` into the list.
    int AddLoaded(Playlist& loaded, int atRow);
    void Insert(int atRow, std::unique_ptr<PlaylistItem> item);
    void AddNewPlaylist(int atRow, std::string_view fileName);
    void Delete(const std::vector<int>& rows);
    void Move(const std::vector<int>& rows, int beforeRow);
    void Incorporate(const std::vector<int>& rows, std::string_view fileName);
    void DropPlaylist(int row);
    void Flatten();
    void Sort(const SortKey& key);
    bool SetExpression(int row, std::string_view expression);
    // Saves the nested playlist at row, or the main playlist for row -1, in a playlist
    // format (PlaylistFormat); a saved playlist has no unsaved changes any more.
    bool Save(int row, const std::string& fileName, int format);

    // Information. With deferred retrieval set, Add reads no information; the tracks the
    // retrieval rule wants read are listed for TakeDeferred, to be read elsewhere and
    // placed by Fill. Reread reads the track at a row again (a random entry's picked
    // track for a random entry's row); RereadAll every track of the tree.
    void SetDeferredRetrieval(bool deferred) { deferRetrieval_ = deferred; }
    std::vector<DeferredTrack> TakeDeferred();
    void Fill(std::vector<RetrievedTrack> tracks);
    bool Reread(int row);
    void RereadAll();
    // The track of this name at the current row was decoded to its end and lasted this
    // long: a length that its information got wrong (estimated from a header, or unknown)
    // is replaced.
    void LearnLength(const std::string& fullName, uint32_t milliseconds);
    // The track a row plays, its information read first when adding deferred it: a
    // track's record, a random entry's pick (the null track when nothing matches), or
    // null for a playlist's row.
    const TrackRecord* TrackToPlay(int row);

    // The current row and moving through the play order.
    void SetCurrent(int row);
    // The track at the current row has ended: the next row of the order becomes current.
    // With deleteFinished the entry that played is deleted afterwards, unless it went
    // already (the row that took its place is another entry).
    PlayOrder::Move MoveOn(bool loop, bool deleteFinished = false);
    // The row that would follow the current one, without moving (-1: playback stops).
    int Following(bool loop);
    void MoveBack(bool loop);
    // The first playable row from row on (-1 for none), the last one up to it.
    int FirstPlayable(int row) const { return NextPlayableRow(tree_, row); }
    int LastPlayable(int row) const { return PreviousPlayableRow(tree_, row); }
    // After the shuffle setting changed: a fresh order with the cursor on the current row.
    void ShuffleChanged();
    const PlaylistItem* ItemAt(int row) const { return tree_.ItemAtRow(row).item; }

    // Random entries and the sample space.
    bool HasRandomEntries() const;
    void ResetRandomEntries();
    // Builds the sample space from the settings' search path; the random entries are
    // reset first. False when it holds no track.
    bool RecreateSampleSpace(const SampleSpaceOptions& options);

private:
    bool Shuffle() const;
    PlayOrder& Order();
    // Ends an edit: the current row found again, the order marked stale, the listeners told.
    void Edited(ListChange change, bool wasEmpty);
    void Announce(const ListChange& change);
    void FollowCurrentItem();
    void NoteDeferred(const PlaylistItem& item);
    Settings LoadingSettings() const;
    // The track a row plays: a track's record, a random entry's pick; null otherwise.
    TrackRecord* TrackAt(int row);
    void Load(Playlist& into, const std::vector<std::string>& paths);

    const Settings& settings_;
    const InputModuleList& modules_;
    Playlist tree_;
    PlayOrder order_;
    bool orderStale_ = true;
    SampleSpace samples_;
    int currentRow_ = 0;
    // The entry at the current row, to find it again after an edit; null when the row
    // names none.
    const PlaylistItem* currentItem_ = nullptr;
    // The current entry was deleted: currentRow_ names the one that took its place, and
    // moving on takes that one rather than the one after it.
    bool currentGone_ = false;
    bool deferRetrieval_ = false;
    std::vector<const PlaylistItem*> deferred_;
    std::vector<Listener> listeners_;
};

}  // namespace verdin
